#include "library/library_content.h"

#include <QHash>

#include <algorithm>
#include <functional>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// Between the parts of a search key; no character of any text.
constexpr QChar KeySeparator = QChar(0xffff);

// Last path component without its last extension, lower-cased: what a subtitle shares with its
// video.
QString matchingBaseName(QString name) {
    while (name.endsWith(u'/'))
        name.chop(1);
    const auto slash = name.lastIndexOf(u'/');
    const QString component = name.sliced(slash + 1);
    const auto dot = component.lastIndexOf(u'.');
    return (dot > 0 ? component.first(dot) : component).toLower();
}

struct Place {
    std::int64_t time = 0;
    qsizetype index = 0;
};

// Sorts by texts that are made once per record.
template <class TextOf> void sortPlacesByText(std::span<Place> places, TextOf textOf) {
    using Text = std::invoke_result_t<TextOf, qsizetype>;
    std::vector<std::pair<Text, Place>> keys;
    keys.reserve(places.size());
    for (const Place& place : places)
        keys.emplace_back(textOf(place.index), place);
    std::ranges::stable_sort(keys, {}, &std::pair<Text, Place>::first);
    std::ranges::transform(keys, places.begin(), &std::pair<Text, Place>::second);
}

// The places of `count` records, newest first, then by the text. Few records are of the same time,
// and only those are asked for their text.
template <class TimeOf, class TextOf>
std::vector<Place> newestFirst(qsizetype count, TimeOf timeOf, TextOf textOf) {
    std::vector<Place> places;
    places.reserve(static_cast<std::size_t>(count));
    for (qsizetype index = 0; index < count; ++index)
        places.push_back({timeOf(index), index});
    std::ranges::stable_sort(places, std::ranges::greater(), &Place::time);
    for (auto begin = places.begin(); begin != places.end();) {
        const auto end = std::find_if(
            begin, places.end(), [begin](const Place& place) { return place.time != begin->time; });
        if (end - begin > 1)
            sortPlacesByText(std::span(begin, end), textOf);
        begin = end;
    }
    return places;
}

template <class Record>
std::vector<Place> newestFirst(const QList<Record>& records, QString Record::*text) {
    return newestFirst(
        records.size(), [&](qsizetype index) { return records[index].lastModifiedMs.value_or(0); },
        [&](qsizetype index) { return (records[index].*text).toLower(); });
}

void sortByLowerCasedName(QList<RemoteFile>& files) {
    if (files.size() > 1) {
        std::ranges::stable_sort(files, {},
                                 [](const RemoteFile& file) { return file.name.toLower(); });
    }
}

// Of each kind in a row; a video has a few.
constexpr qsizetype MostFilesOfRow = 256;

enum class FileClass { Video, Subtitle, Other };

FileClass classOf(const RemoteFile& file) {
    const auto isKind = [&file](QLatin1StringView kind) {
        return file.kind.compare(kind, Qt::CaseInsensitive) == 0;
    };
    if (isKind("VIDEO"_L1))
        return FileClass::Video;
    return isKind("SUBTITLE"_L1) ? FileClass::Subtitle : FileClass::Other;
}

// A row's files in one list, the video first.
template <class Visit> void visitFiles(const FileGroup& group, Visit visit) {
    if (group.video)
        visit(*group.video);
    for (const RemoteFile& file : group.subtitles)
        visit(file);
    for (const RemoteFile& file : group.others)
        visit(file);
}

// Collects the files of a listing into rows.
class GroupBuilder {
public:
    GroupBuilder(const QList<RemoteFile>& files, const QList<RemoteVideo>& videos) {
        m_reported.reserve(videos.size());
        for (const Place& place : newestFirst(videos, &RemoteVideo::displayName)) {
            const RemoteVideo& video = videos[place.index];
            if (const RemoteVideo*& known = m_reported[video.name]; !known)
                known = &video;
        }
        const std::vector<Place> places = newestFirst(files, &RemoteFile::name);
        m_indexById.reserve(files.size());
        m_rows.reserve(files.size());
        for (const Place& place : places) {
            if (const RemoteFile& file = files[place.index]; classOf(file) == FileClass::Video)
                addVideo(file);
        }
        for (const Place& place : places) {
            const RemoteFile& file = files[place.index];
            const FileClass fileClass = classOf(file);
            if (fileClass == FileClass::Subtitle)
                add(file, &FileGroup::subtitles, u"subtitle:"_s);
            else if (fileClass == FileClass::Other)
                add(file, &FileGroup::others, u"other:"_s);
        }
    }

    QList<LibraryRow> take() {
        for (LibraryRow& row : m_rows)
            finish(row);
        return std::move(m_rows);
    }

private:
    void addVideo(const RemoteFile& file) {
        LibraryRow& row = rowWithId(file.name);
        row = {};
        row.group.id = file.name;
        row.group.title = file.name;
        row.group.video = file;
        if (const RemoteVideo* video = m_reported.value(file.name)) {
            row.group.title = video->displayName;
            row.group.reportedSubtitleCount = std::max<std::int64_t>(video->subtitleCount, 0);
            row.storageLocation = video->storageLocation;
        }
        const QString baseName = matchingBaseName(file.name);
        if (!m_videoIdByBaseName.contains(baseName))
            m_videoIdByBaseName.insert(baseName, file.name);
    }

    // To the row of the video with the file's base name while there is room, else to a row of its
    // own. Of files that are listed again and again, there are as many as a row has room for.
    void add(const RemoteFile& file, QList<RemoteFile> FileGroup::*files, const QString& prefix) {
        const auto video = m_videoIdByBaseName.constFind(matchingBaseName(file.name));
        if (video != m_videoIdByBaseName.cend()) {
            QList<RemoteFile>& filesOfVideo = rowWithId(*video).group.*files;
            if (filesOfVideo.size() < MostFilesOfRow)
                return filesOfVideo.append(file);
        }
        FileGroup& group = rowWithId(prefix + file.name).group;
        if (group.title.isEmpty())
            group.title = file.name;
        if ((group.*files).size() < MostFilesOfRow)
            (group.*files).append(file);
    }

    LibraryRow& rowWithId(const QString& id) {
        const auto known = m_indexById.constFind(id);
        if (known != m_indexById.cend())
            return m_rows[*known];
        m_indexById.insert(id, m_rows.size());
        LibraryRow& row = m_rows.emplaceBack();
        row.group.id = id;
        return row;
    }

    static void finish(LibraryRow& row) {
        sortByLowerCasedName(row.group.subtitles);
        sortByLowerCasedName(row.group.others);
        const FileGroup& group = row.group;
        // Whatever is found in a title is found in a name that begins with it.
        const bool isTitleInName = group.video && group.video->name.startsWith(group.title);
        QString key = isTitleInName ? QString() : group.title;
        visitFiles(group, [&key](const RemoteFile& file) { key += KeySeparator + file.name; });
        row.searchKey = std::move(key).toLower();
    }

    QHash<QString, const RemoteVideo*> m_reported;
    QHash<QString, QString> m_videoIdByBaseName;
    QHash<QString, qsizetype> m_indexById;
    QList<LibraryRow> m_rows;
};

std::int64_t recencyOf(const FileGroup& group) {
    std::optional<std::int64_t> recency;
    visitFiles(group, [&recency](const RemoteFile& file) {
        if (file.lastModifiedMs)
            recency = std::max(recency.value_or(*file.lastModifiedMs), *file.lastModifiedMs);
    });
    return recency.value_or(0);
}

// Newest first, rows with a video before others, then by title; the id settles what is left, so
// that rows do not change places between listings.
void sortRows(QList<LibraryRow>& rows) {
    const auto places = newestFirst(
        rows.size(), [&rows](qsizetype index) { return recencyOf(rows.at(index).group); },
        [&rows](qsizetype index) {
            const FileGroup& group = rows.at(index).group;
            return std::tuple(!group.video, group.title.toLower(), group.id);
        });
    QList<LibraryRow> sorted;
    sorted.reserve(rows.size());
    for (const Place& place : places)
        sorted.append(std::move(rows[place.index]));
    rows = std::move(sorted);
}

QString uploadTarget(const FilesResponse& response) {
    if (response.preferredUploadTarget)
        return response.preferredUploadTarget->toUpper();
    const bool hasDrive = response.usbStorage && response.usbStorage->isConnected;
    return hasDrive ? u"USB"_s : u"INTERNAL"_s;
}

} // namespace

bool isHiddenLibraryName(const QString& name) {
    const QString trimmed = name.trimmed();
    return trimmed.isEmpty() || trimmed.startsWith(u'.') || trimmed.endsWith(".moving"_L1);
}

LibraryContent libraryContent(FilesResponse response) {
    LibraryContent content;
    content.preferredUploadTarget = uploadTarget(response);
    content.storage = response.internalStorage ? response.internalStorage : response.storage;
    content.usbStorage = response.usbStorage;
    if (response.usbSetupHint)
        content.usbSetupHint = response.usbSetupHint->trimmed();

    response.files.removeIf([](const RemoteFile& file) { return isHiddenLibraryName(file.name); });
    content.groupedFiles = GroupBuilder(response.files, response.videos).take();
    response.files.clear();
    response.videos.clear();
    sortRows(content.groupedFiles);
    return content;
}

QList<LibraryRow> filteredRows(const QList<LibraryRow>& rows, const QString& searchText) {
    const QString query = searchText.trimmed().toLower();
    if (query.isEmpty())
        return rows;
    QList<LibraryRow> found;
    std::ranges::copy_if(rows, std::back_inserter(found),
                         [&query](const LibraryRow& row) { return row.searchKey.contains(query); });
    return found;
}

} // namespace quiv

#include "library/library_content.h"

#include <QHash>

#include <algorithm>
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

// Newest first, then by the lower-cased text; the texts are made once per record.
template <class Record> void sortNewestFirst(QList<Record>& records, QString Record::*text) {
    struct Key {
        std::int64_t time;
        QString text;
        qsizetype index;
    };
    std::vector<Key> keys;
    keys.reserve(std::size_t(records.size()));
    for (qsizetype index = 0; index < records.size(); ++index) {
        const Record& record = records[index];
        keys.push_back({record.lastModifiedMs.value_or(0), (record.*text).toLower(), index});
    }
    std::ranges::stable_sort(keys, [](const Key& a, const Key& b) {
        return a.time != b.time ? a.time > b.time : a.text < b.text;
    });
    QList<Record> sorted;
    sorted.reserve(records.size());
    for (const Key& key : keys)
        sorted.append(std::move(records[key.index]));
    records = std::move(sorted);
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
    const QString kind = file.kind.toUpper();
    if (kind == "VIDEO"_L1)
        return FileClass::Video;
    return kind == "SUBTITLE"_L1 ? FileClass::Subtitle : FileClass::Other;
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
        for (const RemoteVideo& video : videos) {
            if (!m_reported.contains(video.name))
                m_reported.insert(video.name, &video);
        }
        for (const RemoteFile& file : files) {
            if (classOf(file) == FileClass::Video)
                addVideo(file);
        }
        for (const RemoteFile& file : files) {
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
        row.searchKey = row.group.title.toLower();
        visitFiles(row.group, [&row](const RemoteFile& file) {
            row.searchKey += KeySeparator + file.name.toLower();
        });
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
    struct Key {
        std::int64_t recency;
        bool hasNoVideo;
        QString title;
        QString id;
        qsizetype index;
    };
    std::vector<Key> keys;
    keys.reserve(std::size_t(rows.size()));
    for (qsizetype index = 0; index < rows.size(); ++index) {
        const FileGroup& group = rows[index].group;
        keys.push_back({recencyOf(group), !group.video, group.title.toLower(), group.id, index});
    }
    std::ranges::sort(keys, [](const Key& a, const Key& b) {
        if (a.recency != b.recency)
            return a.recency > b.recency;
        return std::tie(a.hasNoVideo, a.title, a.id) < std::tie(b.hasNoVideo, b.title, b.id);
    });
    QList<LibraryRow> sorted;
    sorted.reserve(rows.size());
    for (const Key& key : keys)
        sorted.append(std::move(rows[key.index]));
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
    sortNewestFirst(response.files, &RemoteFile::name);
    sortNewestFirst(response.videos, &RemoteVideo::displayName);
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

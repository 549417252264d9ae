#include "ui/presenters/file_chooser_presenter.h"

#include "platform/async/background.h"
#include "ui/display_format.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QList<ListRole<FileChooserRow>> rowRoles() {
    return {
        {"key",
         [](const FileChooserRow& row) {
             return QVariant(row.entry.name);
         }},
        {"name",
         [](const FileChooserRow& row) {
             return QVariant(displayText(row.entry.name));
         }},
        {"isFolder",
         [](const FileChooserRow& row) {
             return QVariant(row.entry.isFolder);
         }},
        {"isChosen",
         [](const FileChooserRow& row) {
             return QVariant(row.isChosen);
         }},
    };
}

// A name in a folder, not a way to another one.
bool isFileName(const QString& name) {
    return !name.trimmed().isEmpty() && !name.contains(u'/') && !name.contains(QChar::Null) &&
           name != u"."_s && name != u".."_s;
}

} // namespace

const QString& fileChooserRowKey(const FileChooserRow& row) {
    return row.entry.name;
}

FileChooserPresenter::FileChooserPresenter(QObject* parent) : QObject(parent), m_rows(rowRoles()) {}

FileChooserPresenter::~FileChooserPresenter() {
    m_answer.resolve(QList<QUrl>());
}

QString FileChooserPresenter::acceptLabel() const {
    return m_mayReplace ? u"Replace"_s : m_request.acceptLabel;
}

bool FileChooserPresenter::canGoUp() const {
    return !m_folder.isEmpty() && !QDir(m_folder).isRoot();
}

bool FileChooserPresenter::canAccept() const {
    if (m_request.purpose == FileDialogRequest::Purpose::Folder)
        return !m_folder.isEmpty();
    return isSaving() ? isFileName(m_name) : !m_chosen.isEmpty();
}

Task<FileDialogAnswer> FileChooserPresenter::ask(FileDialogRequest request) {
    cancel();
    m_request = std::move(request);
    m_answer = {};
    m_name = m_request.proposedName;
    m_isShown = true;
    m_filterIndex = 0;
    m_listing = enter(m_request.folder.isEmpty() ? QDir::homePath() : m_request.folder);
    const std::function<void()> onDropped = [this] {
        cancel();
    };
    co_return co_await m_answer.wait(onDropped);
}

void FileChooserPresenter::goUp() {
    m_listing = enter(QDir::cleanPath(m_folder + u"/.."_s));
}

void FileChooserPresenter::goTo(const QString& typed) {
    m_decision = goToTyped(typedPath(typed, m_folder));
}

Task<> FileChooserPresenter::goToTyped(QString path) {
    const auto looking = [path] {
        return placeKind(path);
    };
    const PlaceKind kind = co_await onDisk(looking);
    const QFileInfo place(path);
    if (kind == PlaceKind::Folder) {
        m_listing = enter(path);
    } else if (isSaving()) {
        m_folder = place.path();
        m_name = place.fileName();
        co_await acceptPlace();
    } else if (kind == PlaceKind::File) {
        answer({QUrl::fromLocalFile(path)});
    } else {
        m_note = u"There is no folder or file with this name."_s;
        update();
    }
}

void FileChooserPresenter::select(const QString& name) {
    const FolderEntry* entry = entryNamed(name);
    if (!entry)
        return;
    if (entry->isFolder) {
        m_listing = enter(QDir(m_folder).filePath(name));
        return;
    }
    if (isSaving())
        return setName(name);
    if (m_request.purpose == FileDialogRequest::Purpose::Folder)
        return;
    const bool wasChosen = m_chosen.contains(name);
    if (m_request.purpose == FileDialogRequest::Purpose::OpenOne)
        m_chosen.clear();
    if (wasChosen)
        m_chosen.remove(name);
    else
        m_chosen.insert(name);
    update();
}

void FileChooserPresenter::activate(const QString& name) {
    const FolderEntry* entry = entryNamed(name);
    const bool isFile = entry && !entry->isFolder;
    if (!m_chosen.contains(name))
        select(name);
    if (isFile)
        accept();
}

void FileChooserPresenter::setName(const QString& name) {
    if (m_name == name)
        return;
    m_name = name;
    m_note.clear();
    m_mayReplace = false;
    m_decision.cancel();
    update();
}

void FileChooserPresenter::createFolder(const QString& name) {
    m_decision = makeAndEnter(name);
}

Task<> FileChooserPresenter::makeAndEnter(QString name) {
    const QString path = QDir(m_folder).filePath(name);
    const auto making = [name, path] {
        return isFileName(name) && makeFolder(path);
    };
    const bool isMade = co_await onDisk(making);
    if (isMade) {
        m_listing = enter(path);
        co_return;
    }
    m_note = u"The folder could not be created. Choose another name or place."_s;
    update();
}

void FileChooserPresenter::accept() {
    if (!m_isShown || !canAccept())
        return;
    if (isSaving()) {
        m_decision = acceptPlace();
        return;
    }
    if (m_request.purpose == FileDialogRequest::Purpose::Folder)
        return answer({QUrl::fromLocalFile(m_folder)});
    QList<QUrl> files;
    for (const FolderEntry& entry : std::as_const(m_entries)) { // in the order shown
        if (m_chosen.contains(entry.name))
            files.append(urlOf(entry.name));
    }
    answer(files);
}

Task<> FileChooserPresenter::acceptPlace() {
    const QUrl place = urlOf(m_name);
    const auto looking = [path = place.toLocalFile()] {
        return placeKind(path);
    };
    const PlaceKind kind = co_await onDisk(looking);
    if (kind == PlaceKind::Free || (kind == PlaceKind::File && m_mayReplace)) {
        answer({place});
        co_return;
    }
    m_mayReplace = kind == PlaceKind::File;
    const QString what = u'"' + displayText(m_name) + u'"';
    m_note = m_mayReplace ? what + u" is here already. Replace it?"_s
                          : what + u" is the name of a folder here. Choose another name."_s;
    update();
}

void FileChooserPresenter::cancel() {
    answer({});
}

void FileChooserPresenter::answer(const QList<QUrl>& files) {
    m_isShown = false;
    m_listing.cancel();
    m_decision.cancel();
    m_answer.resolve(files);
    m_chosen.clear();
    m_note.clear();
    m_mayReplace = false;
    update();
}

Task<> FileChooserPresenter::enter(QString folder) {
    m_decision.cancel();
    m_folder = folder;
    m_allEntries.clear();
    m_entries.clear();
    m_chosen.clear();
    m_note.clear();
    m_mayReplace = false;
    m_rows.reset({});
    update();
    const auto list = [folder] {
        return folderListing(folder);
    };
    const auto entries = co_await onDisk(list);
    if (entries)
        m_allEntries = *entries;
    else
        m_note = u"This folder cannot be read."_s;
    filterEntries();
}

void FileChooserPresenter::filterEntries() {
    const FileFilter filter = m_request.filters.value(m_filterIndex);
    m_entries = m_allEntries;
    m_entries.removeIf(
        [&](const FolderEntry& entry) { return !entry.isFolder && !passes(filter, entry.name); });
    if (m_allEntries.isEmpty() && m_note.isEmpty())
        m_note = u"This folder is empty."_s;
    else if (!m_allEntries.isEmpty())
        m_note = m_entries.isEmpty() ? u"There is nothing of this kind here."_s : QString();
    update();
}

void FileChooserPresenter::chooseFilter(int index) {
    m_filterIndex = index;
    m_chosen.clear();
    filterEntries();
}

QStringList FileChooserPresenter::filters() const {
    QStringList names;
    for (const FileFilter& filter : m_request.filters)
        names.append(filter.name);
    return names;
}

void FileChooserPresenter::update() {
    QList<FileChooserRow> rows;
    for (const FolderEntry& entry : std::as_const(m_entries))
        rows.append({entry, m_chosen.contains(entry.name)});
    m_rows.assign(rows);
    Q_EMIT changed();
}

const FolderEntry* FileChooserPresenter::entryNamed(const QString& name) const {
    const auto found = std::ranges::find(m_entries, name, &FolderEntry::name);
    return found == m_entries.end() ? nullptr : &*found;
}

QUrl FileChooserPresenter::urlOf(const QString& name) const {
    return QUrl::fromLocalFile(QDir(m_folder).filePath(name));
}

} // namespace quiv

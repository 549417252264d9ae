#include "ui/file_chooser_presenter.h"

#include "ui/display_format.h"

#include <QDir>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace quiv {

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

QString firstFolder() {
    const QString videos = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    return QDir(videos).exists() ? videos : QDir::homePath();
}

} // namespace

const QString& fileChooserRowKey(const FileChooserRow& row) {
    return row.entry.name;
}

FileChooserPresenter::FileChooserPresenter(QObject* parent) : QObject(parent), m_rows(rowRoles()) {}

bool FileChooserPresenter::canGoUp() const {
    return !m_folder.isEmpty() && !QDir(m_folder).isRoot();
}

void FileChooserPresenter::ask(Request request) {
    m_request = std::move(request);
    m_isShown = true;
    enter(m_folder.isEmpty() ? firstFolder() : m_folder);
}

void FileChooserPresenter::goUp() {
    enter(QDir::cleanPath(m_folder + QStringLiteral("/..")));
}

void FileChooserPresenter::select(const QString& name) {
    const FolderEntry* entry = entryNamed(name);
    if (!entry)
        return;
    if (entry->isFolder)
        return enter(QDir(m_folder).filePath(name));
    const bool wasChosen = m_chosen.contains(name);
    if (!m_request.allowsSeveral)
        m_chosen.clear();
    if (wasChosen)
        m_chosen.remove(name);
    else
        m_chosen.insert(name);
    update();
}

void FileChooserPresenter::activate(const QString& name) {
    const FolderEntry* entry = entryNamed(name);
    if (!entry || entry->isFolder || !m_chosen.contains(name))
        select(name);
    if (m_chosen.contains(name))
        confirm();
}

void FileChooserPresenter::confirm() {
    if (!m_isShown || m_chosen.isEmpty())
        return;
    QList<QUrl> files;
    for (const FolderEntry& entry : std::as_const(m_entries)) { // in the order shown
        if (m_chosen.contains(entry.name))
            files.append(QUrl::fromLocalFile(QDir(m_folder).filePath(entry.name)));
    }
    const auto chosen = m_request.chosen;
    cancel();
    chosen(files);
}

void FileChooserPresenter::cancel() {
    m_isShown = false;
    m_chosen.clear();
    update();
}

void FileChooserPresenter::enter(const QString& folder) {
    m_folder = folder;
    m_entries = folderListing(folder);
    m_entries.removeIf([&](const FolderEntry& entry) {
        return !entry.isFolder && !m_request.accepts(entry.name);
    });
    m_chosen.clear();
    m_rows.reset({});
    update();
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

} // namespace quiv

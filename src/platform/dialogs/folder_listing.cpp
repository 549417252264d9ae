#include "platform/dialogs/folder_listing.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

std::optional<QList<FolderEntry>> folderListing(const QString& path) {
    const QDir folder(path);
    if (!folder.isReadable())
        return std::nullopt;
    QList<FolderEntry> entries;
    const auto found = folder.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QFileInfo& each : found)
        entries.append({each.fileName(), each.isDir()});
    // The C locale compares bytes and knows no numbers.
    QCollator order(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    order.setCaseSensitivity(Qt::CaseInsensitive);
    order.setNumericMode(true);
    std::ranges::sort(entries, [&](const FolderEntry& a, const FolderEntry& b) {
        return a.isFolder != b.isFolder ? a.isFolder : order.compare(a.name, b.name) < 0;
    });
    return entries;
}

QString startFolder(const QString& last, bool saves) {
    const auto usual = saves ? QStandardPaths::DownloadLocation : QStandardPaths::MoviesLocation;
    for (const QString& folder : {last, QStandardPaths::writableLocation(usual)}) {
        if (!folder.isEmpty() && QDir(folder).isReadable())
            return folder;
    }
    return QDir::homePath();
}

QString typedPath(const QString& typed, const QString& folder) {
    QString path = typed.trimmed();
    if (path == u'~' || path.startsWith(u"~/"_s))
        path.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(QDir(folder).filePath(path));
}

PlaceKind placeKind(const QString& path) {
    const QFileInfo place(path);
    if (!place.exists())
        return PlaceKind::Free;
    return place.isDir() ? PlaceKind::Folder : PlaceKind::File;
}

bool makeFolder(const QString& path) {
    return QDir().mkdir(path);
}

} // namespace quiv

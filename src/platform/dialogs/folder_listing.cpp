#include "platform/dialogs/folder_listing.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace quiv {

std::optional<QList<FolderEntry>> folderListing(const QString& path) {
    const QDir folder(path);
    if (!folder.isReadable())
        return std::nullopt;
    QList<FolderEntry> entries;
    const auto found = folder.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QFileInfo& each : found)
        entries.append({each.fileName(), each.isDir()});
    QCollator order;
    order.setCaseSensitivity(Qt::CaseInsensitive);
    order.setNumericMode(true);
    std::ranges::sort(entries, [&](const FolderEntry& a, const FolderEntry& b) {
        return a.isFolder != b.isFolder ? a.isFolder : order.compare(a.name, b.name) < 0;
    });
    return entries;
}

QString firstFolder() {
    const QString videos = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    return QDir(videos).exists() ? videos : QDir::homePath();
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

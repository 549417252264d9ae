#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace quiv {

struct FolderEntry {
    QString name;
    bool isFolder = false;

    bool operator==(const FolderEntry&) const = default;
};

// What a chooser of files asks of the disk, so all of it is for a disk thread.

// Lists what a folder shows: folders first, then files, each by name as people sort; nothing
// hidden. Returns nullopt if the folder cannot be read.
std::optional<QList<FolderEntry>> folderListing(const QString& path);

// The user's videos, or home.
QString firstFolder();

enum class PlaceKind { Free, File, Folder };
PlaceKind placeKind(const QString& path);

// Returns whether there is a new folder at `path`.
bool makeFolder(const QString& path);

} // namespace quiv

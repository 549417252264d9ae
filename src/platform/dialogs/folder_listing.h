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

// Where a dialog begins: the last folder if it is still there, else the user's downloads when
// saving and videos otherwise, else home.
QString startFolder(const QString& last, bool saves);

// What is at the path that a user typed: absolute, below home with "~", or else below `folder`.
QString typedPath(const QString& typed, const QString& folder);

enum class PlaceKind { Free, File, Folder };
PlaceKind placeKind(const QString& path);

// Returns whether there is a new folder at `path`.
bool makeFolder(const QString& path);

} // namespace quiv

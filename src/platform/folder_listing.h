#pragma once

#include <QList>
#include <QString>

namespace quiv {

struct FolderEntry {
    QString name;
    bool isFolder = false;

    bool operator==(const FolderEntry&) const = default;
};

// What a folder shows: folders first, then files, each by name as people sort; nothing hidden.
// Empty for a folder that cannot be read.
QList<FolderEntry> folderListing(const QString& path);

} // namespace quiv

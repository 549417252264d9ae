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

// Lists what a folder shows: folders first, then files, each by name as people sort; nothing
// hidden. Returns nullopt if the folder cannot be read. May be called on any thread.
std::optional<QList<FolderEntry>> folderListing(const QString& path);

} // namespace quiv

#pragma once

#include "net/wire_records.h"

#include <QList>
#include <QString>

#include <cstdint>
#include <optional>

// The TV's flat listing turned into library rows: pure functions on values, run off the main
// thread.
namespace quiv {

using namespace Qt::StringLiterals;

// One library row: a video with the subtitles and other files that share its base name, or a file
// that belongs to no video.
struct FileGroup {
    QString id; // the video's name, or "subtitle:"/"other:" and the file's name
    QString title;
    std::optional<RemoteFile> video;
    std::optional<std::int64_t> reportedSubtitleCount; // never negative
    QList<RemoteFile> subtitles;
    QList<RemoteFile> others;

    bool operator==(const FileGroup&) const = default;
};

// A group with what showing and searching it needs.
struct LibraryRow {
    FileGroup group;
    std::optional<QString> storageLocation; // of the video, as the TV names it
    QString searchKey;                      // lower-cased title and file names, for filteredRows

    bool operator==(const LibraryRow&) const = default;
};

// Everything a listing says, ready to publish.
struct LibraryContent {
    QList<LibraryRow> groupedFiles; // of the visible files
    std::optional<RemoteStorage> storage;
    std::optional<RemoteUsbStorage> usbStorage;
    std::optional<QString> usbSetupHint;
    QString preferredUploadTarget = u"INTERNAL"_s; // or "USB"

    bool operator==(const LibraryContent&) const = default;
};

// Housekeeping files of the TV: blank, beginning with "." or ending in ".moving".
bool isHiddenLibraryName(const QString& name);

// Sorts, filters and groups a listing; linear but for the sorting.
LibraryContent libraryContent(FilesResponse response);

// The rows that a search for `searchText` shows, in order; all of them for a blank text.
QList<LibraryRow> filteredRows(const QList<LibraryRow>& rows, const QString& searchText);

} // namespace quiv

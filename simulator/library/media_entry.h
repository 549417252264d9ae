#pragma once

#include <QByteArray>
#include <QString>

namespace quiv::simulator {

// A file as the TV lists it.
struct MediaEntry {
    enum class Kind { Video, Subtitle, Other };

    QString name;
    Kind kind = Kind::Other;
    qint64 sizeBytes = 0;
    qint64 lastModifiedMs = 0;
    QString displayName;   // videos
    int subtitleCount = 0; // videos
    bool onUsb = false;

    bool operator==(const MediaEntry&) const = default;
};

// Judges by the extension.
MediaEntry::Kind kindOfName(const QString& name);
// A file that is not whole yet. Where a file system can, such a file has no name at all.
bool isPartial(const QString& name);
inline constexpr const char* MovingSuffix = ".moving";
inline constexpr const char* UploadingPrefix = ".uploading-";
// The name without extension, dots and underscores read as blanks.
QString displayNameOf(const QString& name);
// The name without its last extension, in lower case: a subtitle belongs to the video whose base
// name its own begins with.
QString baseNameOf(const QString& name);

// The JSON object of a member of "files" and of "videos".
void appendFileJson(QByteArray& json, const MediaEntry& entry);
void appendVideoJson(QByteArray& json, const MediaEntry& entry);

} // namespace quiv::simulator

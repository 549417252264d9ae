#pragma once

#include <QList>
#include <QString>

#include <cstdint>
#include <optional>

// The TV's JSON records, one struct per record. Sizes are bytes; names ending in `Ms` are
// milliseconds (times since 1970), in `Sec` seconds. How they are decoded: wire_decoding.h.
namespace quiv {

struct RemoteFile {
    QString name; // unique within a listing; identifies the file in every request
    QString kind; // "VIDEO", "SUBTITLE" or anything else, in any letter case
    std::int64_t sizeBytes = 0;
    std::optional<std::int64_t> lastModifiedMs;

    bool operator==(const RemoteFile&) const = default;
};

struct RemoteVideo {
    QString name;
    QString displayName;
    std::int64_t sizeBytes = 0;
    std::int64_t subtitleCount = 0; // as the TV counts them; may be negative when it is confused
    std::optional<QString> storageLocation; // "INTERNAL" or "USB", in any letter case
    std::optional<std::int64_t> lastModifiedMs;

    bool operator==(const RemoteVideo&) const = default;
};

struct RemoteStorage {
    std::int64_t usedBytes = 0;
    std::int64_t totalBytes = 0;
    std::int64_t freeBytes = 0;

    bool operator==(const RemoteStorage&) const = default;
};

struct RemoteUsbStorage {
    QString driveId;
    QString driveName;
    bool isConnected = false;
    std::int64_t freeBytes = 0;
    std::int64_t totalBytes = 0;
    std::int64_t cachedVideoCount = 0;
    std::int64_t cachedVideoBytes = 0;

    bool operator==(const RemoteUsbStorage&) const = default;
};

struct FilesResponse {
    QList<RemoteFile> files;
    QList<RemoteVideo> videos;
    std::optional<RemoteStorage> storage;         // older form
    std::optional<RemoteStorage> internalStorage; // preferred over `storage`
    std::optional<RemoteUsbStorage> usbStorage;
    std::optional<QString> usbSetupHint;
    std::optional<QString> preferredUploadTarget; // "INTERNAL" or "USB", in any letter case

    bool operator==(const FilesResponse&) const = default;
};

struct RemoteDeviceInfo {
    std::optional<QString> name; // chosen by the user on the TV
    std::optional<std::int64_t> apiVersion;
    std::optional<QString> storageRoot;
    std::optional<QString> packageName;
    std::optional<QString> versionName;
    std::optional<QString> serverInstanceId;
    std::optional<QString> installationId;
    std::optional<bool> appInForeground;
    std::optional<QString> deviceBrand;
    std::optional<QString> deviceManufacturer;
    std::optional<QString> deviceModel;

    bool operator==(const RemoteDeviceInfo&) const = default;
};

struct PlaybackTrack {
    QString id;
    QString label;
    std::optional<QString> language;
    bool selected = false;

    bool operator==(const PlaybackTrack&) const = default;
};

struct PlaybackResponse {
    std::optional<QString> currentVideoName; // absent while nothing is playing
    bool isPlaying = false;
    std::int64_t positionMs = 0;
    std::int64_t durationMs = 0;
    double playbackSpeed = 1.0;
    QList<PlaybackTrack> subtitleTracks;
    QList<PlaybackTrack> audioTracks;

    bool operator==(const PlaybackResponse&) const = default;
};

struct PairingStatusResponse {
    bool authorized = false;
    std::optional<bool> requiresPairing;
    std::optional<QString> client;
    std::optional<QString> clientLabel;
    std::optional<std::int64_t>
        expiresInSec; // of the authorisation, or of the code before it is entered
    std::optional<QString> message;

    bool operator==(const PairingStatusResponse&) const = default;
};

struct UploadStatusResponse {
    QString state;
    QString fileName;
    std::int64_t receivedBytes = 0;
    std::int64_t totalBytes = 0;
    std::optional<double> progressPercent;
    QString message;
    std::int64_t updatedAtMs = 0;

    bool operator==(const UploadStatusResponse&) const = default;
};

struct MoveStatusResponse {
    QString state;
    QString fileName;
    std::int64_t movedBytes = 0;
    std::int64_t totalBytes = 0;
    std::optional<double> progressPercent;
    std::optional<std::int64_t> speedBytesPerSec;
    QString message;
    std::int64_t updatedAtMs = 0;

    bool operator==(const MoveStatusResponse&) const = default;
};

// Body of a failed reply.
struct ServerErrorPayload {
    std::optional<bool> ok;
    std::optional<QString> error;

    bool operator==(const ServerErrorPayload&) const = default;
};

// Body of a successful upload reply.
struct UploadSuccessPayload {
    std::optional<QString> fileName; // the name under which the TV stored the file

    bool operator==(const UploadSuccessPayload&) const = default;
};

} // namespace quiv

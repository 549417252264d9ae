#pragma once

#include "library/library_content.h"
#include "library/thumbnail_url.h"
#include "transfer/downloads.h"
#include "transfer/storage_move.h"
#include "ui/storage_badges.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quiv {

// What a library row shows besides its group: the same for all rows.
struct RowContext {
    std::optional<PlaybackResponse> playback; // as rowPlayback() leaves it
    MoveState move;
    bool isUsbConnected = false;
    QSet<QString> uploadMatchKeys; // of the names that are being uploaded or wait for it
    DownloadState download;
    std::optional<ThumbnailAddress> thumbnails;

    bool operator==(const RowContext&) const = default;
};

// What rows show of the player; nothing that changes while a video just goes on.
std::optional<PlaybackResponse> rowPlayback(const std::optional<PlaybackResponse>& playback);

// Everything a library row shows.
struct FileGroupRowState {
    Q_GADGET
    QML_VALUE_TYPE(fileGroupRowState)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString subtitleText MEMBER subtitleText)
    Q_PROPERTY(quiv::StorageStatusBadge storageBadge MEMBER storageBadge)
    Q_PROPERTY(QString playbackText MEMBER playbackText)
    Q_PROPERTY(QString playbackSymbol MEMBER playbackSymbol)
    Q_PROPERTY(bool hasVideo MEMBER hasVideo)
    Q_PROPERTY(QString playSymbol MEMBER playSymbol)
    Q_PROPERTY(QString moveTitle MEMBER moveTitle)
    Q_PROPERTY(bool canMove MEMBER canMove)
    Q_PROPERTY(bool isUploading MEMBER isUploading)
    Q_PROPERTY(bool isMoving MEMBER isMoving)
    Q_PROPERTY(double moveFraction MEMBER moveFraction)
    Q_PROPERTY(QString movePercentText MEMBER movePercentText)
    Q_PROPERTY(bool canDownload MEMBER canDownload)
    Q_PROPERTY(bool isDownloading MEMBER isDownloading)
    Q_PROPERTY(double downloadFraction MEMBER downloadFraction)
    Q_PROPERTY(QString downloadPercentText MEMBER downloadPercentText)
    Q_PROPERTY(QUrl thumbnailURL MEMBER thumbnailURL)

public:
    QString title;
    QString subtitleText;
    StorageStatusBadge storageBadge;
    QString playbackText; // empty unless the TV shows this video
    QString playbackSymbol;
    bool hasVideo = false;
    QString playSymbol; // of the play control: what pressing it would do
    QString moveTitle;
    bool canMove = false;
    bool isUploading = false; // some file of the group, or it waits for that
    bool isMoving = false;    // this video
    double moveFraction = 0;
    QString movePercentText;
    bool canDownload = false;
    bool isDownloading = false;  // some file of the group
    double downloadFraction = 0; // 0 to 1
    QString downloadPercentText;
    QUrl thumbnailURL; // empty without a video

    bool operator==(const FileGroupRowState&) const = default;
};

FileGroupRowState fileGroupRowState(const LibraryRow& row, const RowContext& context);

} // namespace quiv

#pragma once

#include "model/window_state.h"
#include "ui/storage_badges.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace quiv {

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
    Q_PROPERTY(bool canPlay MEMBER canPlay)
    Q_PROPERTY(bool isPlayWaiting MEMBER isPlayWaiting)
    Q_PROPERTY(bool isMoveWaiting MEMBER isMoveWaiting)
    Q_PROPERTY(bool isDownloadWaiting MEMBER isDownloadWaiting)
    Q_PROPERTY(bool isDeleteWaiting MEMBER isDeleteWaiting)
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
    Q_PROPERTY(bool canDelete MEMBER canDelete)
    Q_PROPERTY(bool isDimmed MEMBER isDimmed)
    Q_PROPERTY(bool isSelected MEMBER isSelected)

public:
    QString title;
    QString subtitleText;
    StorageStatusBadge storageBadge;
    QString playbackText; // empty unless the TV shows this video
    QString playbackSymbol;
    bool hasVideo = false;
    QString playSymbol; // of the play control: what pressing it would do
    bool canPlay = false;
    bool isPlayWaiting = false; // for the TV's answer; so with the others
    bool isMoveWaiting = false;
    bool isDownloadWaiting = false;
    bool isDeleteWaiting = false;
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
    bool canDelete = false;
    bool isDimmed = false; // the TV does not answer
    bool isSelected = false;

    bool operator==(const FileGroupRowState&) const = default;
};

// `uploadKeys` are the match keys of the names that are being uploaded or wait for it.
FileGroupRowState fileGroupRowState(const LibraryRow& row, const WindowState& state,
                                    const QSet<QString>& uploadKeys = {});

// Whether rows show the same in both states as long as their groups are the same. A video that
// just goes on makes no difference.
bool isSameForRows(const WindowState& a, const WindowState& b);

// Whether the TV that is shown has not answered to such a request for some file of the group.
bool isWaiting(const FileGroup& group, FileRequest::Kind kind, const WindowState& state);

// Whether some file of the group is being uploaded or waits for it.
bool isUploadInProgress(const FileGroup& group, const QSet<QString>& uploadKeys);

} // namespace quiv

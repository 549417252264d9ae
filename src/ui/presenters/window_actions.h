#pragma once

#include "library/library_content.h"
#include "net/status_line.h"
#include "playback/playback_command.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace quiv {

// What the window asks of the model. Each call returns at once; its outcome comes back as state.
class WindowActions {
public:
    virtual ~WindowActions() = default;

    virtual void refreshDiscovery() = 0;
    virtual void selectDevice(const QString& endpointKey) = 0;
    virtual void verifyPairingCode(const QString& code) = 0;
    virtual void cancelPairing() = 0;
    virtual void togglePlayback(const QString& videoName) = 0;
    // Controls the TV while that has a video open, else plays here.
    virtual void startPrimaryPlayback(const QString& videoName, const QString& displayTitle) = 0;
    virtual void startLocalPlayback(const QString& videoName, const QString& displayTitle,
                                    std::optional<std::int64_t> startPositionMs) = 0;
    virtual void selectLocalSubtitle(const QString& id) = 0;
    virtual void selectLocalAudio(const QString& id) = 0;
    virtual void openStreamInVLC() = 0;
    virtual void playLocalSessionOnTV() = 0;
    virtual void closeLocalPlayback() = 0;
    virtual void sendPlayback(const PlaybackCommand& command) = 0;
    // `target` is "USB" or "INTERNAL".
    virtual void startMove(const QString& videoName, const QString& target) = 0;
    // Asks the user where to put the file, or which folder gets the files.
    virtual void downloadFiles(const QList<RemoteFile>& files) = 0;
    virtual void cancelDownload() = 0;
    virtual void deleteGroups(const QList<FileGroup>& groups) = 0;
    virtual void queueUploadsFromPicker(const QList<QUrl>& urls) = 0;
    virtual void queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName) = 0;
    // Returns false if there is no file among them.
    virtual bool queueDroppedFiles(const QList<QUrl>& urls) = 0;
    // Shows a file of this computer in the desktop's file manager.
    virtual void showInFileManager(const QUrl& file) = 0;
    // Shows a message in the status line.
    virtual void post(const StatusMessage& message) = 0;
    virtual void cancelUploadJob(const QString& id) = 0;
    virtual void retryUploadJob(const QString& id) = 0;
};

} // namespace quiv

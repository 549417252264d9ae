#pragma once

#include "ui/presenters/window_actions.h"

#include <QStringList>

namespace quiv {

// Writes down what the window asks for.
class RecordingActions final : public WindowActions {
public:
    void refreshDiscovery() override { calls.append(QStringLiteral("refresh")); }
    void selectDevice(const QString& endpointKey) override {
        calls.append(QStringLiteral("select ") + endpointKey);
    }
    void verifyPairingCode(const QString& code) override {
        calls.append(QStringLiteral("verify ") + code);
    }
    void cancelPairing() override { calls.append(QStringLiteral("cancel pairing")); }
    void togglePlayback(const QString& videoName) override {
        calls.append(QStringLiteral("toggle ") + videoName);
    }
    void sendPlayback(const PlaybackCommand& command) override {
        QStringList words;
        for (const auto& [name, value] : queryItems(command))
            words.append(value);
        calls.append(words.join(u' '));
    }
    void startMove(const QString& videoName, const QString& target) override {
        calls.append(QStringLiteral("move %1 to %2").arg(videoName, target));
    }
    void downloadFile(const RemoteFile& file) override {
        calls.append(QStringLiteral("download ") + file.name);
    }
    void cancelDownload() override { calls.append(QStringLiteral("cancel download")); }
    void deleteGroup(const FileGroup& group) override {
        calls.append(QStringLiteral("delete ") + group.title);
    }
    void queueUploadsFromPicker(const QList<QUrl>& urls) override {
        for (const QUrl& url : urls)
            calls.append(QStringLiteral("pick ") + url.fileName());
    }
    void queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName) override {
        calls.append(QStringLiteral("attach %1 as %2").arg(sourceURL.fileName(), remoteName));
    }
    bool queueDroppedFiles(const QList<QUrl>& urls) override {
        for (const QUrl& url : urls)
            calls.append(QStringLiteral("upload ") + url.fileName());
        return !urls.isEmpty();
    }
    void cancelUploadJob(const QString& id) override {
        calls.append(QStringLiteral("cancel upload ") + id);
    }

    QStringList calls;
};

} // namespace quiv

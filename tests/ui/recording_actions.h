#pragma once

#include "ui/presenters/window_actions.h"

#include <QStringList>

namespace quiv {

using namespace Qt::StringLiterals;

// Writes down what the window asks for.
class RecordingActions final : public WindowActions {
public:
    void refreshDiscovery() override { calls.append(u"refresh"_s); }
    void selectDevice(const QString& endpointKey) override {
        calls.append(u"select "_s + endpointKey);
    }
    void verifyPairingCode(const QString& code) override { calls.append(u"verify "_s + code); }
    void cancelPairing() override { calls.append(u"cancel pairing"_s); }
    void togglePlayback(const QString& videoName) override {
        calls.append(u"toggle "_s + videoName);
    }
    void startPrimaryPlayback(const QString& videoName, const QString& displayTitle) override {
        calls.append(u"play %1 as %2"_s.arg(videoName, displayTitle));
    }
    void startLocalPlayback(const QString& videoName, const QString& displayTitle,
                            std::optional<std::int64_t> startPositionMs) override {
        calls.append(u"play here %1 as %2 from %3"_s.arg(
            videoName, displayTitle, QString::number(startPositionMs.value_or(-1))));
    }
    void selectLocalSubtitle(const QString& id) override { calls.append(u"subtitle "_s + id); }
    void selectLocalAudio(const QString& id) override { calls.append(u"audio "_s + id); }
    void openStreamInVLC() override { calls.append(u"open in VLC"_s); }
    void playLocalSessionOnTV() override { calls.append(u"play on TV"_s); }
    void closeLocalPlayback() override { calls.append(u"close player"_s); }
    void sendPlayback(const PlaybackCommand& command) override {
        QStringList words;
        for (const auto& [name, value] : queryItems(command))
            words.append(value);
        calls.append(words.join(u' '));
    }
    void startMove(const QString& videoName, const QString& target) override {
        calls.append(u"move %1 to %2"_s.arg(videoName, target));
    }
    void downloadFiles(const QList<RemoteFile>& files) override {
        QStringList names;
        for (const RemoteFile& file : files)
            names.append(file.name);
        calls.append(u"download "_s + names.join(u", "_s));
    }
    void cancelDownload() override { calls.append(u"cancel download"_s); }
    void deleteGroups(const QList<FileGroup>& groups) override {
        QStringList titles;
        for (const FileGroup& group : groups)
            titles.append(group.title);
        calls.append(u"delete "_s + titles.join(u", "_s));
    }
    void queueUploadsFromPicker(const QList<QUrl>& urls) override {
        for (const QUrl& url : urls)
            calls.append(u"pick "_s + url.fileName());
    }
    void showInFileManager(const QUrl& file) override {
        calls.append(u"show "_s + file.fileName());
    }
    void post(const StatusMessage& message) override { calls.append(u"say "_s + message.text); }
    void queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName) override {
        calls.append(u"attach %1 as %2"_s.arg(sourceURL.fileName(), remoteName));
    }
    bool queueDroppedFiles(const QList<QUrl>& urls) override {
        for (const QUrl& url : urls)
            calls.append(u"upload "_s + url.fileName());
        return !urls.isEmpty();
    }
    void cancelUploadJob(const QString& id) override { calls.append(u"cancel upload "_s + id); }
    void retryUploadJob(const QString& id) override { calls.append(u"retry upload "_s + id); }

    QStringList calls;
};

} // namespace quiv

#include "ui/presenters/window_presenter.h"

#include "ui/presenters/window_actions.h"

namespace quiv {

using namespace Qt::StringLiterals;

WindowPresenter::WindowPresenter(WindowActions& actions, const WindowPorts& ports, QObject* parent)
    : QObject(parent),
      m_actions(actions),
      m_fileDialogs(ports.fileDialogs),
      m_thumbnails(ports.http, ports.clock),
      m_sidebar(actions),
      m_header(actions),
      m_library(actions),
      m_dock(actions),
      m_uploads(actions),
      m_subtitleRename(actions),
      m_deletePrompt(actions),
      m_pairingSheet(actions) {
    connect(&m_library, &LibraryPresenter::deleteRequested, &m_deletePrompt,
            &DeletePromptPresenter::ask);
    connect(&m_library, &LibraryPresenter::subtitleRequested, this,
            [this](const QString& videoName) { m_picking = pickingSubtitle(videoName); });
    m_fileDialogs.setFallback(&m_fileChooser);
}

WindowPresenter::~WindowPresenter() {
    m_fileDialogs.setFallback(nullptr);
}

void WindowPresenter::pickUploads() {
    m_picking = pickingUploads();
}

Task<> WindowPresenter::pickingUploads() {
    auto asking = m_fileDialogs.ask({FileDialogRequest::Purpose::OpenSeveral,
                                     u"Upload to the TV"_s, u"Open"_s});
    const FileDialogAnswer files = co_await std::move(asking);
    if (files && !files->isEmpty())
        m_actions.queueUploadsFromPicker(*files);
}

Task<> WindowPresenter::pickingSubtitle(QString videoName) {
    auto asking = m_fileDialogs.ask({FileDialogRequest::Purpose::OpenOne,
                                     u"Attach Subtitle"_s, u"Open"_s});
    const FileDialogAnswer files = co_await std::move(asking);
    if (files && !files->isEmpty())
        m_subtitleRename.attach(files->constFirst(), videoName);
}

void WindowPresenter::setDiscoveredDevices(const QList<TVEndpoint>& devices) {
    m_sidebar.setDiscoveredDevices(devices);
}

void WindowPresenter::setSelectedDevice(const std::optional<TVEndpoint>& device) {
    m_sidebar.setSelectedDevice(device);
    m_library.setSelectedDevice(device);
    m_uploads.setSelectedDevice(device);
    m_subtitleRename.setSelectedDevice(device);
    m_deletePrompt.setSelectedDevice(device);
    m_pairingSheet.setSelectedDevice(device);
}

void WindowPresenter::setPairing(const PairingState& pairing) {
    m_header.setPairing(pairing);
    m_pairingSheet.setPairing(pairing);
}

void WindowPresenter::setContent(const LibraryContent& content) {
    m_sidebar.setStorageBadges(storageStatusBadges(content.storage, content.usbStorage));
    m_header.setContent(content);
    m_library.setContent(content);
    m_dock.setContent(content);
}

void WindowPresenter::setLoadInProgress(bool isLoading) {
    m_header.setLoadInProgress(isLoading);
    m_library.setLoadInProgress(isLoading);
}

void WindowPresenter::setStatusMessage(const QString& message) {
    m_header.setStatusMessage(message);
}

void WindowPresenter::setPlayback(const std::optional<PlaybackResponse>& playback) {
    m_library.setPlayback(playback);
    m_dock.setPlayback(playback);
}

void WindowPresenter::setMove(const MoveState& move) {
    m_header.setMove(move);
    m_library.setMove(move);
}

void WindowPresenter::setUploads(const QList<UploadListItem>& items,
                                 const QSet<QString>& matchKeys) {
    m_uploads.setItems(items);
    m_library.setUploads(matchKeys);
}

void WindowPresenter::setUploadProgress(const QList<UploadListItem>& items) {
    m_uploads.setItems(items);
}

void WindowPresenter::setDownload(const DownloadState& download) {
    m_library.setDownload(download);
}

void WindowPresenter::setThumbnails(const std::optional<ThumbnailAddress>& thumbnails) {
    m_library.setThumbnails(thumbnails);
}

} // namespace quiv

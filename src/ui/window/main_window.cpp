#include "ui/window/main_window.h"

#include "model/ombra_mac_model.h"
#include "ui/desktop/media_keys.h"
#include "ui/desktop/opened_files.h"
#include "ui/desktop/transfer_watch.h"
#include "ui/presenters/window_actions.h"
#include "ui/presenters/window_presenter.h"
#include "ui/window/graphics_choice.h"
#include "ui/window/window_place.h"
#include "ui/window/window_view.h"

#include <QGuiApplication>
#include <QQuickWindow>

namespace quiv {

namespace {

class ModelActions final : public WindowActions {
public:
    ModelActions(OmbraMacModel& model, FileManager& fileManager)
        : m_model(model), m_fileManager(fileManager) {}

    void refreshDiscovery() override { m_model.discovery()->refreshDiscovery(); }
    void selectDevice(const QString& endpointKey) override { m_model.selectDevice(endpointKey); }
    void verifyPairingCode(const QString& code) override {
        m_model.pairing()->verifyPairingCode(code);
    }
    void cancelPairing() override { m_model.pairing()->cancelPairing(); }
    void togglePlayback(const QString& videoName) override {
        m_model.playback()->togglePlayback(videoName);
    }
    void startPrimaryPlayback(const QString& videoName, const QString& displayTitle) override {
        m_model.localPlayback()->startPrimaryPlayback(videoName, displayTitle);
    }
    void startLocalPlayback(const QString& videoName, const QString& displayTitle,
                            std::optional<std::int64_t> startPositionMs) override {
        m_model.localPlayback()->startLocalPlayback(videoName, displayTitle, startPositionMs);
    }
    void selectLocalSubtitle(const QString& id) override {
        m_model.localPlayback()->selectLocalSubtitle(id);
    }
    void selectLocalAudio(const QString& id) override {
        m_model.localPlayback()->selectLocalAudio(id);
    }
    void openStreamInVLC() override { m_model.localPlayback()->openStreamInVLC(); }
    void playLocalSessionOnTV() override { m_model.localPlayback()->playLocalSessionOnTV(); }
    void closeLocalPlayback() override { m_model.localPlayback()->closeLocalPlayback(); }
    void sendPlayback(const PlaybackCommand& command) override {
        m_model.playback()->send(command);
    }
    void startMove(const QString& videoName, const QString& target) override {
        m_model.storageMove()->startMove(videoName, target);
    }
    void downloadFiles(const QList<RemoteFile>& files) override {
        m_model.downloads()->downloadFiles(files);
    }
    void cancelDownload() override { m_model.downloads()->cancelDownload(); }
    void deleteGroups(const QList<FileGroup>& groups) override {
        m_model.deletion()->deleteGroups(groups);
    }
    void queueUploadsFromPicker(const QList<QUrl>& urls) override {
        m_model.uploads()->queueUploadsFromPicker(urls);
    }
    void showInFileManager(const QUrl& file) override { m_fileManager.show(file); }
    void post(const StatusMessage& message) override { m_model.status()->post(message); }
    void queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName) override {
        m_model.uploads()->queueSubtitleUpload(sourceURL, remoteName);
    }
    bool queueDroppedFiles(const QList<QUrl>& urls) override {
        return m_model.uploads()->queueDroppedFiles(urls);
    }
    void cancelUploadJob(const QString& id) override { m_model.uploads()->cancelUploadJob(id); }
    void retryUploadJob(const QString& id) override { m_model.uploads()->retryUploadJob(id); }

private:
    OmbraMacModel& m_model;
    FileManager& m_fileManager;
};

} // namespace

struct MainWindow::Parts {
    Parts(OmbraMacModel& model, const WindowPorts& ports, const DesktopPorts& desktop)
        : actions(model, ports.fileManager),
          presenter(actions, ports),
          view(presenter, ports.appearance),
          openedFiles(actions),
          transfers(desktop, actions,
                    {[this] { return view.window() && view.window()->isActive(); },
                     [this](const QString& token) {
                         raise(token);
                     }}),
          mediaKeys({desktop.mediaControls, actions, *presenter.dock(), *presenter.localPanel(),
                     *presenter.thumbnails()},
                    [this] { raise({}); }) {}

    void show(const WindowState& state) {
        presenter.show(state);
        openedFiles.show(state);
        transfers.show(state);
        mediaKeys.show(state);
    }

    void raise(const QString& activationToken) {
        QQuickWindow* const window = view.window();
        if (!window)
            return;
        // Where the toolkit looks for it; on X11 nobody would take it out again.
        if (!activationToken.isEmpty() &&
            QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
            qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
        if (window->visibility() == QWindow::Minimized)
            window->showNormal();
        window->raise();
        window->requestActivate();
    }

    ModelActions actions;
    WindowPresenter presenter;
    WindowView view;
    OpenedFiles openedFiles;
    TransferWatch transfers;
    MediaKeys mediaKeys;
};

MainWindow::MainWindow(OmbraMacModel& model, const WindowPorts& ports,
                       const DesktopPorts& desktop) {
    chooseGraphics();
    m_parts = std::make_unique<Parts>(model, ports, desktop);
    Parts& parts = *m_parts;
    const auto showModel = [&model, &parts] {
        parts.show(model.state());
    };
    QObject::connect(&model, &OmbraMacModel::stateChanged, &parts.presenter, showModel);
    QObject::connect(
        model.uploads(), &Uploads::queueFinished, &parts.presenter,
        [&parts](const StatusMessage& outcome) { parts.transfers.uploadsFinished(outcome); });
    QObject::connect(
        model.downloads(), &Downloads::finished, &parts.presenter,
        [&parts](const StatusMessage& outcome) { parts.transfers.downloadFinished(outcome); });
    showModel();
    if (QQuickWindow* loaded = window()) {
        rememberPlace(*loaded, ports.settings);
        QObject::connect(loaded, &QWindow::visibleChanged, &model, [&model](bool isVisible) {
            isVisible ? model.appear() : model.disappear();
        });
        QObject::connect(loaded, &QWindow::activeChanged, &parts.presenter, [loaded, &parts] {
            if (loaded->isActive())
                parts.transfers.windowActivated();
        });
    }
}

MainWindow::~MainWindow() = default;

bool MainWindow::show() {
    if (!window())
        return false;
    window()->setVisible(true); // in the state it had last
    return true;
}

void MainWindow::open(const QList<QUrl>& files) {
    m_parts->openedFiles.open(files);
}

void MainWindow::raise(const QString& activationToken) {
    m_parts->raise(activationToken);
}

QQuickWindow* MainWindow::window() const {
    return m_parts->view.window();
}

} // namespace quiv

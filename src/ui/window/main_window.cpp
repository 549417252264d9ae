#include "ui/window/main_window.h"

#include "model/ombra_mac_model.h"
#include "transfer/upload_queue_rules.h"
#include "ui/presenters/window_actions.h"
#include "ui/presenters/window_presenter.h"
#include "ui/window/graphics_choice.h"
#include "ui/window/window_view.h"

#include <QQuickWindow>

namespace quiv {

namespace {

class ModelActions final : public WindowActions {
public:
    explicit ModelActions(OmbraMacModel& model) : m_model(model) {}

    void refreshDiscovery() override { m_model.discovery()->refreshDiscovery(); }
    void selectDevice(const QString& endpointKey) override { m_model.selectDevice(endpointKey); }
    void verifyPairingCode(const QString& code) override {
        m_model.pairing()->verifyPairingCode(code);
    }
    void cancelPairing() override { m_model.pairing()->cancelPairing(); }
    void togglePlayback(const QString& videoName) override {
        m_model.playback()->togglePlayback(videoName);
    }
    void sendPlayback(const PlaybackCommand& command) override {
        m_model.playback()->send(command);
    }
    void startMove(const QString& videoName, const QString& target) override {
        m_model.storageMove()->startMove(videoName, target);
    }
    void downloadFile(const RemoteFile& file) override { m_model.downloads()->downloadFile(file); }
    void cancelDownload() override { m_model.downloads()->cancelDownload(); }
    void deleteGroup(const FileGroup& group) override { m_model.deletion()->deleteGroup(group); }
    void queueUploadsFromPicker(const QList<QUrl>& urls) override {
        m_model.uploads()->queueUploadsFromPicker(urls);
    }
    void queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName) override {
        m_model.uploads()->queueSubtitleUpload(sourceURL, remoteName);
    }
    bool queueDroppedFiles(const QList<QUrl>& urls) override {
        return m_model.uploads()->queueDroppedFiles(urls);
    }
    void cancelUploadJob(const QString& id) override { m_model.uploads()->cancelUploadJob(id); }

private:
    OmbraMacModel& m_model;
};

// Calls `show` now and on every change.
template <class Part, class Show>
void follow(Part* part, void (Part::*changed)(), WindowPresenter& presenter, Show show) {
    QObject::connect(part, changed, &presenter, show);
    show();
}

void followModel(OmbraMacModel& model, WindowPresenter& presenter) {
    follow(model.discovery(), &Discovery::devicesChanged, presenter,
           [&] { presenter.setDiscoveredDevices(model.discovery()->discoveredDevices()); });
    follow(model.selected(), &SelectedDevice::changed, presenter,
           [&] { presenter.setSelectedDevice(model.selected()->device()); });
    follow(model.pairing(), &Pairing::stateChanged, presenter,
           [&] { presenter.setPairing(model.pairing()->state()); });
    follow(model.library(), &Library::contentChanged, presenter,
           [&] { presenter.setContent(model.library()->content()); });
    follow(model.library(), &Library::loadInProgressChanged, presenter,
           [&] { presenter.setLoadInProgress(model.library()->isLibraryLoadInProgress()); });
    follow(model.playback(), &RemotePlayback::playbackRead, presenter,
           [&] { presenter.setPlayback(model.playback()->playback()); });
    follow(model.storageMove(), &StorageMove::stateChanged, presenter,
           [&] { presenter.setMove(model.storageMove()->state()); });
    follow(model.uploads(), &Uploads::itemsChanged, presenter, [&] {
        presenter.setUploads(
            model.uploads()->uploadListItems(),
            uploadMatchKeys(model.uploads()->uploadListItems(), model.selected()->key()));
    });
    follow(model.uploads(), &Uploads::progressChanged, presenter,
           [&] { presenter.setUploadProgress(model.uploads()->uploadListItems()); });
    follow(model.downloads(), &Downloads::stateChanged, presenter,
           [&] { presenter.setDownload(model.downloads()->state()); });
    // A token that the TV hands out shows in the pairing's state.
    const auto showThumbnails = [&] {
        presenter.setThumbnails(model.thumbnailAddress());
    };
    follow(model.selected(), &SelectedDevice::changed, presenter, showThumbnails);
    follow(model.pairing(), &Pairing::stateChanged, presenter, showThumbnails);
    follow(model.status(), &StatusLine::statusMessageChanged, presenter,
           [&] { presenter.setStatusMessage(model.status()->statusMessage()); });
}

} // namespace

struct MainWindow::Parts {
    Parts(OmbraMacModel& model, const WindowPorts& ports)
        : actions(model), presenter(actions, ports), view(presenter) {}

    ModelActions actions;
    WindowPresenter presenter;
    WindowView view;
};

MainWindow::MainWindow(OmbraMacModel& model, const WindowPorts& ports) {
    chooseGraphics();
    m_parts = std::make_unique<Parts>(model, ports);
    followModel(model, m_parts->presenter);
    if (QQuickWindow* loaded = window()) {
        QObject::connect(loaded, &QWindow::visibleChanged, &model, [&model](bool isVisible) {
            isVisible ? model.appear() : model.disappear();
        });
    }
}

MainWindow::~MainWindow() = default;

bool MainWindow::show() {
    if (!window())
        return false;
    window()->show();
    return true;
}

QQuickWindow* MainWindow::window() const {
    return m_parts->view.window();
}

} // namespace quiv

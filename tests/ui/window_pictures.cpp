// Draws the window with sample data into PNG files, for looking at: window_pictures DIRECTORY

#include "accessible_tree.h"
#include "recording_actions.h"
#include "sample_state.h"

#include "support/fake_file_dialogs.h"
#include "transfer/upload_names.h"
#include "ui/window/graphics_choice.h"
#include "ui/presenters/window_presenter.h"
#include "ui/window/window_view.h"

#include <QBuffer>
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPalette>
#include <QQuickWindow>
#include <QTest>

using namespace quiv;

namespace {

QList<TVEndpoint> sampleTvs() {
    TVEndpoint living = sampleTv(QStringLiteral("Living Room"), QStringLiteral("192.168.1.20"));
    living.deviceManufacturer = QStringLiteral("Acme");
    living.deviceModel = QStringLiteral("KD-55X80");
    TVEndpoint studio = sampleTv(QStringLiteral("Studio Box"), QStringLiteral("studio.local"));
    studio.deviceBrand = QStringLiteral("Nordic Stream 4");
    return {living, sampleTv(QStringLiteral("Bedroom"), QStringLiteral("192.168.1.34")), studio};
}

LibraryRow row(const QString& name, const QString& title, int subtitles, bool isOnUsb) {
    LibraryRow made = sampleRow(name, title);
    made.group.reportedSubtitleCount = subtitles;
    if (isOnUsb)
        made.storageLocation = QStringLiteral("USB");
    return made;
}

LibraryContent sampleContent() {
    LibraryContent content;
    content.groupedFiles = {
        row(QStringLiteral("a.mkv"), QStringLiteral("Glacier Road"), 2, false),
        row(QStringLiteral("b.mkv"),
            QStringLiteral("A Very Long Documentary About Harbours, Ships and the People Who Built "
                           "Them, Together With What They Ate and Sang on Their Way Home in the "
                           "Winter of 1911"),
            1, true),
        row(QStringLiteral("c.mkv"), QStringLiteral("The Orchard S01E03"), 0, false),
        row(QStringLiteral("d.mkv"), QStringLiteral("Night Bus"), 3, true),
        row(QStringLiteral("e.srt"), QStringLiteral("holiday-notes.srt"), 1, false),
    };
    for (const LibraryRow& more : sampleRows(40))
        content.groupedFiles.append(more);
    content.storage = RemoteStorage{0, 0, 12'400'000'000};
    content.usbStorage =
        RemoteUsbStorage{QString(), QStringLiteral("Backup"), true, 310'000'000'000, 0, 0, 0};
    return content;
}

PlaybackResponse samplePlayback() {
    PlaybackResponse playback;
    playback.currentVideoName = QStringLiteral("a.mkv");
    playback.isPlaying = true;
    playback.positionMs = 3'723'000;
    playback.durationMs = 7'120'000;
    const auto track = [](const char* id, const char* label, bool isSelected) {
        return PlaybackTrack{QString::fromLatin1(id), QString::fromLatin1(label), std::nullopt,
                             isSelected};
    };
    playback.subtitleTracks = {track("1", "English", true), track("2", "Deutsch", false)};
    playback.audioTracks = {track("4", "Original (5.1)", true), track("5", "Deutsch", false),
                            track("6", "Commentary by everyone who was there", false)};
    return playback;
}

Task<> save(FileChooserPresenter& chooser) {
    auto asking = chooser.ask({FileDialogRequest::Purpose::Save, QStringLiteral("Download from TV"),
                               QStringLiteral("Download"), QStringLiteral("Harbour Tour.mkv")});
    co_await std::move(asking);
}

// A TV that has a picture of every video but one.
class PictureTv final : public HttpSession {
public:
    Task<HttpReply> send(HttpRequest request) override {
        const auto hue = qHash(request.url) % 360;
        QImage picture(320, 180, QImage::Format_RGB32);
        QLinearGradient gradient(0, 0, 320, 180);
        gradient.setColorAt(0, QColor::fromHsv(int(hue), 110, 90));
        gradient.setColorAt(1, QColor::fromHsv(int(hue), 90, 200));
        QPainter(&picture).fillRect(picture.rect(), gradient);
        QBuffer buffer;
        picture.save(&buffer, "JPEG");
        co_return HttpReply{request.url.contains("d.mkv") ? 404 : 200, {}, buffer.data()};
    }
};

class Pictures {
public:
    explicit Pictures(const QString& directory)
        : m_directory(directory),
          m_presenter(m_actions, {m_dialogs.preferred, m_tv, m_clock}),
          m_view(m_presenter) {
        m_view.window()->show();
    }

    void take(const QString& name, const QSize& size = {1440, 980}) {
        m_view.window()->resize(size);
        QTest::qWait(600); // past every transition
        m_view.window()->grabWindow().save(m_directory.filePath(name + QStringLiteral(".png")));
    }

    void showTv() {
        m_presenter.setDiscoveredDevices(sampleTvs());
        m_presenter.setSelectedDevice(sampleTvs().constFirst());
        m_presenter.setThumbnails(ThumbnailAddress{QUrl(QStringLiteral("http://tv:1")), {}});
        m_presenter.setContent(sampleContent());
        m_presenter.setStatusMessage(QStringLiteral("Found 3 TV device(s)"));
    }

    void press(const char* name) {
        pressAccessible(m_view.window(), QAccessible::Button, QString::fromLatin1(name));
    }
    void takeControls(const QString& prefix);
    void takeUploads(const QString& prefix);
    void takeDownloads(const QString& prefix);

    void showPairing() {
        PairingState pairing;
        pairing.requiresControlPairing = true;
        pairing.pairingCodeValidUntil = QDateTime(QDate(2024, 5, 17), QTime(14, 5));
        m_presenter.setPairing(pairing);
    }

    WindowPresenter& presenter() { return m_presenter; }
    void takeAll(const QString& prefix);

private:
    QDir m_directory;
    RecordingActions m_actions;
    FakeDesktopDialogs m_dialogs;
    PictureTv m_tv;
    SystemClock m_clock;
    WindowPresenter m_presenter;
    WindowView m_view;
};

void Pictures::takeUploads(const QString& prefix) {
    const QList<UploadListItem> items{
        {QStringLiteral("1"), QStringLiteral("Northern Lights 2024 - Director's Cut.mkv"),
         UploadListItemState::Uploading, 0.37, 48'200'000},
        {QStringLiteral("2"), QStringLiteral("Northern Lights 2024.srt")}};
    m_presenter.setUploads(items, {uploadMatchKey(QStringLiteral("c.mkv"))});
    take(prefix + QStringLiteral("uploads"));
    m_presenter.uploads()->setDropTargeted(true);
    take(prefix + QStringLiteral("drop"), {1040, 700});
    m_presenter.uploads()->setDropTargeted(false);
    m_presenter.pickUploads();
    take(prefix + QStringLiteral("chooser"), {1040, 700});
    m_presenter.fileChooser()->cancel();
    const Task<> saving = save(*m_presenter.fileChooser());
    take(prefix + QStringLiteral("save"), {1040, 700});
    m_presenter.fileChooser()->cancel();
    m_presenter.setUploads({}, {});
}

void Pictures::takeDownloads(const QString& prefix) {
    m_presenter.setDownload({true, 0.48, QStringLiteral("d.mkv")});
    take(prefix + QStringLiteral("download"));
    const QAccessibleInterface* cancel =
        findAccessible(m_view.window(), QAccessible::Button, QStringLiteral("Cancel download"));
    QTest::mouseMove(m_view.window(), m_view.window()->mapFromGlobal(cancel->rect().center()));
    take(prefix + QStringLiteral("download-hovered"));
    take(prefix + QStringLiteral("download-narrow"), {1040, 700});
    QTest::mouseMove(m_view.window(), QPoint(1, 1));
    m_presenter.setDownload({});
    press("Download");
    take(prefix + QStringLiteral("download-menu"), {1040, 700});
    QTest::keyClick(m_view.window(), Qt::Key_Escape);
}

void Pictures::takeControls(const QString& prefix) {
    m_presenter.setPlayback(samplePlayback());
    take(prefix + QStringLiteral("dock"));
    m_presenter.setMove({true, 0.62, 31'500'000, QStringLiteral("c.mkv")});
    take(prefix + QStringLiteral("move"));
    take(prefix + QStringLiteral("move-narrow"), {1040, 980});
    m_presenter.setMove({});
    press("Audio");
    take(prefix + QStringLiteral("menu"), {1040, 700});
    QTest::keyClick(m_view.window(), Qt::Key_Escape);
    PlaybackResponse unknown = samplePlayback();
    unknown.isPlaying = false;
    unknown.durationMs = 0;
    unknown.audioTracks.clear();
    m_presenter.setPlayback(unknown);
    take(prefix + QStringLiteral("dock-unknown"), {1040, 700});
    m_presenter.setPlayback(std::nullopt);
    press("Delete");
    take(prefix + QStringLiteral("delete"));
    m_presenter.deletePrompt()->cancel();
}

void Pictures::takeAll(const QString& prefix) {
    m_presenter.setStatusMessage(QStringLiteral("Searching for TVs on local network..."));
    take(prefix + QStringLiteral("no-tv"));
    showTv();
    take(prefix + QStringLiteral("library"));
    takeControls(prefix);
    takeUploads(prefix);
    takeDownloads(prefix);
    for (int step = 0; step < 4; ++step)
        QTest::keyClick(m_view.window(), Qt::Key_Tab);
    QTest::keyClick(m_view.window(), Qt::Key_Down);
    take(prefix + QStringLiteral("keyboard"), {1040, 700});
    QTest::mouseMove(m_view.window(), QPoint(500, 300));
    QTest::mouseClick(m_view.window(), Qt::LeftButton, {}, QPoint(500, 300));
    take(prefix + QStringLiteral("hover"), {1040, 700});
    m_presenter.library()->search(QStringLiteral("harbour"));
    take(prefix + QStringLiteral("search"), {1040, 700});
    m_presenter.library()->search(QStringLiteral("nothing like it"));
    take(prefix + QStringLiteral("no-results"), {1040, 700});
    m_presenter.library()->search(QString());
    showPairing();
    take(prefix + QStringLiteral("pairing-sheet"));
    m_presenter.pairingSheet()->type(QStringLiteral("482"));
    take(prefix + QStringLiteral("pairing-code"), {1040, 700});
    m_presenter.pairingSheet()->dismiss();
    take(prefix + QStringLiteral("pairing-strip"));
    take(prefix + QStringLiteral("narrow"), {1040, 980});
    m_presenter.setPairing({});
    m_presenter.setContent({});
    take(prefix + QStringLiteral("empty"), {1040, 700});
    m_presenter.setLoadInProgress(true);
    take(prefix + QStringLiteral("loading"), {1040, 700});
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    const QString directory = application.arguments().value(1, QStringLiteral("."));
    chooseGraphics();
    Pictures(directory).takeAll(QStringLiteral("light-"));
    QGuiApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20)));
    Pictures(directory).takeAll(QStringLiteral("dark-"));
    QGuiApplication::setFont(QFont(QStringLiteral("Inter"), 15));
    Pictures(directory).takeAll(QStringLiteral("large-"));
    return 0;
}

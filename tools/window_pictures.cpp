// Draws the window with sample data into PNG files, for looking at:
//
//     window_pictures DIRECTORY [--dark] [--contrast] [--size 960x600] [--font 9] [--accent
//     #ed5b00]
//                     [--prefix NAME] [--only dock,menu]
//
// Without a size each state has the one that suits it. The scale is QT_SCALE_FACTOR.

#include "ui/accessible_tree.h"
#include "ui/recording_actions.h"
#include "ui/sample_state.h"

#include "platform/pictures/process_picture_decoder.h"
#include "support/fake_appearance.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_manager.h"
#include "support/fake_player.h"
#include "transfer/upload_names.h"
#include "ui/presenters/window_presenter.h"
#include "ui/window/graphics_choice.h"
#include "ui/window/window_view.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace quiv;

namespace {

QList<TVEndpoint> sampleTvs() {
    TVEndpoint living = sampleTv(u"Living Room"_s, u"192.168.1.20"_s);
    living.deviceManufacturer = u"Acme"_s;
    living.deviceModel = u"KD-55X80"_s;
    TVEndpoint studio = sampleTv(u"Studio Box"_s, u"studio.local"_s);
    studio.deviceBrand = u"Nordic Stream 4"_s;
    return {living, sampleTv(u"Bedroom"_s, u"192.168.1.34"_s), studio};
}

LibraryRow row(const QString& name, const QString& title, int subtitles, bool isOnUsb) {
    LibraryRow made = sampleRow(name, title);
    made.group.reportedSubtitleCount = subtitles;
    if (isOnUsb)
        made.storageLocation = u"USB"_s;
    return made;
}

LibraryContent sampleContent() {
    LibraryContent content;
    content.groupedFiles = {
        row(u"a.mkv"_s, u"Glacier Road"_s, 2, false),
        row(u"b.mkv"_s,
            u"A Very Long Documentary About Harbours, Ships and the People Who Built "
            "Them, Together With What They Ate and Sang on Their Way Home in the "
            "Winter of 1911"_s,
            1, true),
        row(u"c.mkv"_s, u"The Orchard S01E03"_s, 0, false),
        row(u"d.mkv"_s, u"Night Bus"_s, 3, true),
        row(u"e.srt"_s, u"holiday-notes.srt"_s, 1, false),
    };
    for (const LibraryRow& more : sampleRows(40))
        content.groupedFiles.append(more);
    content.storage = RemoteStorage{0, 0, 12'400'000'000};
    content.usbStorage = RemoteUsbStorage{QString(), u"Backup"_s, true, 310'000'000'000, 0, 0, 0};
    return content;
}

PlaybackResponse samplePlayback() {
    PlaybackResponse playback;
    playback.currentVideoName = u"a.mkv"_s;
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
    co_await chooser.ask({FileDialogRequest::Purpose::Save, u"Download from TV"_s, u"Download"_s,
                          u"Harbour Tour.mkv"_s});
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
    void dropIdleConnections() override {}
};

// What is drawn, and how.
struct Choice {
    QString directory;
    QString prefix;
    QStringList only; // names of pictures; all of them if it is empty
    QSize size;       // of every picture, if any
    DesktopLook look;
};

Choice choiceFrom(const QGuiApplication& application) {
    QCommandLineParser parser;
    parser.addPositionalArgument(u"directory"_s, u"where the pictures go"_s);
    parser.addOptions({{u"dark"_s, u"dark instead of light"_s},
                       {u"contrast"_s, u"high contrast"_s},
                       {u"size"_s, u"of the window"_s, u"960x600"_s},
                       {u"font"_s, u"size of the interface font"_s, u"points"_s},
                       {u"accent"_s, u"the desktop's accent colour"_s, u"colour"_s},
                       {u"prefix"_s, u"of the files' names"_s, u"name"_s},
                       {u"only"_s, u"pictures, by name"_s, u"names"_s}});
    parser.process(application);
    Choice choice;
    choice.directory = parser.positionalArguments().value(0, u"."_s);
    choice.prefix = parser.value(u"prefix"_s);
    choice.only = parser.value(u"only"_s).split(u',', Qt::SkipEmptyParts);
    const QString size = parser.value(u"size"_s);
    choice.size = QSize(size.section(u'x', 0, 0).toInt(), size.section(u'x', 1).toInt());
    choice.look.scheme =
        parser.isSet(u"dark"_s) ? DesktopLook::Scheme::Dark : DesktopLook::Scheme::Light;
    choice.look.isHighContrast = parser.isSet(u"contrast"_s);
    choice.look.isMotionReduced = true;
    choice.look.fontPoints = parser.value(u"font"_s).toDouble();
    choice.look.fontFamily = u"Sans"_s;
    if (const QColor accent(parser.value(u"accent"_s)); accent.isValid())
        choice.look.accent = {accent.redF(), accent.greenF(), accent.blueF()};
    return choice;
}

class Pictures {
public:
    explicit Pictures(const Choice& choice)
        : m_choice(choice),
          m_presenter(m_actions, {m_dialogs.preferred, m_tv, m_decoder, m_fileManager, m_clock,
                                  m_appearance, m_dialogs.settings}),
          m_view(m_presenter, m_appearance) {
        m_appearance.setLook(choice.look);
        m_view.window()->show();
    }

    void take(const QString& name, const QSize& size = {1440, 980}) {
        if (!m_choice.only.isEmpty() && !m_choice.only.contains(name))
            return;
        m_view.window()->resize(m_choice.size.isEmpty() ? size : m_choice.size);
        QTest::qWait(250); // for thumbnails; nothing moves
        m_view.window()->grabWindow().save(m_choice.directory + u'/' + m_choice.prefix + name +
                                           u".png"_s);
    }

    void showTv() {
        m_state.discoveredDevices = sampleTvs();
        m_state.selectedDevice = sampleTvs().constFirst();
        m_presenter.show(m_state);
        m_state.thumbnails = ThumbnailAddress{QUrl(u"http://tv:1"_s), {}};
        m_state.content = sampleContent();
        m_presenter.show(m_state);
        m_state.status = {u"Found 3 TV device(s)"_s};
        m_presenter.show(m_state);
    }

    void press(const char* name) {
        pressAccessible(m_view.window(), QAccessible::Button, QString::fromLatin1(name));
    }
    void takeControls();
    void takeUploads();
    void takeDownloads();
    void takeLocalPlayer();

    void showPairing() {
        PairingState pairing;
        pairing.requiresControlPairing = true;
        pairing.pairingCodeValidUntil = QDateTime(QDate(2024, 5, 17), QTime(14, 5));
        m_state.pairing = pairing;
        m_presenter.show(m_state);
    }

    WindowPresenter& presenter() { return m_presenter; }
    void takeAll();

private:
    const Choice& m_choice;
    RecordingActions m_actions;
    FakeDesktopDialogs m_dialogs;
    PictureTv m_tv;
    ProcessPictureDecoder m_decoder;
    FakeFileManager m_fileManager;
    SystemClock m_clock;
    FakeAppearance m_appearance;
    WindowState m_state;
    WindowPresenter m_presenter;
    WindowView m_view;
};

void Pictures::takeUploads() {
    const TVEndpoint& tv = *m_state.selectedDevice;
    UploadListItem failed = sampleUpload(u"0"_s, u"Holiday 2019.avi"_s, tv);
    failed.state = UploadListItemState::Failed;
    failed.reason = u"Upload failed: not enough free space on target storage."_s;
    UploadListItem current =
        sampleUpload(u"1"_s, u"Northern Lights 2024 - Director's Cut.mkv"_s, tv);
    current.state = UploadListItemState::Uploading;
    current.progress = 0.37;
    current.speedBytesPerSecond = 48'200'000;
    UploadListItem elsewhere = sampleUpload(u"2"_s, u"c.mkv"_s, tv);
    elsewhere.tvKey = u"elsewhere"_s;
    elsewhere.tvName = u"Bedroom TV"_s;
    m_state.uploads = {failed, current, elsewhere, sampleUpload(u"3"_s, u"c.mkv"_s, tv)};
    m_presenter.show(m_state);
    take(u"uploads"_s);
    m_presenter.uploads()->dragEntered({QUrl(u"file:///v/a.mkv"_s)});
    take(u"drop"_s, {1040, 700});
    m_presenter.uploads()->dragLeft();
    m_presenter.pickUploads();
    (void)QTest::qWaitFor([this] { return m_presenter.fileChooser()->isShown(); });
    take(u"chooser"_s, {1040, 700});
    m_presenter.fileChooser()->cancel();
    const Task<> saving = save(*m_presenter.fileChooser());
    take(u"save"_s, {1040, 700});
    m_presenter.fileChooser()->cancel();
    m_state.uploads = {};
    m_presenter.show(m_state);
    m_state.download = {true, 0.48, u"d.mkv"_s, u"elsewhere"_s, u"Bedroom TV"_s};
    m_presenter.show(m_state);
    take(u"download-elsewhere"_s, {1040, 700});
    m_state.download = {};
    m_presenter.show(m_state);
}

void Pictures::takeDownloads() {
    const TVEndpoint& tv = *m_state.selectedDevice;
    m_state.download = {true, 0.48, u"d.mkv"_s, endpointKey(tv), tv.name};
    m_presenter.show(m_state);
    take(u"download"_s);
    const QAccessibleInterface* cancel =
        findAccessible(m_view.window(), QAccessible::Button, u"Cancel download"_s);
    QTest::mouseMove(m_view.window(), m_view.window()->mapFromGlobal(cancel->rect().center()));
    take(u"download-hovered"_s);
    take(u"download-narrow"_s, {1040, 700});
    QTest::mouseMove(m_view.window(), QPoint(1, 1));
    m_state.download = {};
    m_presenter.show(m_state);
    press("Download");
    take(u"download-menu"_s, {1040, 700});
    QTest::keyClick(m_view.window(), Qt::Key_Escape);
}

void Pictures::takeLocalPlayer() {
    const auto player = std::make_shared<FakePlayer>();
    player->screen = {false, false, true, 754, 5'400, 1'300, 0.7, false};
    LocalPlaybackState& local = m_state.localPlayback;
    local.localPlaybackSession = LocalPlaybackSession{u"1"_s, u"a.mkv"_s, u"Glacier Road"_s, {}};
    local.localPlayer = player;
    local.localSubtitleOptions = {{u"off"_s, u"Off"_s}, {u"1"_s, u"English"_s}};
    local.localAudioOptions = {{u"1"_s, u"Original (5.1)"_s}, {u"2"_s, u"German"_s}};
    local.selectedLocalAudioID = u"1"_s;
    m_presenter.show(m_state);
    take(u"player"_s);
    take(u"player-narrow"_s, {1040, 700});
    local.localPlaybackErrorMessage =
        u"macOS could not decode this stream (unrecognized file format). Open in VLC or use Play "
        "on TV."_s;
    local.externalPlayerPrompt = ExternalPlayerPrompt{{}, {}, {}, true};
    m_presenter.show(m_state);
    take(u"player-error"_s, {1040, 700});
    m_state.localPlayback = {};
    m_presenter.show(m_state);
}

void Pictures::takeControls() {
    m_state.playback = samplePlayback();
    ++m_state.playbackReading;
    m_presenter.show(m_state);
    take(u"dock"_s);
    m_state.isReachable = false;
    m_presenter.show(m_state);
    take(u"not-reachable"_s, {1040, 700});
    m_state.isReachable = true;
    m_state.status = {.text = u"Downloaded Harbour Tour S01E03 - The Very Long Title.mkv"_s,
                      .file = QUrl(u"file:///root/Videos/x.mkv"_s)};
    m_presenter.show(m_state);
    take(u"downloaded"_s, {1040, 700});
    m_state.status = failureMessage(u"Playback command failed: The TV did not answer in time."_s);
    m_state.pendingCommands = {PlaybackCommand::pause(), PlaybackCommand::setSpeed(1)};
    m_state.move = {true, 0.62, 31'500'000, u"c.mkv"_s};
    m_presenter.show(m_state);
    take(u"move"_s);
    take(u"move-narrow"_s, {1040, 980});
    m_state.move = {};
    m_presenter.show(m_state);
    press("Audio");
    take(u"menu"_s, {1040, 700});
    QTest::keyClick(m_view.window(), Qt::Key_Escape);
    PlaybackResponse unknown = samplePlayback();
    unknown.isPlaying = false;
    unknown.durationMs = 0;
    unknown.audioTracks.clear();
    m_state.playback = unknown;
    ++m_state.playbackReading;
    m_presenter.show(m_state);
    take(u"dock-unknown"_s, {1040, 700});
    m_state.playback = std::nullopt;
    ++m_state.playbackReading;
    m_presenter.show(m_state);
    press("Delete");
    take(u"delete"_s);
    m_presenter.deletePrompt()->cancel();
}

void Pictures::takeAll() {
    m_state.status = {u"Searching for TVs on local network..."_s};
    m_state.isSearching = true;
    m_presenter.show(m_state);
    take(u"searching"_s);
    m_state.networkProblem = networkProblem({}, true);
    m_presenter.show(m_state);
    take(u"no-network"_s);
    take(u"no-network-narrow"_s, {760, 600});
    m_state.networkProblem = {};
    m_presenter.show(m_state);
    m_state.isSearching = false;
    NoTvPresenter advice({u"https://a.example/tvs"_s, u"https://a.example/app"_s});
    auto* noTv = m_view.window()->findChild<QQuickItem*>(u"noTv"_s);
    noTv->setProperty("presenter", QVariant::fromValue(&advice));
    take(u"no-tv"_s);
    noTv->setProperty("presenter", QVariant::fromValue(m_presenter.noTv()));
    showTv();
    take(u"library"_s);
    takeControls();
    takeUploads();
    takeDownloads();
    takeLocalPlayer();
    for (int step = 0; step < 5; ++step)
        QTest::keyClick(m_view.window(), Qt::Key_Tab);
    QTest::keyClick(m_view.window(), Qt::Key_Down);
    take(u"keyboard"_s, {1040, 700});
    QTest::mouseMove(m_view.window(), QPoint(500, 300));
    QTest::mouseClick(m_view.window(), Qt::LeftButton, {}, QPoint(500, 300));
    take(u"hover"_s, {1040, 700});
    m_presenter.library()->select(u"d.mkv"_s, Qt::ControlModifier);
    QTest::keyClick(m_view.window(), Qt::Key_Menu);
    take(u"selection"_s, {1040, 700});
    QTest::keyClick(m_view.window(), Qt::Key_Escape);
    m_presenter.library()->clearSelection();
    QTest::keyClick(m_view.window(), Qt::Key_Menu);
    take(u"row-menu"_s, {1366, 768});
    QTest::keyClick(m_view.window(), Qt::Key_Escape);
    m_presenter.shortcuts()->present();
    take(u"shortcuts"_s, {1040, 700});
    m_presenter.shortcuts()->dismiss();
    m_presenter.library()->search(u"harbour"_s);
    take(u"search"_s, {1040, 700});
    m_presenter.library()->search(u"nothing like it"_s);
    take(u"no-results"_s, {1040, 700});
    m_presenter.library()->search(QString());
    showPairing();
    take(u"pairing-sheet"_s);
    m_presenter.pairingSheet()->type(u"482"_s);
    m_state.pairing.refusal = u"Wrong code. 3 attempt(s) left."_s;
    m_presenter.show(m_state);
    take(u"pairing-code"_s, {1040, 700});
    m_presenter.pairingSheet()->dismiss();
    take(u"pairing-strip"_s);
    take(u"narrow"_s, {1040, 980});
    m_state.pairing = {};
    m_presenter.show(m_state);
    m_state.content = {};
    m_presenter.show(m_state);
    take(u"empty"_s, {1040, 700});
    m_state.libraryFailure = HttpError(HttpErrorCode::ReplyTooLarge).description();
    m_presenter.show(m_state);
    take(u"failed"_s, {1040, 700});
    m_state.isLibraryLoading = true;
    m_presenter.show(m_state);
    take(u"loading"_s, {1040, 700});
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    chooseGraphics();
    const Choice choice = choiceFrom(application);
    Pictures(choice).takeAll();
    return 0;
}

#include "fake_window_ports.h"
#include "recording_actions.h"
#include "sample_state.h"

#include "transfer/upload_names.h"
#include "ui/presenters/window_presenter.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

using Phase = LibraryPresenter::Phase;

LibraryContent library(const QStringList& names) {
    LibraryContent content;
    for (const QString& name : names)
        content.groupedFiles.append(sampleRow(name, name));
    return content;
}

PlaybackTrack track(const char* id, const char* label, bool isSelected) {
    return {QString::fromLatin1(id), QString::fromLatin1(label), std::nullopt, isSelected};
}

PlaybackResponse playing(const char* name, std::int64_t positionMs = 0,
                         std::int64_t durationMs = 7'200'000) {
    PlaybackResponse playback;
    playback.currentVideoName = QString::fromLatin1(name);
    playback.isPlaying = true;
    playback.positionMs = positionMs;
    playback.durationMs = durationMs;
    return playback;
}

const TVEndpoint Bedroom = sampleTv(u"Bedroom"_s, u"10.0.0.2"_s);
const TVEndpoint Kitchen = sampleTv(u"Kitchen"_s, u"10.0.0.3"_s);

// A chooser's home with folders and files, and what was chosen.
struct ChooserFixture {
    ChooserFixture() {
        qputenv("HOME", home.path().toUtf8());
        const QDir folder(home.path());
        folder.mkpath(u"Videos/Old"_s);
        for (const char* name : {"Videos/b 10.mkv", "Videos/a 10.mkv", "Videos/Old/c.mkv"})
            QFile(folder.filePath(QString::fromLatin1(name))).open(QIODevice::WriteOnly);
    }

    Task<> ask(FileChooserPresenter& chooser, FileDialogRequest::Purpose purpose) const {
        const FileDialogAnswer answer =
            co_await chooser.ask({purpose, u"Files"_s, u"Take"_s, u"Proposed.mkv"_s});
        *files = answer.value();
    }
    QStringList names() const {
        QStringList names;
        for (const QUrl& file : *files)
            names.append(file.fileName());
        return names;
    }

    QTemporaryDir home;
    std::shared_ptr<QList<QUrl>> files = std::make_shared<QList<QUrl>>();
};

} // namespace

// What the window makes of the player, of moves, deletions and uploads.
class ControlPresentersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_state = {}; }
    void rowsShowPlayerAndMove();
    void aMoveIsOfferedWhereItCanGo();
    void onlyTheRowsInViewAnswerForThePlayer();
    void aDragSeeksOnce();
    void aDragThatEndsOtherwiseSeeksNowhere_data();
    void aDragThatEndsOtherwiseSeeksNowhere();
    void menusMarkWhatTheTvConfirmed();
    void choicesAreSentByTheirTags();
    void theDockIsNamedByTheLibrary();
    void deletingIsAskedFirst();
    void uploadsAreListedAndMarkTheirRows();
    void dropsAreTakenWhenThereAreFiles();
    void filesAreChosenFromFolders();
    void aPlaceToSaveToIsChosen();
    void theDesktopsDialogsComeFirst();
    void aSubtitleOfAnotherNameIsAskedAbout();

private:
    RecordingActions m_actions;
    FakeWindowPorts m_ports;
    WindowState m_state;
};

void ControlPresentersTest::rowsShowPlayerAndMove() {
    const LibraryRow row = sampleRow(u"a.mkv"_s, u"A"_s);
    WindowState context;
    context.playback = playing("a.mkv");
    context.move = {true, 0.426, 1, u"A.MKV"_s};
    FileGroupRowState state = fileGroupRowState(row, context);
    QCOMPARE(state.playbackText, u"Playing"_s);
    QCOMPARE(state.playSymbol, u"pause.fill"_s);
    QVERIFY(state.isMoving);
    QCOMPARE(state.movePercentText, u"42%"_s);

    context.playback->isPlaying = false;
    QCOMPARE(fileGroupRowState(row, context).playbackText, u"Paused"_s);
    context.playback->currentVideoName = u"A.mkv"_s; // another file
    state = fileGroupRowState(row, context);
    QCOMPARE(state.playbackText, QString());
    QCOMPARE(state.playSymbol, u"play.fill"_s);

    LibraryRow subtitle = row;
    subtitle.group.video.reset();
    context.playback->currentVideoName.reset();
    state = fileGroupRowState(subtitle, context);
    QVERIFY(!state.hasVideo && !state.canMove && !state.isMoving);
    QCOMPARE(state.playbackText, QString());
}

void ControlPresentersTest::aMoveIsOfferedWhereItCanGo() {
    LibraryRow row = sampleRow(u"a.mkv"_s, u"A"_s);
    WindowState context;
    QCOMPARE(fileGroupRowState(row, context).moveTitle, u"Move to USB"_s);
    QVERIFY(!fileGroupRowState(row, context).canMove); // no drive
    context.content.usbStorage = RemoteUsbStorage{{}, u"Drive"_s, true, 1, 1, 0, 0};
    QVERIFY(fileGroupRowState(row, context).canMove);
    context.move.isMovingFile = true;
    QVERIFY(!fileGroupRowState(row, context).canMove); // one at a time
    row.storageLocation = u"usb"_s;
    context = {};
    QCOMPARE(fileGroupRowState(row, context).moveTitle, u"Move to Internal"_s);
    QVERIFY(fileGroupRowState(row, context).canMove);

    WindowPresenter presenter(m_actions, m_ports.ports);
    LibraryContent content = library({u"a.mkv"_s, u"b.mkv"_s});
    content.groupedFiles[1].storageLocation = u"usb"_s;
    content.groupedFiles[0].group.video.reset();
    m_state.content = content;
    presenter.show(m_state);
    m_actions.calls.clear();
    presenter.library()->moveStorage(u"a.mkv"_s);
    presenter.library()->moveStorage(u"b.mkv"_s);
    presenter.library()->playOrPause(u"b.mkv"_s);
    QCOMPARE(m_actions.calls, QStringList({u"move b.mkv to INTERNAL"_s, u"toggle b.mkv"_s}));
}

void ControlPresentersTest::onlyTheRowsInViewAnswerForThePlayer() {
    WindowPresenter presenter(m_actions, m_ports.ports);
    m_state.selectedDevice = Bedroom;
    m_state.content = library({u"a.mkv"_s, u"b.mkv"_s});
    presenter.show(m_state);
    const QSignalSpy changes(presenter.library()->rows(), &QAbstractItemModel::dataChanged);
    m_state.playback = playing("a.mkv", 1000);
    ++m_state.playbackReading;
    presenter.show(m_state);
    QCOMPARE(changes.size(), 1);
    m_state.playback = playing("a.mkv", 3000);
    ++m_state.playbackReading;
    presenter.show(m_state); // goes on
    QCOMPARE(changes.size(), 1);
}

void ControlPresentersTest::aDragSeeksOnce() {
    DockPresenter dock(m_actions);
    m_state.playback = playing("a.mkv");
    ++m_state.playbackReading;
    dock.show(m_state);
    m_actions.calls.clear();
    dock.beginDrag(0.1);
    dock.drag(0.5);
    m_state.playback = playing("a.mkv", 5000);
    ++m_state.playbackReading;
    dock.show(m_state); // does not move the held knob
    QCOMPARE(dock.timeline().positionText, u"1:00:00"_s);
    dock.drop();
    dock.drop();
    QCOMPARE(m_actions.calls, QStringList(u"seek_to 3600000"_s));
    QCOMPARE(dock.timeline().positionText, u"1:00:00"_s);
    m_state.playback = playing("a.mkv", 5000);
    ++m_state.playbackReading;
    dock.show(m_state); // the TV did not go there
    QCOMPARE(dock.timeline().positionText, u"00:05"_s);
}

void ControlPresentersTest::aDragThatEndsOtherwiseSeeksNowhere_data() {
    QTest::addColumn<std::function<void(DockPresenter&)>>("end");
    using End = std::function<void(DockPresenter&)>;
    const auto reading = [this](std::optional<PlaybackResponse> playback) {
        return End([this, playback](DockPresenter& dock) {
            m_state.playback = playback;
            ++m_state.playbackReading;
            dock.show(m_state);
        });
    };
    QTest::newRow("cancelled") << End([](DockPresenter& dock) { dock.cancelDrag(); });
    QTest::newRow("stopped") << reading(std::nullopt);
    QTest::newRow("another video") << reading(playing("b.mkv"));
    QTest::newRow("no duration") << reading(playing("a.mkv", 0, 0));
}

void ControlPresentersTest::aDragThatEndsOtherwiseSeeksNowhere() {
    QFETCH(std::function<void(DockPresenter&)>, end);
    DockPresenter dock(m_actions);
    m_state.playback = playing("a.mkv");
    ++m_state.playbackReading;
    dock.show(m_state);
    m_actions.calls.clear();
    dock.beginDrag(0.5);
    end(dock);
    dock.drag(0.6); // the pointer is still down
    dock.drop();
    QVERIFY(m_actions.calls.isEmpty());
    m_state.playback = playing("a.mkv", 9000);
    ++m_state.playbackReading;
    dock.show(m_state);
    QCOMPARE(dock.timeline().positionText, u"00:09"_s); // not stuck
}

void ControlPresentersTest::menusMarkWhatTheTvConfirmed() {
    PlaybackResponse playback = playing("a.mkv");
    playback.playbackSpeed = 1.3;
    DockState state = dockState(playback, QString());
    QCOMPARE(state.subtitles, QStringList(u"Off"_s));
    QCOMPARE(state.speeds.at(state.speedIndex), u"1.25x"_s);
    QVERIFY(state.audioTracks.isEmpty());

    playback.subtitleTracks = {track("1", "", false), track("1", "Twin", true),
                               track("", "", false)};
    playback.audioTracks = {track("2", "Stereo", false), track("3", "<b>5.1</b>", false)};
    state = dockState(playback, QString());
    QCOMPARE(state.subtitles, QStringList({u"Off"_s, u"1"_s, u"Twin"_s, u"Track 3"_s}));
    QCOMPARE(state.subtitleIndex, 2); // the one of its id that is selected
    QCOMPARE(state.audioIndex, 0);
    playback.audioTracks[1].selected = true;
    QCOMPARE(dockState(playback, QString()).audioIndex, 1);
    playback.subtitleTracks = {track("off", "None", true)};
    QCOMPARE(dockState(playback, QString()).subtitleIndex, 0);
    playback.subtitleTracks = QList<PlaybackTrack>(500, track("7", "Many", false));
    playback.playbackSpeed = -1e300;
    state = dockState(playback, QString());
    QCOMPARE(state.subtitles.size(), 501);
    QCOMPARE(state.speedIndex, 0);
}

void ControlPresentersTest::choicesAreSentByTheirTags() {
    DockPresenter dock(m_actions);
    PlaybackResponse playback = playing("a.mkv");
    playback.subtitleTracks = {track("OFF", "Odd", false), track("off", "None", false)};
    playback.audioTracks = {track("9", "Stereo", true)};
    m_state.playback = playback;
    ++m_state.playbackReading;
    dock.show(m_state);
    const DockState before = dock.state();
    m_actions.calls.clear();
    for (const int index : {0, 1, 2, 3, -1})
        dock.chooseSubtitle(index);
    dock.chooseAudio(0);
    dock.chooseAudio(1);
    dock.chooseSpeed(6);
    dock.chooseSpeed(7);
    QCOMPARE(m_actions.calls,
             QStringList({u"set_subtitle"_s, u"set_subtitle OFF"_s, u"set_subtitle"_s,
                          u"set_audio 9"_s, u"set_speed 2.00"_s}));
    QCOMPARE(dock.state(), before); // until the TV says so
}

void ControlPresentersTest::theDockIsNamedByTheLibrary() {
    const QList<LibraryRow> rows{sampleRow(u"a.mkv"_s, u"Glacier Road"_s)};
    QCOMPARE(nowPlayingTitle(rows, u"a.mkv"_s), u"Glacier Road"_s);
    QCOMPARE(nowPlayingTitle(rows, u" B.x.mkv"_s), u"B.x"_s);
    QCOMPARE(nowPlayingTitle(rows, u" .mkv"_s), u" .mkv"_s);
    DockPresenter dock(m_actions);
    m_state.playback = playing(" \n");
    ++m_state.playbackReading;
    dock.show(m_state);
    QVERIFY(!dock.state().isShown);
}

void ControlPresentersTest::deletingIsAskedFirst() {
    WindowPresenter presenter(m_actions, m_ports.ports);
    m_state.selectedDevice = Bedroom;
    presenter.show(m_state);
    LibraryContent content = library({u"a.mkv"_s});
    content.groupedFiles[0].group.subtitles = {RemoteFile(), RemoteFile()};
    m_state.content = content;
    presenter.show(m_state);
    PromptPresenter& prompt = *presenter.deletePrompt();
    m_actions.calls.clear();
    presenter.library()->requestDelete(u"a.mkv"_s);
    QCOMPARE(prompt.message(),
             u"This will delete 3 file(s) from the TV, including subtitles linked to "
             "\"a.mkv\"."_s);
    prompt.cancel();
    prompt.confirm();
    presenter.library()->requestDelete(u"a.mkv"_s);
    m_state.selectedDevice = Kitchen;
    presenter.show(m_state); // the question was about the other TV's file
    QVERIFY(!prompt.isShown());
    QVERIFY(m_actions.calls.isEmpty());
    presenter.library()->requestDelete(u"a.mkv"_s);
    prompt.confirm();
    QCOMPARE(m_actions.calls, QStringList(u"delete a.mkv"_s));
    QVERIFY(!prompt.isShown());
}

void ControlPresentersTest::uploadsAreListedAndMarkTheirRows() {
    UploadListItem item = sampleUpload(u"1"_s, u"a.mkv"_s, Bedroom);
    QCOMPARE(uploadStatusText(item, endpointKey(Kitchen)), u"To Bedroom:  Queued"_s);
    item.state = UploadListItemState::Failed;
    item.reason = u"No\nspace."_s;
    QCOMPARE(uploadStatusText(item, item.tvKey), u"No space."_s);
    item.state = UploadListItemState::Uploading;
    item.progress = 0.379;
    QCOMPARE(uploadStatusText(item, item.tvKey), u"Uploading  37%  -- B/s"_s);

    WindowPresenter presenter(m_actions, m_ports.ports);
    m_state.selectedDevice = Bedroom;
    m_state.uploads = {item};
    presenter.show(m_state);
    QCOMPARE(presenter.library()->phase(), Phase::List); // also without a library
    QCOMPARE(presenter.uploads()->count(), 1);
    m_state.content = library({u"A (2).mkv"_s, u"b.mkv"_s});
    presenter.show(m_state);
    m_actions.calls.clear();
    presenter.library()->playOrPause(u"A (2).mkv"_s); // not there yet
    presenter.library()->playOrPause(u"b.mkv"_s);
    presenter.uploads()->cancel(item.id);
    QCOMPARE(m_actions.calls, QStringList({u"toggle b.mkv"_s, u"cancel upload 1"_s}));
    m_state.content = {};
    presenter.show(m_state);
    m_state.uploads = {};
    presenter.show(m_state);
    QCOMPARE(presenter.library()->phase(), Phase::Empty);
}

void ControlPresentersTest::dropsAreTakenWhenThereAreFiles() {
    UploadsPresenter uploads(m_actions);
    QCOMPARE(uploads.dropHint(), u"Select a TV first"_s);
    m_state.selectedDevice = Bedroom;
    uploads.show(m_state);
    QCOMPARE(uploads.dropHint(), u"Files will be added to the upload queue"_s);
    uploads.setDropTargeted(true);
    QVERIFY(uploads.drop({QUrl(u"file:///a.mkv"_s)}));
    QVERIFY(!uploads.isUploadDropTargeted());
    QVERIFY(!uploads.drop({}));
}

void ControlPresentersTest::filesAreChosenFromFolders() {
    const ChooserFixture fixture;
    FileChooserPresenter chooser;
    const auto name = [&](int row) {
        return chooser.rows()->index(row, 0).data(Qt::UserRole).toString();
    };
    Task<> asking = fixture.ask(chooser, FileDialogRequest::Purpose::OpenSeveral);
    QTRY_COMPARE(name(0), u"Old"_s);
    QCOMPARE(name(1), u"a 10.mkv"_s);
    chooser.accept(); // nothing is chosen yet
    QVERIFY(chooser.isShown());
    chooser.select(u"b 10.mkv"_s);
    chooser.select(u"a 10.mkv"_s);
    chooser.select(u"not there"_s);
    chooser.accept();
    QTRY_COMPARE(fixture.names(), QStringList({u"a 10.mkv"_s, u"b 10.mkv"_s}));
    QVERIFY(!chooser.isShown());

    asking = fixture.ask(chooser, FileDialogRequest::Purpose::OpenOne);
    QTRY_COMPARE(chooser.rows()->rowCount(), 3);
    chooser.select(u"a 10.mkv"_s);
    chooser.select(u"Old"_s); // what was chosen stays behind
    QVERIFY(!chooser.canAccept());
    QTRY_COMPARE(name(0), u"c.mkv"_s);
    chooser.goUp();
    QTRY_COMPARE(chooser.rows()->rowCount(), 3);
    chooser.select(u"a 10.mkv"_s);
    chooser.activate(u"b 10.mkv"_s);
    QTRY_COMPARE(fixture.names(), QStringList(u"b 10.mkv"_s));

    asking = fixture.ask(chooser, FileDialogRequest::Purpose::OpenOne);
    asking.cancel(); // nobody waits for it any more
    QVERIFY(!chooser.isShown());
}

void ControlPresentersTest::aPlaceToSaveToIsChosen() {
    const ChooserFixture fixture;
    FileChooserPresenter chooser;
    Task<> asking = fixture.ask(chooser, FileDialogRequest::Purpose::Save);
    QTRY_COMPARE(chooser.rows()->rowCount(), 3);
    QCOMPARE(chooser.name(), u"Proposed.mkv"_s);
    for (const char* bad : {"", "  ", "..", "../x", "a/b"}) {
        chooser.setName(QString::fromLatin1(bad));
        QVERIFY2(!chooser.canAccept(), bad);
    }
    chooser.setName(u"Old"_s);
    chooser.accept(); // a folder
    chooser.accept();
    QVERIFY(chooser.isShown());
    chooser.select(u"a 10.mkv"_s);
    chooser.accept();
    QCOMPARE(chooser.acceptLabel(), u"Replace"_s);
    QVERIFY(chooser.note().contains(u"a 10.mkv"_s));
    chooser.setName(u"b 10.mkv"_s); // asks anew
    chooser.accept();
    QVERIFY(chooser.isShown());
    chooser.accept();
    QTRY_COMPARE(fixture.names(), QStringList(u"b 10.mkv"_s));

    asking = fixture.ask(chooser, FileDialogRequest::Purpose::Save);
    chooser.createFolder(u"Old/x/y"_s);
    QVERIFY(!chooser.note().isEmpty());
    chooser.createFolder(u"New"_s);
    QVERIFY(chooser.folder().endsWith(u"Videos/New"_s));
    chooser.accept();
    QTRY_COMPARE(fixture.names(), QStringList(u"Proposed.mkv"_s));
    QVERIFY(fixture.files->constFirst().path().endsWith(u"New/Proposed.mkv"_s));

    asking = fixture.ask(chooser, FileDialogRequest::Purpose::Save);
    chooser.cancel();
    QTRY_VERIFY(fixture.files->isEmpty());
}

void ControlPresentersTest::theDesktopsDialogsComeFirst() {
    m_ports.dialogs.desktop.isOffered = true;
    m_actions.calls.clear();
    {
        WindowPresenter presenter(m_actions, m_ports.ports);
        presenter.pickUploads();
        QCOMPARE(m_ports.dialogs.desktop.requests.constLast().purpose,
                 FileDialogRequest::Purpose::OpenSeveral);
        m_ports.dialogs.desktop.answer(QList<QUrl>()); // cancelled
        QVERIFY(!presenter.fileChooser()->isShown());
        presenter.pickUploads();
        m_ports.dialogs.desktop.answer(QList<QUrl>{QUrl(u"file:///a.mkv"_s)});
        QTRY_COMPARE(m_actions.calls, QStringList(u"pick a.mkv"_s));
        presenter.pickUploads();
        presenter.pickUploads(); // the first closes
        QCOMPARE(m_ports.dialogs.desktop.dropped, 1);
        m_ports.dialogs.desktop.answer(std::nullopt); // went away
        QTRY_VERIFY(presenter.fileChooser()->isShown());
        presenter.pickUploads();
    }
    QCOMPARE(m_ports.dialogs.desktop.dropped, 2); // with the window
    QCOMPARE(m_actions.calls.size(), 1);
}

void ControlPresentersTest::aSubtitleOfAnotherNameIsAskedAbout() {
    WindowPresenter presenter(m_actions, m_ports.ports);
    const PromptPresenter& prompt = *presenter.subtitleRename();
    m_state.selectedDevice = Bedroom;
    presenter.show(m_state);
    m_actions.calls.clear();
    presenter.attachSubtitle(QUrl(u"file:///SHOW.srt"_s), u"Show.mkv"_s);
    QCOMPARE(m_actions.calls, QStringList(u"attach SHOW.srt as Show.srt"_s));
    presenter.attachSubtitle(QUrl(u"file:///x.ASS"_s), u"Show.mkv"_s);
    QVERIFY(prompt.message().contains(u"\"Show.ass\""_s));
    m_state.selectedDevice = Kitchen;
    presenter.show(m_state);
    presenter.subtitleRename()->confirm();
    QCOMPARE(m_actions.calls.size(), 1);
    presenter.attachSubtitle(QUrl(u"file:///x.ASS"_s), u"Show.mkv"_s);
    presenter.subtitleRename()->confirm();
    QCOMPARE(m_actions.calls.last(), u"attach x.ASS as Show.ass"_s);
    QVERIFY(!prompt.isShown());
}

QTEST_GUILESS_MAIN(ControlPresentersTest)
#include "control_presenters_test.moc"

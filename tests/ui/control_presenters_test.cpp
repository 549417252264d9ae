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
#include <limits>

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

const TVEndpoint bedroom = sampleTv(QStringLiteral("Bedroom"), QStringLiteral("10.0.0.2"));
const TVEndpoint kitchen = sampleTv(QStringLiteral("Kitchen"), QStringLiteral("10.0.0.3"));

// A chooser's home with folders and files, and what was chosen.
struct ChooserFixture {
    ChooserFixture() {
        qputenv("HOME", home.path().toUtf8());
        const QDir folder(home.path());
        folder.mkpath(QStringLiteral("Videos/Old"));
        for (const char* name : {"Videos/b 10.mkv", "Videos/a 10.mkv", "Videos/Old/c.mkv"})
            QFile(folder.filePath(QString::fromLatin1(name))).open(QIODevice::WriteOnly);
    }

    Task<> ask(FileChooserPresenter& chooser, FileDialogRequest::Purpose purpose) const {
        auto asking = chooser.ask({purpose, QStringLiteral("Files"), QStringLiteral("Take"),
                                   QStringLiteral("Proposed.mkv")});
        const FileDialogAnswer answer = co_await std::move(asking);
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
    void rowsShowPlayerAndMove();
    void aMoveIsOfferedWhereItCanGo();
    void onlyTheRowsInViewAnswerForThePlayer();
    void aDragSeeksOnce();
    void aDragThatEndsOtherwiseSeeksNowhere_data();
    void aDragThatEndsOtherwiseSeeksNowhere();
    void menusMarkWhatTheTvConfirmed();
    void choicesAreSentByTheirTags();
    void theDockIsNamedByTheLibrary();
    void strangePositionsAreShownWithinBounds();
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
};

void ControlPresentersTest::rowsShowPlayerAndMove() {
    const LibraryRow row = sampleRow(QStringLiteral("a.mkv"), QStringLiteral("A"));
    RowContext context;
    context.playback = playing("a.mkv");
    context.move = {true, 0.426, 1, QStringLiteral("A.MKV")};
    FileGroupRowState state = fileGroupRowState(row, context);
    QCOMPARE(state.playbackText, QStringLiteral("Playing"));
    QCOMPARE(state.playSymbol, QStringLiteral("pause.fill"));
    QVERIFY(state.isMoving);
    QCOMPARE(state.movePercentText, QStringLiteral("42%"));

    context.playback->isPlaying = false;
    QCOMPARE(fileGroupRowState(row, context).playbackText, QStringLiteral("Paused"));
    context.playback->currentVideoName = QStringLiteral("A.mkv"); // another file
    state = fileGroupRowState(row, context);
    QCOMPARE(state.playbackText, QString());
    QCOMPARE(state.playSymbol, QStringLiteral("play.fill"));

    LibraryRow subtitle = row;
    subtitle.group.video.reset();
    context.playback->currentVideoName.reset();
    state = fileGroupRowState(subtitle, context);
    QVERIFY(!state.hasVideo && !state.canMove && !state.isMoving);
    QCOMPARE(state.playbackText, QString());
}

void ControlPresentersTest::aMoveIsOfferedWhereItCanGo() {
    LibraryRow row = sampleRow(QStringLiteral("a.mkv"), QStringLiteral("A"));
    RowContext context;
    QCOMPARE(fileGroupRowState(row, context).moveTitle, QStringLiteral("Move to USB"));
    QVERIFY(!fileGroupRowState(row, context).canMove); // no drive
    context.isUsbConnected = true;
    QVERIFY(fileGroupRowState(row, context).canMove);
    context.move.isMovingFile = true;
    QVERIFY(!fileGroupRowState(row, context).canMove); // one at a time
    row.storageLocation = QStringLiteral("usb");
    context = {};
    QCOMPARE(fileGroupRowState(row, context).moveTitle, QStringLiteral("Move to Internal"));
    QVERIFY(fileGroupRowState(row, context).canMove);

    WindowPresenter presenter(m_actions, m_ports.ports);
    LibraryContent content = library({QStringLiteral("a.mkv"), QStringLiteral("b.mkv")});
    content.groupedFiles[1].storageLocation = QStringLiteral("usb");
    content.groupedFiles[0].group.video.reset();
    presenter.setContent(content);
    m_actions.calls.clear();
    presenter.library()->moveStorage(QStringLiteral("a.mkv"));
    presenter.library()->moveStorage(QStringLiteral("b.mkv"));
    presenter.library()->playOrPause(QStringLiteral("b.mkv"));
    QCOMPARE(m_actions.calls, QStringList({QStringLiteral("move b.mkv to INTERNAL"),
                                           QStringLiteral("toggle b.mkv")}));
}

void ControlPresentersTest::onlyTheRowsInViewAnswerForThePlayer() {
    WindowPresenter presenter(m_actions, m_ports.ports);
    presenter.setSelectedDevice(bedroom);
    presenter.setContent(library({QStringLiteral("a.mkv"), QStringLiteral("b.mkv")}));
    const QSignalSpy changes(presenter.library()->rows(), &QAbstractItemModel::dataChanged);
    presenter.setPlayback(playing("a.mkv", 1000));
    QCOMPARE(changes.size(), 1);
    presenter.setPlayback(playing("a.mkv", 3000)); // goes on
    QCOMPARE(changes.size(), 1);
}

void ControlPresentersTest::aDragSeeksOnce() {
    DockPresenter dock(m_actions);
    dock.setPlayback(playing("a.mkv"));
    m_actions.calls.clear();
    dock.beginDrag(0.1);
    dock.drag(0.5);
    dock.setPlayback(playing("a.mkv", 5000)); // does not move the held knob
    QCOMPARE(dock.timeline().positionText, QStringLiteral("1:00:00"));
    dock.drop();
    dock.drop();
    QCOMPARE(m_actions.calls, QStringList(QStringLiteral("seek_to 3600000")));
    QCOMPARE(dock.timeline().positionText, QStringLiteral("1:00:00"));
    dock.setPlayback(playing("a.mkv", 5000)); // the TV did not go there
    QCOMPARE(dock.timeline().positionText, QStringLiteral("00:05"));
}

void ControlPresentersTest::aDragThatEndsOtherwiseSeeksNowhere_data() {
    QTest::addColumn<std::function<void(DockPresenter&)>>("end");
    using End = std::function<void(DockPresenter&)>;
    QTest::newRow("cancelled") << End([](DockPresenter& dock) { dock.cancelDrag(); });
    QTest::newRow("stopped") << End([](DockPresenter& dock) { dock.setPlayback(std::nullopt); });
    QTest::newRow("another video")
        << End([](DockPresenter& dock) { dock.setPlayback(playing("b.mkv")); });
    QTest::newRow("no duration") << End(
        [](DockPresenter& dock) { dock.setPlayback(playing("a.mkv", 0, 0)); });
}

void ControlPresentersTest::aDragThatEndsOtherwiseSeeksNowhere() {
    QFETCH(std::function<void(DockPresenter&)>, end);
    DockPresenter dock(m_actions);
    dock.setPlayback(playing("a.mkv"));
    m_actions.calls.clear();
    dock.beginDrag(0.5);
    end(dock);
    dock.drag(0.6); // the pointer is still down
    dock.drop();
    QVERIFY(m_actions.calls.isEmpty());
    dock.setPlayback(playing("a.mkv", 9000));
    QCOMPARE(dock.timeline().positionText, QStringLiteral("00:09")); // not stuck
}

void ControlPresentersTest::menusMarkWhatTheTvConfirmed() {
    PlaybackResponse playback = playing("a.mkv");
    playback.playbackSpeed = 1.3;
    DockState state = dockState(playback, QString());
    QCOMPARE(state.subtitles, QStringList(QStringLiteral("Off")));
    QCOMPARE(state.speeds.at(state.speedIndex), QStringLiteral("1.25x"));
    QVERIFY(state.audioTracks.isEmpty());

    playback.subtitleTracks = {track("1", "", false), track("1", "Twin", true),
                               track("", "", false)};
    playback.audioTracks = {track("2", "Stereo", false), track("3", "<b>5.1</b>", false)};
    state = dockState(playback, QString());
    QCOMPARE(state.subtitles, QStringList({QStringLiteral("Off"), QStringLiteral("1"),
                                           QStringLiteral("Twin"), QStringLiteral("Track 3")}));
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
    dock.setPlayback(playback);
    const DockState before = dock.state();
    m_actions.calls.clear();
    for (const int index : {0, 1, 2, 3, -1})
        dock.chooseSubtitle(index);
    dock.chooseAudio(0);
    dock.chooseAudio(1);
    dock.chooseSpeed(6);
    dock.chooseSpeed(7);
    QCOMPARE(m_actions.calls,
             QStringList({QStringLiteral("set_subtitle"), QStringLiteral("set_subtitle OFF"),
                          QStringLiteral("set_subtitle"), QStringLiteral("set_audio 9"),
                          QStringLiteral("set_speed 2.00")}));
    QCOMPARE(dock.state(), before); // until the TV says so
}

void ControlPresentersTest::theDockIsNamedByTheLibrary() {
    const QList<LibraryRow> rows{
        sampleRow(QStringLiteral("a.mkv"), QStringLiteral("Glacier Road"))};
    QCOMPARE(nowPlayingTitle(rows, QStringLiteral("a.mkv")), QStringLiteral("Glacier Road"));
    QCOMPARE(nowPlayingTitle(rows, QStringLiteral(" B.x.mkv")), QStringLiteral("B.x"));
    QCOMPARE(nowPlayingTitle(rows, QStringLiteral(" .mkv")), QStringLiteral(" .mkv"));
    DockPresenter dock(m_actions);
    dock.setPlayback(playing(" \n"));
    QVERIFY(!dock.state().isShown);
}

void ControlPresentersTest::strangePositionsAreShownWithinBounds() {
    DockPresenter dock(m_actions);
    constexpr auto huge = std::numeric_limits<std::int64_t>::max();
    dock.setPlayback(playing("a.mkv", huge, huge));
    QCOMPARE(dock.timeline().fraction, 1.0);
    dock.setPlayback(playing("a.mkv", -5, 60'000));
    QCOMPARE(dock.timeline().positionText, QStringLiteral("00:00"));
    dock.setPlayback(playing("a.mkv", 5000, -60'000));
    QCOMPARE(dock.timeline().positionText, QStringLiteral("00:05"));
    QVERIFY(!dock.timeline().canSeek);
    dock.beginDrag(0.5);
    QCOMPARE(dock.timeline().positionText, QStringLiteral("00:05"));
}

void ControlPresentersTest::deletingIsAskedFirst() {
    WindowPresenter presenter(m_actions, m_ports.ports);
    presenter.setSelectedDevice(bedroom);
    LibraryContent content = library({QStringLiteral("a.mkv")});
    content.groupedFiles[0].group.subtitles = {RemoteFile(), RemoteFile()};
    presenter.setContent(content);
    DeletePromptPresenter& prompt = *presenter.deletePrompt();
    m_actions.calls.clear();
    presenter.library()->requestDelete(QStringLiteral("a.mkv"));
    QCOMPARE(prompt.message(),
             QStringLiteral("This will delete 3 file(s) from the TV, including subtitles linked to "
                            "\"a.mkv\"."));
    prompt.cancel();
    prompt.confirm();
    presenter.library()->requestDelete(QStringLiteral("a.mkv"));
    presenter.setSelectedDevice(kitchen); // the question was about the other TV's file
    QVERIFY(!prompt.isShown());
    QVERIFY(m_actions.calls.isEmpty());
    prompt.ask(content.groupedFiles[0].group);
    prompt.confirm();
    QCOMPARE(m_actions.calls, QStringList(QStringLiteral("delete a.mkv")));
    QVERIFY(!prompt.isShown());
}

void ControlPresentersTest::uploadsAreListedAndMarkTheirRows() {
    UploadListItem item{QStringLiteral("1"), QStringLiteral("a.mkv"), UploadListItemState::Queued};
    QCOMPARE(uploadStatusText(item), QStringLiteral("Queued"));
    item.state = UploadListItemState::Uploading;
    item.progress = 0.379;
    QCOMPARE(uploadStatusText(item), QStringLiteral("Uploading  37%  -- B/s"));

    WindowPresenter presenter(m_actions, m_ports.ports);
    presenter.setSelectedDevice(bedroom);
    presenter.setUploads({item}, {uploadMatchKey(item.fileName)});
    QCOMPARE(presenter.library()->phase(), Phase::List); // also without a library
    QCOMPARE(presenter.uploads()->count(), 1);
    presenter.setContent(library({QStringLiteral("A (2).mkv"), QStringLiteral("b.mkv")}));
    m_actions.calls.clear();
    presenter.library()->playOrPause(QStringLiteral("A (2).mkv")); // not there yet
    presenter.library()->playOrPause(QStringLiteral("b.mkv"));
    presenter.uploads()->cancel(item.id);
    QCOMPARE(m_actions.calls,
             QStringList({QStringLiteral("toggle b.mkv"), QStringLiteral("cancel upload 1")}));
    presenter.setContent({});
    presenter.setUploads({}, {});
    QCOMPARE(presenter.library()->phase(), Phase::Empty);
}

void ControlPresentersTest::dropsAreTakenWhenThereAreFiles() {
    UploadsPresenter uploads(m_actions);
    QCOMPARE(uploads.dropHint(), QStringLiteral("Select a TV first"));
    uploads.setSelectedDevice(bedroom);
    QCOMPARE(uploads.dropHint(), QStringLiteral("Files will be added to the upload queue"));
    uploads.setDropTargeted(true);
    QVERIFY(uploads.drop({QUrl(QStringLiteral("file:///a.mkv"))}));
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
    QTRY_COMPARE(name(0), QStringLiteral("Old"));
    QCOMPARE(name(1), QStringLiteral("a 10.mkv"));
    chooser.accept(); // nothing is chosen yet
    QVERIFY(chooser.isShown());
    chooser.select(QStringLiteral("b 10.mkv"));
    chooser.select(QStringLiteral("a 10.mkv"));
    chooser.select(QStringLiteral("not there"));
    chooser.accept();
    QTRY_COMPARE(fixture.names(),
                 QStringList({QStringLiteral("a 10.mkv"), QStringLiteral("b 10.mkv")}));
    QVERIFY(!chooser.isShown());

    asking = fixture.ask(chooser, FileDialogRequest::Purpose::OpenOne);
    QTRY_COMPARE(chooser.rows()->rowCount(), 3);
    chooser.select(QStringLiteral("a 10.mkv"));
    chooser.select(QStringLiteral("Old")); // what was chosen stays behind
    QVERIFY(!chooser.canAccept());
    QTRY_COMPARE(name(0), QStringLiteral("c.mkv"));
    chooser.goUp();
    QTRY_COMPARE(chooser.rows()->rowCount(), 3);
    chooser.select(QStringLiteral("a 10.mkv"));
    chooser.activate(QStringLiteral("b 10.mkv"));
    QTRY_COMPARE(fixture.names(), QStringList(QStringLiteral("b 10.mkv")));

    asking = fixture.ask(chooser, FileDialogRequest::Purpose::OpenOne);
    asking.cancel(); // nobody waits for it any more
    QVERIFY(!chooser.isShown());
}

void ControlPresentersTest::aPlaceToSaveToIsChosen() {
    const ChooserFixture fixture;
    FileChooserPresenter chooser;
    Task<> asking = fixture.ask(chooser, FileDialogRequest::Purpose::Save);
    QTRY_COMPARE(chooser.rows()->rowCount(), 3);
    QCOMPARE(chooser.name(), QStringLiteral("Proposed.mkv"));
    for (const char* bad : {"", "  ", "..", "../x", "a/b"}) {
        chooser.setName(QString::fromLatin1(bad));
        QVERIFY2(!chooser.canAccept(), bad);
    }
    chooser.setName(QStringLiteral("Old"));
    chooser.accept(); // a folder
    chooser.accept();
    QVERIFY(chooser.isShown());
    chooser.select(QStringLiteral("a 10.mkv"));
    chooser.accept();
    QCOMPARE(chooser.acceptLabel(), QStringLiteral("Replace"));
    QVERIFY(chooser.note().contains(QStringLiteral("a 10.mkv")));
    chooser.setName(QStringLiteral("b 10.mkv")); // asks anew
    chooser.accept();
    QVERIFY(chooser.isShown());
    chooser.accept();
    QTRY_COMPARE(fixture.names(), QStringList(QStringLiteral("b 10.mkv")));

    asking = fixture.ask(chooser, FileDialogRequest::Purpose::Save);
    chooser.createFolder(QStringLiteral("Old/x/y"));
    QVERIFY(!chooser.note().isEmpty());
    chooser.createFolder(QStringLiteral("New"));
    QVERIFY(chooser.folder().endsWith(QStringLiteral("Videos/New")));
    chooser.accept();
    QTRY_COMPARE(fixture.names(), QStringList(QStringLiteral("Proposed.mkv")));
    QVERIFY(fixture.files->constFirst().path().endsWith(QStringLiteral("New/Proposed.mkv")));

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
        m_ports.dialogs.desktop.answer(QList<QUrl>{QUrl(QStringLiteral("file:///a.mkv"))});
        QTRY_COMPARE(m_actions.calls, QStringList(QStringLiteral("pick a.mkv")));
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
    SubtitleRenamePresenter rename(m_actions);
    rename.setSelectedDevice(bedroom);
    m_actions.calls.clear();
    rename.attach(QUrl(QStringLiteral("file:///SHOW.srt")), QStringLiteral("Show.mkv"));
    QCOMPARE(m_actions.calls, QStringList(QStringLiteral("attach SHOW.srt as Show.srt")));
    rename.attach(QUrl(QStringLiteral("file:///x.ASS")), QStringLiteral("Show.mkv"));
    QVERIFY(rename.message().contains(QStringLiteral("\"Show.ass\"")));
    rename.setSelectedDevice(kitchen);
    rename.confirm();
    QCOMPARE(m_actions.calls.size(), 1);
    rename.attach(QUrl(QStringLiteral("file:///x.ASS")), QStringLiteral("Show.mkv"));
    rename.confirm();
    QCOMPARE(m_actions.calls.last(), QStringLiteral("attach x.ASS as Show.ass"));
    QVERIFY(!rename.isShown());
}

QTEST_GUILESS_MAIN(ControlPresentersTest)
#include "control_presenters_test.moc"

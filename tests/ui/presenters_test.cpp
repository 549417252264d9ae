#include "fake_window_ports.h"
#include "recording_actions.h"
#include "sample_state.h"
#include "support/test_main.h"
#include "ui/presenters/window_presenter.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

using Phase = LibraryPresenter::Phase;
using Tone = BadgeTone::Tone;
using Badges = QList<StorageStatusBadge>;

RemoteUsbStorage drive(bool isConnected) {
    return {QString(), u"Backup"_s, isConnected, 310'000'000'000, 0, 3, 4'200'000'000};
}

LibraryContent library(const QStringList& names) {
    LibraryContent content;
    for (const QString& name : names)
        content.groupedFiles.append(sampleRow(name, name));
    return content;
}

PlaybackTrack track(const char* id, const char* label, bool isSelected = false) {
    return {QString::fromLatin1(id), QString::fromLatin1(label), std::nullopt, isSelected};
}

TVEndpoint renamed(TVEndpoint tv) {
    tv.name = u"Guest room"_s;
    return tv;
}

} // namespace

// What the window makes of its state, without views.
class PresentersTest : public QObject {
    Q_OBJECT

private:
    void tell() { m_presenter->show(m_state); }
    void select(const std::optional<TVEndpoint>& tv) {
        m_state.selectedDevice = tv;
        tell();
    }
    void read(const std::optional<PlaybackResponse>& playback) {
        m_state.playback = playback;
        ++m_state.playbackReading;
        tell();
    }
    QStringList takeCalls() { return std::exchange(m_actions.calls, {}); }

    RecordingActions m_actions;
    FakeWindowPorts m_ports;
    WindowState m_state;
    std::unique_ptr<WindowPresenter> m_presenter;

private Q_SLOTS:
    void init() {
        m_actions.calls.clear();
        m_state = {};
        m_presenter = std::make_unique<WindowPresenter>(m_actions, m_ports.ports);
        select(Bedroom);
    }
    void cleanup() { m_presenter.reset(); }

    void badgesTellOfStorages() {
        QCOMPARE(storageStatusBadges(RemoteStorage{0, 0, 12'400'000'000}, drive(true)),
                 (Badges{{u"Internal 12.4 GB free"_s, Tone::Green},
                         {u"Backup 310 GB free"_s, Tone::Green}}));
        LibraryContent& content = m_state.content;
        content.usbStorage = drive(false);
        content.usbSetupHint = QString();
        const StorageStatusBadge unplugged{u"Backup 3 videos/4.2 GB unplugged"_s, Tone::Amber};
        QCOMPARE(headerBadges(m_state),
                 (Badges{unplugged, {u"Uploads: INTERNAL"_s, Tone::Neutral}}));
        content.usbSetupHint = u"Plug in\na drive"_s;
        QCOMPARE(headerBadges(m_state)[1], (StorageStatusBadge{u"Plug in a drive"_s, Tone::Amber}));
        QCOMPARE(announcedText(u"Moving 5% a... 12%"_s), announcedText(u"Moving 5% a... 13%"_s));
        QCOMPARE(announcedText(u"Deleted 5% a.mkv"_s), u"Deleted 5% a.mkv"_s);
        QCOMPARE(storageLocationBadge(u"usb"_s).text, u"USB"_s);
        QCOMPARE(storageLocationBadge({}).tone, Tone::Internal);
    }

    void tilesTellOneTvFromAnother() {
        const TVEndpoint sameHost = sampleTv(Bedroom.name, Bedroom.host, 8081);
        WindowState state;
        state.discoveredDevices = {Bedroom, sameHost};
        state.selectedDevice = sameHost;
        state.isReachable = false;
        const Badges badges{{u"Not reachable"_s, Tone::Amber}};
        QCOMPARE(tvTiles(state),
                 (QList<TvTile>{{u"10.0.0.2:8080"_s, Bedroom, false, true, {}},
                                {u"10.0.0.2:8081"_s, sameHost, true, false, badges}}));
        QCOMPARE(foundTvsText(1), u"Found 1 TV"_s);
        QCOMPARE(foundTvsText(2), u"Found 2 TVs"_s);
        TVEndpoint tv = sampleTv(u"Living Room sony"_s, u"h"_s);
        tv.deviceManufacturer = tv.deviceBrand = u"Sony"_s;
        QCOMPARE(tileDescription(tv), QString());
        tv.deviceModel = u"KD-55"_s;
        QCOMPARE(tileDescription(tv), u"Sony KD-55"_s);
    }

    void searchNarrowsTheRowsAndIsForgottenWithItsTv() {
        LibraryPresenter& shown = *m_presenter->library();
        shown.search(u"   "_s);
        QCOMPARE(shown.phase(), Phase::Empty);
        m_state.content = library({u"One"_s, u"Two"_s});
        tell();
        QCOMPARE(shown.rows()->rowCount(), 2);
        shown.search(u" tWO "_s);
        QCOMPARE(shown.rows()->rowCount(), 1);
        const QSignalSpy resets(shown.rows(), &QAbstractItemModel::modelReset);
        select(renamed(Bedroom)); // is the same TV
        QCOMPARE(shown.searchText(), u" tWO "_s);
        QCOMPARE(resets.size(), 0);
        QCOMPARE(shown.foundText(), u"Found 1 title"_s);
        shown.selectAll();
        shown.search(u"three"_s);
        QVERIFY(!shown.clearSelection()); // what is not shown is not selected
        QCOMPARE(shown.phase(), Phase::NoResults);

        m_state.content = {};
        m_state.isLibraryLoading = true;
        select(Kitchen);
        QCOMPARE(shown.searchText(), QString());
        QCOMPARE(shown.rows()->rowCount(), 0);
        QCOMPARE(shown.phase(), Phase::Loading);
        QCOMPARE(shown.loadingText(), u"Loading library from Kitchen..."_s);
    }

    void aRowShowsTheMoveOfItsVideo_data() {
        QTest::addColumn<QString>("storage");
        QTest::addColumn<bool>("hasVideo");
        QTest::addColumn<bool>("hasDrive");
        QTest::addColumn<QString>("moving");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* storage, bool hasVideo, bool hasDrive, const char* moving,
                            const char* shown) {
            QTest::addRow("%s %d %d %s", storage, hasVideo, hasDrive, moving)
                << QString::fromLatin1(storage) << hasVideo << hasDrive
                << QString::fromLatin1(moving) << QString::fromLatin1(shown);
        };
        row("INTERNAL", true, false, "", "Move to USB -");
        row("INTERNAL", true, true, "", "Move to USB can");
        row("INTERNAL", true, true, "b.mkv", "Move to USB -"); // one at a time
        row("usb", true, false, "", "Move to Internal can");
        row("usb", true, false, "A.MKV", "Move to Internal - 42%");
        row("usb", false, true, "", "Move to Internal -");
    }
    void aRowShowsTheMoveOfItsVideo() {
        QFETCH(QString, storage);
        QFETCH(bool, hasVideo);
        QFETCH(bool, hasDrive);
        QFETCH(QString, moving);
        LibraryRow row = sampleRow(u"a.mkv"_s, u"A"_s);
        row.storageLocation = storage;
        if (!hasVideo)
            row.group.video.reset();
        m_state.content.usbStorage = drive(hasDrive);
        m_state.move = {!moving.isEmpty(), 0.426, 1, moving};
        const FileGroupRowState state = fileGroupRowState(row, m_state);
        const QString can = state.canMove ? u" can"_s : u" -"_s;
        QTEST((state.moveTitle + can + u' ' + state.movePercentText).trimmed(), "shown");
    }

    void aRowShowsWhetherItsVideoPlays() {
        const LibraryRow row = sampleRow(u"a.mkv"_s, u"A"_s);
        PlaybackResponse playback = playingVideo("A.mkv"); // another file
        m_state.playback = playback;
        QCOMPARE(fileGroupRowState(row, m_state).playbackText, QString());
        playback = playingVideo();
        playback.isPlaying = false;
        m_state.playback = playback;
        QCOMPARE(fileGroupRowState(row, m_state).playbackText, u"Paused"_s);
        QCOMPARE(fileGroupRowState(row, m_state).playSymbol, u"play.fill"_s);

        m_state.content = library({u"a.mkv"_s, u"b.mkv"_s});
        tell();
        const QSignalSpy changes(m_presenter->library()->rows(), &QAbstractItemModel::dataChanged);
        read(playingVideo("a.mkv", 1000));
        QCOMPARE(changes.size(), 1);
        read(playingVideo("a.mkv", 3000)); // goes on
        QCOMPARE(changes.size(), 1);
    }

    void rowsWithoutAVideoAreNeitherPlayedNorMoved() {
        m_state.content = library({u"a.mkv"_s, u"b.mkv"_s});
        m_state.content.groupedFiles[0].group.video.reset();
        m_state.content.groupedFiles[1].storageLocation = u"usb"_s;
        tell();
        for (const QString& key : {u"a.mkv"_s, u"b.mkv"_s}) {
            m_presenter->library()->moveStorage(key);
            m_presenter->library()->playOrPause(key);
        }
        QCOMPARE(takeCalls(), QStringList({u"move b.mkv to INTERNAL"_s, u"play b.mkv as b.mkv"_s}));
    }

    void aDragThatDoesNotEndByDroppingSeeksNowhere_data() {
        using End = std::function<void()>;
        QTest::addColumn<End>("end");
        const auto reading = [this](const std::optional<PlaybackResponse>& playback) {
            return End([this, playback] { read(playback); });
        };
        QTest::newRow("cancelled") << End([this] { m_presenter->dock()->cancelDrag(); });
        QTest::newRow("stopped") << reading(std::nullopt);
        QTest::newRow("another video") << reading(playingVideo("b.mkv"));
        QTest::newRow("no duration") << reading(playingVideo("a.mkv", 0, 0));
    }
    void aDragThatDoesNotEndByDroppingSeeksNowhere() {
        QFETCH(std::function<void()>, end);
        DockPresenter& dock = *m_presenter->dock();
        read(playingVideo());
        dock.beginDrag(0.5);
        end();
        dock.drag(0.6); // the pointer is still down
        dock.drop();
        QCOMPARE(takeCalls(), QStringList());
        read(playingVideo("a.mkv", 9000));
        QCOMPARE(dock.timeline().positionText, u"00:09"_s); // not stuck
    }

    void menusMarkWhatTheTvConfirmed() {
        PlaybackResponse playback = playingVideo();
        playback.playbackSpeed = 1.3;
        playback.subtitleTracks = {track("1", ""), track("1", "Twin", true), track("", "")};
        playback.audioTracks = {track("2", "Stereo"), track("3", "<b>5.1</b>")};
        DockState state = dockState(playback, QString());
        QCOMPARE(state.speeds.at(state.speedIndex), u"1.25x"_s);
        QCOMPARE(state.subtitles, QStringList({u"Off"_s, u"1"_s, u"Twin"_s, u"Track 3"_s}));
        QCOMPARE(state.subtitleIndex, 2); // the one of its id that is selected
        QCOMPARE(state.audioIndex, 0);
        playback.audioTracks[1].selected = true;
        playback.subtitleTracks = {track("off", "None", true)};
        playback.playbackSpeed = -1e300;
        state = dockState(playback, QString());
        QCOMPARE(state.audioIndex, 1);
        QCOMPARE(state.subtitleIndex, 0);
        QCOMPARE(state.speedIndex, 0);
    }

    void controlsWaitForTheTv() {
        m_state.content = library({u"a.mkv"_s});
        m_state.pendingCommands = {PlaybackCommand::play(u"a.mkv"_s), PlaybackCommand::seekBy(-1)};
        const QString key = m_state.content.groupedFiles[0].group.id;
        for (const FileRequest::Kind kind : {FileRequest::Kind::Move, FileRequest::Kind::Deletion})
            m_state.pendingFiles.insert({kind, endpointKey(Bedroom), u"a.mkv"_s});
        m_state.pendingFiles.insert({FileRequest::Kind::Download, u"another TV"_s, u"a.mkv"_s});
        tell();
        m_presenter->library()->moveStorage(key); // once is enough
        m_presenter->library()->requestDelete(key);
        QVERIFY(!m_presenter->deletePrompt()->isShown());
        m_state.isReachable = false;
        read(playingVideo());
        DockWaiting expected;
        expected.play = expected.back = true;
        QCOMPARE(m_presenter->dock()->waiting(), expected);
        QVERIFY(!m_presenter->dock()->isReachable());
        const FileGroupRowState row = fileGroupRowState(m_state.content.groupedFiles[0], m_state);
        QVERIFY(row.isPlayWaiting && row.isMoveWaiting && row.isDeleteWaiting && row.isDimmed);
        QVERIFY(!row.isDownloadWaiting);
        QVERIFY(!row.canPlay && !row.canMove && !row.canDelete && !row.canDownload);
        m_presenter->library()->playOrPause(key);
        m_presenter->library()->moveStorage(key);
        m_presenter->library()->requestDelete(key);
        QVERIFY(!m_presenter->deletePrompt()->isShown());
        QCOMPARE(takeCalls(), QStringList());
    }

    void choicesAreSentByTheirTags() {
        DockPresenter& dock = *m_presenter->dock();
        PlaybackResponse playback = playingVideo();
        playback.subtitleTracks = {track("OFF", "Odd"), track("off", "None")};
        playback.audioTracks = {track("9", "Stereo", true)};
        read(playback);
        const DockState before = dock.state();
        for (const int index : {0, 1, 2, 3, -1})
            dock.chooseSubtitle(index);
        dock.chooseAudio(0);
        dock.chooseAudio(1);
        dock.chooseSpeed(6);
        dock.chooseSpeed(7);
        QCOMPARE(takeCalls(),
                 QStringList({u"set_subtitle"_s, u"set_subtitle OFF"_s, u"set_subtitle"_s,
                              u"set_audio 9"_s, u"set_speed 2.00"_s}));
        QCOMPARE(dock.state(), before); // until the TV says so
    }

    void theDockIsNamedByTheLibrary() {
        const QList<LibraryRow> rows{sampleRow(u"a.mkv"_s, u"Glacier Road"_s)};
        QCOMPARE(nowPlayingTitle(rows, u"a.mkv"_s), u"Glacier Road"_s);
        QCOMPARE(nowPlayingTitle(rows, u" B.x.mkv"_s), u"B.x"_s);
        QCOMPARE(nowPlayingTitle(rows, u" .mkv"_s), u" .mkv"_s);
        read(playingVideo(" \n"));
        QVERIFY(!m_presenter->dock()->state().isShown);
    }

    void whatIsAskedAboutIsDoneOnceConfirmed_data() {
        using Ask = std::function<void()>;
        QTest::addColumn<Ask>("ask");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("call");
        QTest::newRow("delete") << Ask([this] { m_presenter->library()->requestDelete(u"a"_s); })
                                << u"delete 3 file(s) from the TV, including subtitles linked to "
                                   "\"a\"."_s
                                << u"delete a"_s;
        QTest::newRow("delete several") << Ask([this] {
            m_presenter->library()->selectAll();
            m_presenter->library()->requestDelete(u"b"_s);
        }) << u"delete 4 file(s) from the TV, including subtitles linked to these 2 titles."_s
                                        << u"delete a, b"_s;
        const QUrl subtitle(u"file:///x.ASS"_s);
        QTest::newRow("rename") << Ask([=, this] {
            m_presenter->attachSubtitle(subtitle, u"Show.mkv"_s);
        }) << u"\"Show.ass\""_s << u"attach x.ASS as Show.ass"_s;
    }
    void whatIsAskedAboutIsDoneOnceConfirmed() {
        QFETCH(std::function<void()>, ask);
        QFETCH(QString, message);
        m_state.content = library({u"a"_s, u"b"_s});
        m_state.content.groupedFiles[0].group.subtitles = {RemoteFile(), RemoteFile()};
        tell();
        ask();
        const bool isDeletion = m_presenter->deletePrompt()->isShown();
        PromptPresenter& prompt =
            isDeletion ? *m_presenter->deletePrompt() : *m_presenter->subtitleRename();
        QVERIFY(prompt.message().contains(message));
        prompt.cancel();
        prompt.confirm();
        ask();
        select(Kitchen); // the question was about the other TV
        QVERIFY(!prompt.isShown());
        prompt.confirm();
        QCOMPARE(takeCalls(), QStringList());
        tell();
        ask();
        prompt.confirm();
        QTEST(takeCalls().join(u','), "call");
        QVERIFY(!prompt.isShown());
    }

    void aSubtitleNamedLikeItsVideoIsAttachedAtOnce() {
        m_presenter->attachSubtitle(QUrl(u"file:///SHOW.srt"_s), u"Show.mkv"_s);
        QCOMPARE(takeCalls(), QStringList(u"attach SHOW.srt as Show.srt"_s));
    }

    void uploadsAreListedAndMarkTheirRows() {
        UploadListItem item = sampleUpload(u"1"_s, u"a.mkv"_s, Bedroom);
        m_state.selectedDevice = Kitchen;
        m_state.download = {true, 0.5, u"c.mkv"_s, endpointKey(Bedroom), Bedroom.name};
        const auto statusTexts = [&] {
            m_state.uploads = {item};
            QStringList texts;
            for (const QueueRow& row : queueRows(m_state))
                texts.append(row.statusText);
            return texts;
        };
        QCOMPARE(statusTexts(),
                 QStringList({u"From Bedroom:  Downloading  50%"_s, u"To Bedroom:  Queued"_s}));
        m_state.selectedDevice = Bedroom;
        item.state = UploadListItemState::Failed;
        item.reason = u"No\nspace."_s;
        QCOMPARE(statusTexts(), QStringList(u"No space."_s));
        item.state = UploadListItemState::Uploading;
        LibraryPresenter& shown = *m_presenter->library();
        m_state.uploads = {item};
        tell();
        QCOMPARE(shown.phase(), Phase::List); // also without a library
        m_state.content = library({u"A (2).mkv"_s, u"b.mkv"_s});
        tell();
        shown.playOrPause(u"A (2).mkv"_s); // not there yet
        shown.playOrPause(u"b.mkv"_s);
        QCOMPARE(takeCalls(), QStringList(u"play b.mkv as b.mkv"_s));
        m_state.content = {};
        m_state.uploads = {};
        tell();
        QCOMPARE(shown.phase(), Phase::Empty);
        QVERIFY(!m_presenter->uploads()->dragEntered({QUrl(u"https://quiv.example/a.mkv"_s)}));
        QVERIFY(!m_presenter->uploads()->isUploadDropTargeted());
        QCOMPARE(m_presenter->uploads()->dropHint(), u"Files will be added to the upload queue"_s);
        select(std::nullopt);
        QCOMPARE(m_presenter->uploads()->dropHint(), u"Select a TV first"_s);
    }

    void adviceComesWhenTheSearchFoundNothing() {
        NoTvPresenter& noTv = *m_presenter->noTv();
        m_state.isSearching = true;
        select(std::nullopt);
        QVERIFY(noTv.isSearching());
        m_state.networkProblem = {u"No network"_s, u"Plug it in."_s};
        tell();
        QVERIFY(!noTv.isSearching());
        m_state.networkProblem = {};
        tell();
        QVERIFY(noTv.isSearching());
        m_state.discoveredDevices = {Bedroom};
        tell();
        QVERIFY(!noTv.isSearching());
        for (const char* bad : {"", "file:///etc/passwd", "javascript:x", "https:", "quiv.example"})
            QVERIFY2(!isWebAddress(QString::fromLatin1(bad)), bad);
    }

    void theDesktopsDialogsComeFirst() {
        FakeFileDialogs& desktop = m_ports.dialogs.desktop;
        desktop.isOffered = true;
        const auto pick = [&] {
            const qsizetype before = desktop.requests.size();
            m_presenter->pickUploads();
            QTRY_COMPARE(desktop.requests.size(), before + 1);
        };
        pick();
        QCOMPARE(desktop.requests.constLast().purpose, FileDialogRequest::Purpose::OpenSeveral);
        desktop.answer(QList<QUrl>()); // cancelled
        QVERIFY(!m_presenter->fileChooser()->isShown());
        pick();
        desktop.answer(QList<QUrl>{QUrl(u"file:///tmp/a.mkv"_s)});
        QTRY_COMPARE(m_actions.calls, QStringList(u"pick a.mkv"_s));
        m_actions.calls.clear();
        pick();
        QCOMPARE(desktop.requests.constLast().folder, u"/tmp"_s); // as before
        desktop.answer(QList<QUrl>{QUrl(u"sftp://host/a.mkv"_s)});
        QTRY_COMPARE(m_actions.calls.size(), 1);
        QVERIFY(takeCalls().constFirst().contains(u"not on this computer"_s));
        pick();
        select(Kitchen);
        desktop.answer(QList<QUrl>{QUrl(u"file:///a.mkv"_s)});
        QTRY_COMPARE(m_actions.calls.size(), 1);
        QVERIFY(takeCalls().constFirst().startsWith(u"say Not uploaded"_s));
        m_state.content = library({u"a.mkv"_s});
        tell();
        m_presenter->library()->attachSubtitle(m_state.content.groupedFiles[0].group.id);
        QTRY_COMPARE(desktop.requests.constLast().purpose, FileDialogRequest::Purpose::OpenOne);
        select(Bedroom);
        desktop.answer(QList<QUrl>{QUrl(u"file:///a.srt"_s)});
        QTRY_COMPARE(m_actions.calls.size(), 1);
        QVERIFY(takeCalls().constFirst().startsWith(u"say Not uploaded"_s));
        pick();
        pick(); // the first closes
        QCOMPARE(desktop.dropped, 1);
        desktop.answer(std::nullopt); // went away
        QTRY_VERIFY(m_presenter->fileChooser()->isShown());
        pick();
        m_presenter.reset();
        QCOMPARE(desktop.dropped, 2);
        QVERIFY(m_actions.calls.isEmpty());
    }
};

static const quiv::TestCase<PresentersTest> registered;
#include "presenters_test.moc"

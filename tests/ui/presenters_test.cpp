#include "recording_actions.h"
#include "sample_state.h"

#include "transfer/upload_names.h"
#include "ui/window_presenter.h"

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

QStringList texts(const QList<StorageStatusBadge>& badges) {
    QStringList texts;
    for (const StorageStatusBadge& badge : badges)
        texts.append(badge.text);
    return texts;
}

QVariant tileRole(SidebarPresenter& sidebar, int row, const QByteArray& role) {
    const QModelIndex index = sidebar.tiles()->index(row, 0);
    return index.data(sidebar.tiles()->roleNames().key(role));
}

RemoteUsbStorage drive(bool isConnected) {
    return {QString(), QStringLiteral("Backup"), isConnected, 310'000'000'000, 0, 3, 4'200'000'000};
}

PairingState pairing(bool isRequired) {
    PairingState state;
    state.isControlPaired = !isRequired;
    state.requiresControlPairing = isRequired;
    return state;
}

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

} // namespace

class PresentersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void storageBadgesTellWhatIsFreeOrUnplugged();
    void headerBadgesAddTheHintAndTheUploadTarget();
    void rowBadgeReadsTheLocationInAnyCase();
    void sidebarCountsTvs();
    void onlyTheSelectedTileHasBadges();
    void tilesOfOtherPortsAreOtherTvs();
    void tileDescriptionIsLeftOutWhenTheNameTellsIt();
    void phaseFollowsTheOrderOfTheDecisions();
    void searchNarrowsTheRowsAndIsForgottenWithItsTv();
    void aSearchOfBlanksIsNoSearch();
    void aNewerRecordOfTheTvKeepsItsRows();
    void codeIsCompleteWithThreeCharacters_data();
    void codeIsCompleteWithThreeCharacters();
    void sheetComesAndGoesWithTheRequirement();
    void sheetPutAwayComesBackOnRequest();
    void sheetOfAnotherTvStartsAnew();
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
    void aSubtitleOfAnotherNameIsAskedAbout();
    void verifyAsksTheModelAndKeepsTheSheet();
    void cancellingClosesTheSheet();

private:
    RecordingActions m_actions;
};

void PresentersTest::storageBadgesTellWhatIsFreeOrUnplugged() {
    const RemoteStorage internal{0, 0, 12'400'000'000};
    const QList<StorageStatusBadge> both = storageStatusBadges(internal, drive(true));
    QCOMPARE(texts(both), QStringList({QStringLiteral("Internal 12.4 GB free"),
                                       QStringLiteral("Backup 310 GB free")}));
    QCOMPARE(both[1].tone, BadgeTone::Tone::Green);
    const QList<StorageStatusBadge> unplugged = storageStatusBadges({}, drive(false));
    QCOMPARE(texts(unplugged), QStringList(QStringLiteral("Backup 3 videos/4.2 GB unplugged")));
    QCOMPARE(unplugged[0].tone, BadgeTone::Tone::Amber);
    QVERIFY(storageStatusBadges({}, {}).isEmpty());
}

void PresentersTest::headerBadgesAddTheHintAndTheUploadTarget() {
    LibraryContent content;
    content.usbSetupHint = QString();
    QCOMPARE(texts(headerBadges(content)), QStringList(QStringLiteral("Uploads: INTERNAL")));
    content.usbSetupHint = QStringLiteral("Plug in\na drive");
    content.preferredUploadTarget = QStringLiteral("USB");
    const QList<StorageStatusBadge> badges = headerBadges(content);
    QCOMPARE(texts(badges),
             QStringList({QStringLiteral("Plug in a drive"), QStringLiteral("Uploads: USB")}));
    QCOMPARE(badges[0].tone, BadgeTone::Tone::Amber);
    QCOMPARE(badges[1].tone, BadgeTone::Tone::Neutral);
}

void PresentersTest::rowBadgeReadsTheLocationInAnyCase() {
    QCOMPARE(storageLocationBadge(QStringLiteral("usb")).text, QStringLiteral("USB"));
    QCOMPARE(storageLocationBadge(QStringLiteral("INTERNAL")).text, QStringLiteral("Internal"));
    QCOMPARE(storageLocationBadge({}).tone, BadgeTone::Tone::Internal);
}

void PresentersTest::sidebarCountsTvs() {
    SidebarPresenter sidebar(m_actions);
    QCOMPARE(sidebar.countText(), QStringLiteral("Found 0 TVs"));
    sidebar.setDiscoveredDevices({bedroom});
    QCOMPARE(sidebar.countText(), QStringLiteral("Found 1 TV"));
    sidebar.setDiscoveredDevices({bedroom, kitchen});
    QCOMPARE(sidebar.countText(), QStringLiteral("Found 2 TVs"));
}

void PresentersTest::onlyTheSelectedTileHasBadges() {
    SidebarPresenter sidebar(m_actions);
    sidebar.setDiscoveredDevices({bedroom, kitchen});
    sidebar.setStorageBadges(storageStatusBadges({}, drive(true)));
    sidebar.setSelectedDevice(kitchen);
    QCOMPARE(tileRole(sidebar, 0, "isSelected").toBool(), false);
    QCOMPARE(tileRole(sidebar, 0, "badges").toList().size(), 0);
    QCOMPARE(tileRole(sidebar, 1, "isSelected").toBool(), true);
    QCOMPARE(tileRole(sidebar, 1, "badges").toList().size(), 1);
    QCOMPARE(tileRole(sidebar, 1, "address").toString(), QStringLiteral("10.0.0.3:8080"));
}

void PresentersTest::tilesOfOtherPortsAreOtherTvs() {
    const TVEndpoint other = sampleTv(bedroom.name, bedroom.host, 8081);
    const QList<TvTile> tiles = tvTiles({bedroom, other}, other, {});
    QCOMPARE(tiles[0].isSelected, false);
    QCOMPARE(tiles[1].isSelected, true);
}

void PresentersTest::tileDescriptionIsLeftOutWhenTheNameTellsIt() {
    TVEndpoint tv = sampleTv(QStringLiteral("Living Room sony"), QStringLiteral("h"));
    tv.deviceManufacturer = QStringLiteral("Sony");
    tv.deviceBrand = QStringLiteral("Sony");
    QCOMPARE(tileDescription(tv), QString());
    tv.deviceModel = QStringLiteral("KD-55");
    QCOMPARE(tileDescription(tv), QStringLiteral("Sony KD-55"));
}

void PresentersTest::phaseFollowsTheOrderOfTheDecisions() {
    const auto phase = [](bool hasTv, bool isLoading, bool hasQuery, int groups, int visible) {
        return libraryPhase({hasTv, isLoading, hasQuery, groups, visible});
    };
    QCOMPARE(phase(false, true, true, 3, 3), Phase::NoTv);
    QCOMPARE(phase(true, true, true, 0, 0), Phase::Loading);
    QCOMPARE(phase(true, true, false, 3, 3), Phase::List);
    QCOMPARE(phase(true, true, true, 3, 0), Phase::NoResults);
    QCOMPARE(phase(true, false, true, 0, 0), Phase::NoResults);
    QCOMPARE(phase(true, false, false, 0, 0), Phase::Empty);
}

void PresentersTest::searchNarrowsTheRowsAndIsForgottenWithItsTv() {
    LibraryPresenter presenter(m_actions);
    presenter.setSelectedDevice(bedroom);
    presenter.setContent(library({QStringLiteral("One"), QStringLiteral("Two")}));
    presenter.search(QStringLiteral(" tWO "));
    QCOMPARE(presenter.rows()->rowCount(), 1);
    presenter.search(QStringLiteral("three"));
    QCOMPARE(presenter.phase(), Phase::NoResults);
    QCOMPARE(presenter.noResultsText(), QStringLiteral("No files match \"three\""));

    presenter.setSelectedDevice(kitchen);
    presenter.setLoadInProgress(true);
    QCOMPARE(presenter.searchText(), QString());
    QCOMPARE(presenter.rows()->rowCount(), 0);
    QCOMPARE(presenter.phase(), Phase::Loading);
    QCOMPARE(presenter.loadingText(), QStringLiteral("Loading library from Kitchen..."));
}

void PresentersTest::aSearchOfBlanksIsNoSearch() {
    LibraryPresenter presenter(m_actions);
    presenter.setSelectedDevice(bedroom);
    presenter.search(QStringLiteral("   "));
    QCOMPARE(presenter.phase(), Phase::Empty);
    presenter.setContent(library({QStringLiteral("One")}));
    QCOMPARE(presenter.rows()->rowCount(), 1);
}

void PresentersTest::aNewerRecordOfTheTvKeepsItsRows() {
    LibraryPresenter presenter(m_actions);
    presenter.setSelectedDevice(bedroom);
    presenter.setContent(library({QStringLiteral("One")}));
    presenter.search(QStringLiteral("o"));
    QSignalSpy reset(presenter.rows(), &QAbstractItemModel::modelReset);
    TVEndpoint renamed = bedroom;
    renamed.name = QStringLiteral("Guest room");
    presenter.setSelectedDevice(renamed);
    QCOMPARE(presenter.searchText(), QStringLiteral("o"));
    QCOMPARE(presenter.rows()->rowCount(), 1);
    QCOMPARE(reset.size(), 0);
}

void PresentersTest::codeIsCompleteWithThreeCharacters_data() {
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isComplete");
    QTest::newRow("none") << QString() << false;
    QTest::newRow("two") << QStringLiteral("12") << false;
    QTest::newRow("three") << QStringLiteral("123") << true;
    QTest::newRow("four") << QStringLiteral("1234") << false;
    QTest::newRow("with a blank") << QStringLiteral("1 3") << true;
    QTest::newRow("pairs of units") << QStringLiteral("𝟏𝟐𝟑") << true;
    QTest::newRow("combined") << QStringLiteral("1\u0301\u030223") << true;
}

void PresentersTest::codeIsCompleteWithThreeCharacters() {
    QFETCH(QString, code);
    QTEST(isCompletePairingCode(code), "isComplete");
}

void PresentersTest::sheetComesAndGoesWithTheRequirement() {
    PairingSheetPresenter sheet(m_actions);
    sheet.setPairing(pairing(true));
    QVERIFY(!sheet.state().isShown); // no TV
    sheet.setSelectedDevice(bedroom);
    QVERIFY(sheet.state().isShown);
    sheet.type(QStringLiteral("12"));
    sheet.setPairing(pairing(false));
    QVERIFY(!sheet.state().isShown);
    QCOMPARE(sheet.state().code, QString());
    sheet.setPairing(pairing(true));
    QVERIFY(sheet.state().isShown);
    sheet.setSelectedDevice({});
    QVERIFY(!sheet.state().isShown);
}

void PresentersTest::sheetPutAwayComesBackOnRequest() {
    PairingSheetPresenter sheet(m_actions);
    sheet.setSelectedDevice(bedroom);
    sheet.present();
    QVERIFY(!sheet.state().isShown); // nothing requires it
    sheet.setPairing(pairing(true));
    sheet.type(QStringLiteral("12"));
    sheet.dismiss();
    PairingState later = pairing(true);
    later.pairingCodeValidUntil = QDateTime::currentDateTime();
    sheet.setPairing(later);
    QVERIFY(!sheet.state().isShown);
    sheet.present();
    QVERIFY(sheet.state().isShown);
    QCOMPARE(sheet.state().code, QStringLiteral("12"));
    QVERIFY(
        sheet.state().codeValidUntilText.startsWith(QStringLiteral("This code is valid until ")));
}

void PresentersTest::sheetOfAnotherTvStartsAnew() {
    PairingSheetPresenter sheet(m_actions);
    sheet.setSelectedDevice(bedroom);
    sheet.setPairing(pairing(true));
    sheet.type(QStringLiteral("12"));
    sheet.dismiss();
    TVEndpoint renamed = bedroom;
    renamed.name = QStringLiteral("Guest room");
    sheet.setSelectedDevice(renamed);
    QVERIFY(!sheet.state().isShown);
    QCOMPARE(sheet.state().code, QStringLiteral("12"));
    sheet.setSelectedDevice(kitchen);
    QVERIFY(sheet.state().isShown);
    QCOMPARE(sheet.state().code, QString());
}

void PresentersTest::rowsShowPlayerAndMove() {
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

void PresentersTest::aMoveIsOfferedWhereItCanGo() {
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

    WindowPresenter presenter(m_actions);
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

void PresentersTest::onlyTheRowsInViewAnswerForThePlayer() {
    WindowPresenter presenter(m_actions);
    presenter.setSelectedDevice(bedroom);
    presenter.setContent(library({QStringLiteral("a.mkv"), QStringLiteral("b.mkv")}));
    const QSignalSpy changes(presenter.library()->rows(), &QAbstractItemModel::dataChanged);
    presenter.setPlayback(playing("a.mkv", 1000));
    QCOMPARE(changes.size(), 1);
    presenter.setPlayback(playing("a.mkv", 3000)); // goes on
    QCOMPARE(changes.size(), 1);
}

void PresentersTest::aDragSeeksOnce() {
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

void PresentersTest::aDragThatEndsOtherwiseSeeksNowhere_data() {
    QTest::addColumn<std::function<void(DockPresenter&)>>("end");
    using End = std::function<void(DockPresenter&)>;
    QTest::newRow("cancelled") << End([](DockPresenter& dock) { dock.cancelDrag(); });
    QTest::newRow("stopped") << End([](DockPresenter& dock) { dock.setPlayback(std::nullopt); });
    QTest::newRow("another video")
        << End([](DockPresenter& dock) { dock.setPlayback(playing("b.mkv")); });
    QTest::newRow("no duration") << End(
        [](DockPresenter& dock) { dock.setPlayback(playing("a.mkv", 0, 0)); });
}

void PresentersTest::aDragThatEndsOtherwiseSeeksNowhere() {
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

void PresentersTest::menusMarkWhatTheTvConfirmed() {
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

void PresentersTest::choicesAreSentByTheirTags() {
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

void PresentersTest::theDockIsNamedByTheLibrary() {
    const QList<LibraryRow> rows{
        sampleRow(QStringLiteral("a.mkv"), QStringLiteral("Glacier Road"))};
    QCOMPARE(nowPlayingTitle(rows, QStringLiteral("a.mkv")), QStringLiteral("Glacier Road"));
    QCOMPARE(nowPlayingTitle(rows, QStringLiteral(" B.x.mkv")), QStringLiteral("B.x"));
    QCOMPARE(nowPlayingTitle(rows, QStringLiteral(" .mkv")), QStringLiteral(" .mkv"));
    DockPresenter dock(m_actions);
    dock.setPlayback(playing(" \n"));
    QVERIFY(!dock.state().isShown);
}

void PresentersTest::strangePositionsAreShownWithinBounds() {
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

void PresentersTest::deletingIsAskedFirst() {
    WindowPresenter presenter(m_actions);
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

void PresentersTest::uploadsAreListedAndMarkTheirRows() {
    UploadListItem item{QStringLiteral("1"), QStringLiteral("a.mkv"), UploadListItemState::Queued};
    QCOMPARE(uploadStatusText(item), QStringLiteral("Queued"));
    item.state = UploadListItemState::Uploading;
    item.progress = 0.379;
    QCOMPARE(uploadStatusText(item), QStringLiteral("Uploading  37%  -- B/s"));

    WindowPresenter presenter(m_actions);
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

void PresentersTest::dropsAreTakenWhenThereAreFiles() {
    UploadsPresenter uploads(m_actions);
    QCOMPARE(uploads.dropHint(), QStringLiteral("Select a TV first"));
    uploads.setSelectedDevice(bedroom);
    QCOMPARE(uploads.dropHint(), QStringLiteral("Files will be added to the upload queue"));
    uploads.setDropTargeted(true);
    QVERIFY(uploads.drop({QUrl(QStringLiteral("file:///a.mkv"))}));
    QVERIFY(!uploads.isUploadDropTargeted());
    QVERIFY(!uploads.drop({}));
}

void PresentersTest::filesAreChosenFromFolders() {
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    const QDir videos(home.path());
    QVERIFY(videos.mkpath(QStringLiteral("Videos/Old")));
    for (const char* name : {"Videos/b 10.mkv", "Videos/a 10.mkv", "Videos/Old/c.mkv"}) {
        QFile file(videos.filePath(QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QList<QUrl> chosen;
    FileChooserPresenter chooser;
    const auto ask = [&](bool allowsSeveral) {
        chooser.ask({QStringLiteral("Files"), allowsSeveral, [](const QString&) { return true; },
                     [&](const QList<QUrl>& files) {
                         chosen = files;
                     }});
    };
    const auto name = [&](int row) {
        return chooser.rows()->index(row, 0).data(Qt::UserRole);
    };
    ask(true);
    QCOMPARE(name(0).toString(), QStringLiteral("Old"));
    QCOMPARE(name(1).toString(), QStringLiteral("a 10.mkv"));
    chooser.confirm(); // nothing is chosen yet
    QVERIFY(chooser.isShown());
    chooser.select(QStringLiteral("b 10.mkv"));
    chooser.select(QStringLiteral("a 10.mkv"));
    chooser.select(QStringLiteral("not there"));
    chooser.confirm();
    QCOMPARE(chosen.size(), 2);
    QCOMPARE(chosen[0].fileName(), QStringLiteral("a 10.mkv"));
    QVERIFY(!chooser.isShown());

    ask(false);
    chooser.select(QStringLiteral("a 10.mkv"));
    chooser.select(QStringLiteral("Old")); // what was chosen stays behind
    QVERIFY(!chooser.canOpen());
    chooser.goUp();
    chooser.select(QStringLiteral("a 10.mkv"));
    chooser.activate(QStringLiteral("b 10.mkv"));
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen[0].fileName(), QStringLiteral("b 10.mkv"));
}

void PresentersTest::aSubtitleOfAnotherNameIsAskedAbout() {
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

void PresentersTest::verifyAsksTheModelAndKeepsTheSheet() {
    RecordingActions actions;
    PairingSheetPresenter sheet(actions);
    sheet.setSelectedDevice(bedroom);
    sheet.setPairing(pairing(true));
    sheet.type(QStringLiteral("12"));
    sheet.verify();
    QVERIFY(actions.calls.isEmpty());
    sheet.type(QStringLiteral("123"));
    sheet.verify();
    QCOMPARE(actions.calls, QStringList(QStringLiteral("verify 123")));
    QVERIFY(sheet.state().isShown);
}

void PresentersTest::cancellingClosesTheSheet() {
    RecordingActions actions;
    PairingSheetPresenter sheet(actions);
    sheet.setSelectedDevice(bedroom);
    sheet.setPairing(pairing(true));
    sheet.type(QStringLiteral("12"));
    sheet.cancelPairing();
    QCOMPARE(actions.calls, QStringList(QStringLiteral("cancel pairing")));
    QVERIFY(!sheet.state().isShown);
    QCOMPARE(sheet.state().code, QString());
}

QTEST_GUILESS_MAIN(PresentersTest)
#include "presenters_test.moc"

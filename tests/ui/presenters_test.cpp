#include "recording_actions.h"
#include "sample_state.h"

#include "ui/presenters/window_presenter.h"

#include <QSignalSpy>
#include <QTest>

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

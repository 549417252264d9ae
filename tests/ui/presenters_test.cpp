#include "recording_actions.h"
#include "sample_state.h"

#include "ui/presenters/window_presenter.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
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
    return {QString(), u"Backup"_s, isConnected, 310'000'000'000, 0, 3, 4'200'000'000};
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

const TVEndpoint Bedroom = sampleTv(u"Bedroom"_s, u"10.0.0.2"_s);
const TVEndpoint Kitchen = sampleTv(u"Kitchen"_s, u"10.0.0.3"_s);

} // namespace

class PresentersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_state = {}; }
    void storageBadgesTellWhatIsFreeOrUnplugged();
    void headerBadgesAddTheHintAndTheUploadTarget();
    void rowBadgeReadsTheLocationInAnyCase();
    void sidebarCountsTvs();
    void onlyTheSelectedTileHasBadges();
    void tilesOfOtherPortsAreOtherTvs();
    void tileDescriptionIsLeftOutWhenTheNameTellsIt();
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
    WindowState m_state;
};

void PresentersTest::storageBadgesTellWhatIsFreeOrUnplugged() {
    const RemoteStorage internal{0, 0, 12'400'000'000};
    const QList<StorageStatusBadge> both = storageStatusBadges(internal, drive(true));
    QCOMPARE(texts(both), QStringList({u"Internal 12.4 GB free"_s, u"Backup 310 GB free"_s}));
    QCOMPARE(both[1].tone, BadgeTone::Tone::Green);
    const QList<StorageStatusBadge> unplugged = storageStatusBadges({}, drive(false));
    QCOMPARE(texts(unplugged), QStringList(u"Backup 3 videos/4.2 GB unplugged"_s));
    QCOMPARE(unplugged[0].tone, BadgeTone::Tone::Amber);
    QVERIFY(storageStatusBadges({}, {}).isEmpty());
}

void PresentersTest::headerBadgesAddTheHintAndTheUploadTarget() {
    LibraryContent content;
    content.usbSetupHint = QString();
    QCOMPARE(texts(headerBadges(content)), QStringList(u"Uploads: INTERNAL"_s));
    content.usbSetupHint = u"Plug in\na drive"_s;
    content.preferredUploadTarget = u"USB"_s;
    const QList<StorageStatusBadge> badges = headerBadges(content);
    QCOMPARE(texts(badges), QStringList({u"Plug in a drive"_s, u"Uploads: USB"_s}));
    QCOMPARE(badges[0].tone, BadgeTone::Tone::Amber);
    QCOMPARE(badges[1].tone, BadgeTone::Tone::Neutral);
}

void PresentersTest::rowBadgeReadsTheLocationInAnyCase() {
    QCOMPARE(storageLocationBadge(u"usb"_s).text, u"USB"_s);
    QCOMPARE(storageLocationBadge(u"INTERNAL"_s).text, u"Internal"_s);
    QCOMPARE(storageLocationBadge({}).tone, BadgeTone::Tone::Internal);
}

void PresentersTest::sidebarCountsTvs() {
    SidebarPresenter sidebar(m_actions);
    QCOMPARE(sidebar.countText(), u"Found 0 TVs"_s);
    m_state.discoveredDevices = {Bedroom};
    sidebar.show(m_state);
    QCOMPARE(sidebar.countText(), u"Found 1 TV"_s);
    m_state.discoveredDevices = {Bedroom, Kitchen};
    sidebar.show(m_state);
    QCOMPARE(sidebar.countText(), u"Found 2 TVs"_s);
}

void PresentersTest::onlyTheSelectedTileHasBadges() {
    SidebarPresenter sidebar(m_actions);
    m_state.discoveredDevices = {Bedroom, Kitchen};
    sidebar.show(m_state);
    m_state.content.usbStorage = drive(true);
    m_state.selectedDevice = Kitchen;
    sidebar.show(m_state);
    QCOMPARE(tileRole(sidebar, 0, "isSelected").toBool(), false);
    QCOMPARE(tileRole(sidebar, 0, "badges").toList().size(), 0);
    QCOMPARE(tileRole(sidebar, 1, "isSelected").toBool(), true);
    QCOMPARE(tileRole(sidebar, 1, "badges").toList().size(), 1);
    QCOMPARE(tileRole(sidebar, 1, "address").toString(), u"10.0.0.3:8080"_s);
}

void PresentersTest::tilesOfOtherPortsAreOtherTvs() {
    const TVEndpoint other = sampleTv(Bedroom.name, Bedroom.host, 8081);
    const QList<TvTile> tiles = tvTiles({Bedroom, other}, other, {});
    QCOMPARE(tiles[0].isSelected, false);
    QCOMPARE(tiles[1].isSelected, true);
}

void PresentersTest::tileDescriptionIsLeftOutWhenTheNameTellsIt() {
    TVEndpoint tv = sampleTv(u"Living Room sony"_s, u"h"_s);
    tv.deviceManufacturer = u"Sony"_s;
    tv.deviceBrand = u"Sony"_s;
    QCOMPARE(tileDescription(tv), QString());
    tv.deviceModel = u"KD-55"_s;
    QCOMPARE(tileDescription(tv), u"Sony KD-55"_s);
}

void PresentersTest::searchNarrowsTheRowsAndIsForgottenWithItsTv() {
    LibraryPresenter presenter(m_actions);
    m_state.selectedDevice = Bedroom;
    m_state.content = library({u"One"_s, u"Two"_s});
    presenter.show(m_state);
    presenter.search(u" tWO "_s);
    QCOMPARE(presenter.rows()->rowCount(), 1);
    presenter.search(u"three"_s);
    QCOMPARE(presenter.phase(), Phase::NoResults);
    QCOMPARE(presenter.noResultsText(), u"No files match \"three\""_s);

    m_state.selectedDevice = Kitchen;
    m_state.content = {};
    m_state.isLibraryLoading = true;
    presenter.show(m_state);
    QCOMPARE(presenter.searchText(), QString());
    QCOMPARE(presenter.rows()->rowCount(), 0);
    QCOMPARE(presenter.phase(), Phase::Loading);
    QCOMPARE(presenter.loadingText(), u"Loading library from Kitchen..."_s);
}

void PresentersTest::aSearchOfBlanksIsNoSearch() {
    LibraryPresenter presenter(m_actions);
    m_state.selectedDevice = Bedroom;
    presenter.show(m_state);
    presenter.search(u"   "_s);
    QCOMPARE(presenter.phase(), Phase::Empty);
    m_state.content = library({u"One"_s});
    presenter.show(m_state);
    QCOMPARE(presenter.rows()->rowCount(), 1);
}

void PresentersTest::aNewerRecordOfTheTvKeepsItsRows() {
    LibraryPresenter presenter(m_actions);
    m_state.selectedDevice = Bedroom;
    m_state.content = library({u"One"_s});
    presenter.show(m_state);
    presenter.search(u"o"_s);
    QSignalSpy reset(presenter.rows(), &QAbstractItemModel::modelReset);
    TVEndpoint renamed = Bedroom;
    renamed.name = u"Guest room"_s;
    m_state.selectedDevice = renamed;
    presenter.show(m_state);
    QCOMPARE(presenter.searchText(), u"o"_s);
    QCOMPARE(presenter.rows()->rowCount(), 1);
    QCOMPARE(reset.size(), 0);
}

void PresentersTest::codeIsCompleteWithThreeCharacters_data() {
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isComplete");
    QTest::newRow("none") << QString() << false;
    QTest::newRow("two") << u"12"_s << false;
    QTest::newRow("three") << u"123"_s << true;
    QTest::newRow("four") << u"1234"_s << false;
    QTest::newRow("with a blank") << u"1 3"_s << true;
    QTest::newRow("pairs of units") << u"𝟏𝟐𝟑"_s << true;
    QTest::newRow("combined") << u"1\u0301\u030223"_s << true;
}

void PresentersTest::codeIsCompleteWithThreeCharacters() {
    QFETCH(QString, code);
    QTEST(isCompletePairingCode(code), "isComplete");
}

void PresentersTest::sheetComesAndGoesWithTheRequirement() {
    PairingSheetPresenter sheet(m_actions);
    m_state.pairing = pairing(true);
    sheet.show(m_state);
    QVERIFY(!sheet.state().isShown); // no TV
    m_state.selectedDevice = Bedroom;
    sheet.show(m_state);
    QVERIFY(sheet.state().isShown);
    sheet.type(u"12"_s);
    m_state.pairing = pairing(false);
    sheet.show(m_state);
    QVERIFY(!sheet.state().isShown);
    QCOMPARE(sheet.state().code, QString());
    m_state.pairing = pairing(true);
    sheet.show(m_state);
    QVERIFY(sheet.state().isShown);
    m_state.selectedDevice = {};
    sheet.show(m_state);
    QVERIFY(!sheet.state().isShown);
}

void PresentersTest::sheetPutAwayComesBackOnRequest() {
    PairingSheetPresenter sheet(m_actions);
    m_state.selectedDevice = Bedroom;
    sheet.show(m_state);
    sheet.present();
    QVERIFY(!sheet.state().isShown); // nothing requires it
    m_state.pairing = pairing(true);
    sheet.show(m_state);
    sheet.type(u"12"_s);
    sheet.dismiss();
    PairingState later = pairing(true);
    later.pairingCodeValidUntil = QDateTime::currentDateTime();
    m_state.pairing = later;
    sheet.show(m_state);
    QVERIFY(!sheet.state().isShown);
    sheet.present();
    QVERIFY(sheet.state().isShown);
    QCOMPARE(sheet.state().code, u"12"_s);
    QVERIFY(sheet.state().codeValidUntilText.startsWith(u"This code is valid until "_s));
}

void PresentersTest::sheetOfAnotherTvStartsAnew() {
    PairingSheetPresenter sheet(m_actions);
    m_state.selectedDevice = Bedroom;
    m_state.pairing = pairing(true);
    sheet.show(m_state);
    sheet.type(u"12"_s);
    sheet.dismiss();
    TVEndpoint renamed = Bedroom;
    renamed.name = u"Guest room"_s;
    m_state.selectedDevice = renamed;
    sheet.show(m_state);
    QVERIFY(!sheet.state().isShown);
    QCOMPARE(sheet.state().code, u"12"_s);
    m_state.selectedDevice = Kitchen;
    sheet.show(m_state);
    QVERIFY(sheet.state().isShown);
    QCOMPARE(sheet.state().code, QString());
}

void PresentersTest::verifyAsksTheModelAndKeepsTheSheet() {
    RecordingActions actions;
    PairingSheetPresenter sheet(actions);
    m_state.selectedDevice = Bedroom;
    m_state.pairing = pairing(true);
    sheet.show(m_state);
    sheet.type(u"12"_s);
    sheet.verify();
    QVERIFY(actions.calls.isEmpty());
    sheet.type(u"123"_s);
    sheet.verify();
    QCOMPARE(actions.calls, QStringList(u"verify 123"_s));
    QVERIFY(sheet.state().isShown);
}

void PresentersTest::cancellingClosesTheSheet() {
    RecordingActions actions;
    PairingSheetPresenter sheet(actions);
    m_state.selectedDevice = Bedroom;
    m_state.pairing = pairing(true);
    sheet.show(m_state);
    sheet.type(u"12"_s);
    sheet.cancelPairing();
    QCOMPARE(actions.calls, QStringList(u"cancel pairing"_s));
    QVERIFY(!sheet.state().isShown);
    QCOMPARE(sheet.state().code, QString());
}

QTEST_GUILESS_MAIN(PresentersTest)
#include "presenters_test.moc"

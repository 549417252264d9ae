#include "recording_actions.h"
#include "sample_state.h"
#include "support/test_main.h"
#include "ui/presenters/pairing_sheet_presenter.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

PairingState pairing(bool isRequired) {
    PairingState state;
    state.requiresControlPairing = isRequired;
    return state;
}

TVEndpoint renamed(TVEndpoint tv) {
    tv.name = u"Guest room"_s;
    return tv;
}

} // namespace

// The sheet for a TV's code, without a view.
class PairingSheetTest : public QObject {
    Q_OBJECT

private:
    void tell() { m_sheet.show(m_state); }
    void select(const std::optional<TVEndpoint>& tv) {
        m_state.selectedDevice = tv;
        tell();
    }

    RecordingActions m_actions;
    WindowState m_state;
    PairingSheetPresenter m_sheet{m_actions};

private Q_SLOTS:
    void aPairingCodeHasThreeCharacters() {
        for (const QString& code : {u"123"_s, u"1 3"_s, u"𝟏𝟐𝟑"_s, u"1\u0301\u030223"_s})
            QVERIFY2(isCompletePairingCode(code), qPrintable(code));
        for (const QString& code : {QString(), u"12"_s, u"1234"_s})
            QVERIFY2(!isCompletePairingCode(code), qPrintable(code));
    }

    void theSheetComesAndGoesWithTheRequirement() {
        const auto shown = [&] {
            const QString code = m_sheet.state().code;
            return m_sheet.state().isShown ? u"shown "_s + code : u"away "_s + code;
        };
        m_sheet.present();
        QCOMPARE(shown(), u"away "_s); // nothing requires it
        m_state.pairing = pairing(true);
        select(std::nullopt);
        QCOMPARE(shown(), u"away "_s);
        select(Bedroom);
        m_sheet.type(u"12"_s);
        m_sheet.dismiss();
        m_state.pairing.pairingCodeValidUntil = QDateTime::currentDateTime();
        select(renamed(Bedroom)); // is the same TV
        QCOMPARE(shown(), u"away 12"_s);
        m_sheet.present();
        QCOMPARE(shown(), u"shown 12"_s);
        QVERIFY(m_sheet.state().codeValidUntilText.startsWith(u"This code is valid until "_s));
        m_sheet.dismiss();
        select(Kitchen);
        QCOMPARE(shown(), u"shown "_s);
        m_sheet.type(u"12"_s);
        m_state.pairing = pairing(false);
        tell();
        QCOMPARE(shown(), u"away "_s);
        m_state.pairing = pairing(true);
        tell();
        QCOMPARE(shown(), u"shown "_s);
        m_sheet.type(u" 1234"_s);
        QCOMPARE(shown(), u"shown 123"_s);
        m_state.pairing.isLockedOut = true;
        tell();
        m_sheet.verify();
        QCOMPARE(m_actions.calls, QStringList());
        m_sheet.cancelPairing();
        QCOMPARE(m_actions.calls, QStringList(u"cancel pairing"_s));
        for (const bool isRequired : {false, true}) { // the TV still does
            m_state.pairing = pairing(isRequired);
            tell();
            QCOMPARE(shown(), u"away "_s);
        }
        m_state.pairing.requests = 1;
        tell();
        QCOMPARE(shown(), u"shown "_s);
    }
};

static const quiv::TestCase<PairingSheetTest> registered;
#include "pairing_sheet_test.moc"

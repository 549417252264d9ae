#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const HttpHeaders Grant{{"X-Quiv-Auth-Token", "t0k"}, {"X-Quiv-Auth-Expires-In", "600"}};

// A TV is selected and nothing is under way.
struct PairingFixture : ModelFixture {
    PairingFixture() {
        model.selectDevice(FirstTv);
        http.takePaths();
    }

    bool ensure(const QString& action, const std::function<void()>& answer) {
        std::optional<bool> result;
        const Task<> task = store(model.pairing()->ensureControlPairing(action), &result);
        answer();
        return *result;
    }

private:
    static Task<> store(Task<bool> task, std::optional<bool>* result) {
        *result = co_await std::move(task);
    }
};

} // namespace

class PairingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theRightCodePairs() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(u" 123\n"_s);
        QCOMPARE(fixture.status(), u"Verifying pairing code..."_s);
        QVERIFY(fixture.http.sent.last().url.endsWith("api/mac/auth/verify?code=123"));
        QCOMPARE(fixture.http.sent.last().timeouts.total, 10s);
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        QVERIFY(fixture.pairing().isControlPaired);
        QVERIFY(fixture.pairing().pairingCodeValidUntil);
        QCOMPARE(fixture.status(), u"Quiv Controller paired successfully."_s);
        QCOMPARE(fixture.settings.texts.value(u"ombra.authToken.v1.tv.local:8080"_s), u"t0k"_s);
    }

    void aRefusedCodeLeavesTheTvsWordsAndChecksQuietly() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(u"999"_s);
        fixture.http.answer(VerifyPath, R"({"ok":false,"error":"Wrong code."})", 401);
        QCOMPARE(fixture.status(), u"Wrong code."_s);
        QCOMPARE(fixture.http.takePaths().last(), StatusPath);
        fixture.http.answer(StatusPath,
                            R"({"authorized":false,"expiresInSec":90,"message":"Pair!"})");
        QCOMPARE(fixture.status(), u"Wrong code."_s);
        QCOMPARE(fixture.pairing().refusal, u"Wrong code."_s);
        QVERIFY(fixture.pairing().requiresControlPairing);
        QVERIFY(fixture.pairing().pairingCodeValidUntil);
    }

    void aLockOutLastsAsLongAsTheTvSays() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(u"999"_s);
        QVERIFY(fixture.pairing().isVerifying);
        fixture.http.answer(VerifyPath, "Wait.", 429, {{"Retry-After", "30"}});
        QVERIFY(!fixture.pairing().isVerifying);
        QCOMPARE(fixture.pairing().refusal, u"Wait."_s);
        fixture.clock.advance(29s);
        QVERIFY(fixture.pairing().isLockedOut);
        fixture.clock.advance(2s);
        QVERIFY(!fixture.pairing().isLockedOut);
        QCOMPARE(lockOutTime(HttpReply{429, {{"retry-after", "999999"}}, {}}), 600s);
        QCOMPARE(lockOutTime(HttpReply{429, {{"retry-after", "soon"}}, {}}), 10s);
    }

    void whatIsNoCodeIsNotSent() {
        PairingFixture fixture;
        for (const char* code : {"", "12", " 12 ", "1234", "1a3", "1 3", "1½3"}) {
            fixture.model.pairing()->verifyPairingCode(QString::fromUtf8(code));
            QCOMPARE(fixture.status(), u"Enter a valid 3-digit pairing code."_s);
        }
        QVERIFY(fixture.http.paths.isEmpty());
        fixture.model.pairing()->verifyPairingCode(u"١٢٣"_s);
        QCOMPARE(fixture.http.sent.last().url.right(18), QByteArray("%D9%A1%D9%A2%D9%A3"));
    }

    void aTvThatDoesNotAnswerIsSaid() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(u"123"_s);
        fixture.http.answer(VerifyPath, HttpErrorCode::TimedOut);
        QVERIFY(fixture.status().startsWith(u"Pairing failed: The TV did not answer"_s));
        fixture.model.pairing()->cancelPairing();
        fixture.http.answer(CancelPath, HttpErrorCode::ConnectionLost);
        QVERIFY(fixture.status().startsWith(u"Could not cancel pairing: "_s));
    }

    void cancellingForgetsTheTokenWhateverTheTvSays() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(u"123"_s);
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        fixture.model.pairing()->cancelPairing();
        fixture.http.answer(CancelPath, QByteArray(), 500, Grant);
        QCOMPARE(fixture.status(), u"Pairing canceled."_s);
        QCOMPARE(fixture.pairing(), PairingState());
        QVERIFY(!fixture.settings.texts.contains(u"ombra.authToken.v1.tv.local:8080"_s));
    }

    void aReplyForATvNoLongerSelectedChangesOnlyItsToken() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(u"123"_s);
        fixture.model.selectDevice(OtherTv);
        const QString status = fixture.status();
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        QCOMPARE(fixture.pairing(), PairingState());
        QCOMPARE(fixture.status(), status);
        QCOMPARE(fixture.settings.texts.value(u"ombra.authToken.v1.tv.local:8080"_s), u"t0k"_s);

        auto check =
            fixture.model.pairing()->refreshPairingStatus(Pairing::Announce::Yes, Errors::Reported);
        fixture.model.selectDevice(FirstTv);
        fixture.http.answer(StatusPath, "Token expired", 401);
        QVERIFY(check.isDone());
        QCOMPARE(fixture.pairing(), PairingState());
        QVERIFY(fixture.settings.texts.contains(u"ombra.authToken.v1.tv.local:8080"_s));
    }

    void authFailuresResetThePairing_data() {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        QTest::newRow("token") << 401 << QByteArray("Token expired") << u"Token expired"_s;
        QTest::newRow("other words") << 401 << QByteArray("Forbidden") << u"before"_s;
        QTest::newRow("too many") << 429 << QByteArray("Slow down") << u"Slow down"_s;
    }
    void authFailuresResetThePairing() {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, message);
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(u"123"_s);
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        fixture.model.status()->post(u"before"_s);
        const auto check =
            fixture.model.pairing()->refreshPairingStatus(Pairing::Announce::No, Errors::Quiet);
        fixture.http.answer(StatusPath, body, status);
        QVERIFY(fixture.pairing().requiresControlPairing && !fixture.pairing().isControlPaired);
        QVERIFY(!fixture.pairing().pairingCodeValidUntil);
        QVERIFY(!fixture.settings.texts.contains(u"ombra.authToken.v1.tv.local:8080"_s));
        QCOMPARE(fixture.status(), message);
    }

    void whatWasAskedBeforeTheCodeDoesNotUndoIt() {
        PairingFixture fixture;
        const auto check =
            fixture.model.pairing()->refreshPairingStatus(Pairing::Announce::No, Errors::Quiet);
        const auto refused =
            fixture.model.pairing()->refreshPairingStatus(Pairing::Announce::No, Errors::Quiet);
        fixture.model.pairing()->verifyPairingCode(u"123"_s);
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        fixture.http.answer(StatusPath, R"({"authorized":false})");
        fixture.http.answer(StatusPath, "Token expired", 401); // it carried none
        QVERIFY(check.isDone() && refused.isDone());
        QVERIFY(fixture.pairing().isControlPaired);
        QCOMPARE(fixture.settings.texts.value(u"ombra.authToken.v1.tv.local:8080"_s), u"t0k"_s);
    }

    void anActionAsksTheTvOnlyWhenNeeded() {
        PairingFixture fixture;
        QVERIFY(!fixture.ensure(u"upload"_s, [&] {
            fixture.http.answer(StatusPath, R"({"authorized":false,"expiresInSec":90})");
        }));
        QVERIFY(fixture.status().startsWith(
            u"Pairing required for upload. Enter the 3-digit code shown on TV. This "
            "code is valid until "_s));
        QVERIFY(fixture.ensure(u"upload"_s, [&] {
            fixture.http.answer(StatusPath, R"({"authorized":true,"expiresInSec":600})", 200,
                                Grant);
        }));
        fixture.http.takePaths();
        QVERIFY(fixture.ensure(u"delete"_s, [] {}));
        QVERIFY(fixture.http.takePaths().isEmpty());
        fixture.clock.advance(9min); // the token now expires within the minute
        QVERIFY(fixture.ensure(u"delete"_s, [&] {
            fixture.http.answer(StatusPath, R"({"authorized":true,"expiresInSec":60})");
        }));
        QCOMPARE(fixture.http.takePaths(), QStringList(StatusPath));
    }

    void aValidityThatHardlyChangesStays() {
        const QDateTime now = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000);
        const QDateTime known = now.addSecs(100);
        QCOMPARE(pairingValidity(known, 105, now), known);
        QCOMPARE(pairingValidity(known, 95, now), known);
        QCOMPARE(pairingValidity(known, 106, now), now.addSecs(106));
        QCOMPARE(pairingValidity(known, 0, now), std::nullopt);
        QCOMPARE(pairingValidity(known, std::nullopt, now), std::nullopt);
        QVERIFY(pairingValidity({}, std::numeric_limits<std::int64_t>::max(), now)->isValid());
    }

    void theTimeIsShownWithoutSeconds() {
        const QDateTime time(QDate(2030, 1, 2), QTime(14, 5, 59));
        QLocale::setDefault(QLocale::c());
        QCOMPARE(pairingCodeValidUntilText(time), u"14:05"_s);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(pairingCodeValidUntilText(time)->simplified().replace(QChar(0x202f), u' '),
                 u"2:05 PM"_s);
        QLocale::setDefault(QLocale(QLocale::German));
        QCOMPARE(pairingCodeValidUntilText(time), u"14:05"_s);
        QCOMPARE(pairingCodeValidUntilText(std::nullopt), std::nullopt);
    }

    void endingTheModelAtAnyAwaitIsHarmless() {
        for (const QString& path : {VerifyPath, CancelPath, StatusPath}) {
            auto fixture = std::make_unique<PairingFixture>();
            fixture->model.pairing()->verifyPairingCode(u"123"_s);
            fixture->model.pairing()->cancelPairing();
            if (path == StatusPath)
                fixture->http.answer(VerifyPath, "no", 403);
            QVERIFY(fixture->http.waiting() >= 1u);
            fixture.reset();
        }
    }
};

static const quiv::TestCase<PairingTest> registered;
#include "pairing_test.moc"

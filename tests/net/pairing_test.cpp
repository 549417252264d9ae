#include "support/model_fixture.h"

#include <QTest>

using namespace quiv;
using namespace std::chrono_literals;

namespace {

const TVEndpoint Tv = tvNamed(QStringLiteral("TV"), QStringLiteral("tv.local"));
const TVEndpoint OtherTv = tvNamed(QStringLiteral("Other"), QStringLiteral("other.local"));
const HttpHeaders Grant{{"X-Quiv-Auth-Token", "t0k"}, {"X-Quiv-Auth-Expires-In", "600"}};

// A TV is selected and nothing is under way.
struct PairingFixture : ModelFixture {
    PairingFixture() {
        model.selectDevice(Tv);
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
        fixture.model.pairing()->verifyPairingCode(QStringLiteral(" 123\n"));
        QCOMPARE(fixture.status(), QStringLiteral("Verifying pairing code..."));
        QVERIFY(fixture.http.sent.last().url.endsWith("api/mac/auth/verify?code=123"));
        QCOMPARE(fixture.http.sent.last().timeouts.total, 10s);
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        QVERIFY(fixture.pairing().isControlPaired);
        QVERIFY(fixture.pairing().pairingCodeValidUntil);
        QCOMPARE(fixture.status(), QStringLiteral("Quiv Controller paired successfully."));
        QCOMPARE(fixture.settings.texts.value(QStringLiteral("ombra.authToken.v1.tv.local:8080")),
                 QStringLiteral("t0k"));
    }

    void aRefusedCodeLeavesTheTvsWordsAndChecksQuietly() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(QStringLiteral("999"));
        fixture.http.answer(VerifyPath, R"({"ok":false,"error":"Wrong code."})", 401);
        QCOMPARE(fixture.status(), QStringLiteral("Wrong code."));
        QCOMPARE(fixture.http.takePaths().last(), StatusPath);
        fixture.http.answer(StatusPath,
                            R"({"authorized":false,"expiresInSec":90,"message":"Pair!"})");
        QCOMPARE(fixture.status(), QStringLiteral("Wrong code."));
        QVERIFY(fixture.pairing().requiresControlPairing);
        QVERIFY(fixture.pairing().pairingCodeValidUntil);
    }

    void whatIsNoCodeIsNotSent() {
        PairingFixture fixture;
        for (const char* code : {"", "12", " 12 ", "1234", "1a3", "1 3"}) {
            fixture.model.pairing()->verifyPairingCode(QString::fromUtf8(code));
            QCOMPARE(fixture.status(), QStringLiteral("Enter a valid 3-digit pairing code."));
        }
        QVERIFY(fixture.http.paths.isEmpty());
        fixture.model.pairing()->verifyPairingCode(QStringLiteral("١٢٣"));
        QCOMPARE(fixture.http.sent.last().url.right(18), QByteArray("%D9%A1%D9%A2%D9%A3"));
    }

    void aTvThatDoesNotAnswerIsSaid() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(QStringLiteral("123"));
        fixture.http.answer(VerifyPath, HttpErrorCode::TimedOut);
        QVERIFY(
            fixture.status().startsWith(QStringLiteral("Pairing failed: The TV did not answer")));
        fixture.model.pairing()->cancelPairing();
        fixture.http.answer(CancelPath, HttpErrorCode::ConnectionLost);
        QVERIFY(fixture.status().startsWith(QStringLiteral("Could not cancel pairing: ")));
    }

    void cancellingForgetsTheTokenWhateverTheTvSays() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(QStringLiteral("123"));
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        fixture.model.pairing()->cancelPairing();
        fixture.http.answer(CancelPath, QByteArray(), 500, Grant);
        QCOMPARE(fixture.status(), QStringLiteral("Pairing canceled."));
        QCOMPARE(fixture.pairing(), PairingState());
        QVERIFY(
            !fixture.settings.texts.contains(QStringLiteral("ombra.authToken.v1.tv.local:8080")));
    }

    void aReplyForATvNoLongerSelectedChangesOnlyItsToken() {
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(QStringLiteral("123"));
        fixture.model.selectDevice(OtherTv);
        const QString status = fixture.status();
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        QCOMPARE(fixture.pairing(), PairingState());
        QCOMPARE(fixture.status(), status);
        QCOMPARE(fixture.settings.texts.value(QStringLiteral("ombra.authToken.v1.tv.local:8080")),
                 QStringLiteral("t0k"));

        auto check = fixture.model.pairing()->refreshPairingStatus(Pairing::Announce::Yes,
                                                                   Pairing::Errors::Reported);
        fixture.model.selectDevice(Tv);
        fixture.http.answer(StatusPath, "Token expired", 401);
        QVERIFY(check.isDone());
        QCOMPARE(fixture.pairing(), PairingState());
        QVERIFY(
            fixture.settings.texts.contains(QStringLiteral("ombra.authToken.v1.tv.local:8080")));
    }

    void authFailuresResetThePairing_data() {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        QTest::newRow("token") << 401 << QByteArray("Token expired")
                               << QStringLiteral("Token expired");
        QTest::newRow("other words") << 401 << QByteArray("Forbidden") << QStringLiteral("before");
        QTest::newRow("too many") << 429 << QByteArray("Slow down") << QStringLiteral("Slow down");
    }
    void authFailuresResetThePairing() {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, message);
        PairingFixture fixture;
        fixture.model.pairing()->verifyPairingCode(QStringLiteral("123"));
        fixture.http.answer(VerifyPath, QByteArray(), 200, Grant);
        fixture.model.status()->post(QStringLiteral("before"));
        const auto check = fixture.model.pairing()->refreshPairingStatus(Pairing::Announce::No,
                                                                         Pairing::Errors::Quiet);
        fixture.http.answer(StatusPath, body, status);
        QVERIFY(fixture.pairing().requiresControlPairing && !fixture.pairing().isControlPaired);
        QVERIFY(!fixture.pairing().pairingCodeValidUntil);
        QVERIFY(
            !fixture.settings.texts.contains(QStringLiteral("ombra.authToken.v1.tv.local:8080")));
        QCOMPARE(fixture.status(), message);
    }

    void anActionAsksTheTvOnlyWhenNeeded() {
        PairingFixture fixture;
        QVERIFY(!fixture.ensure(QStringLiteral("upload"), [&] {
            fixture.http.answer(StatusPath, R"({"authorized":false,"expiresInSec":90})");
        }));
        QVERIFY(fixture.status().startsWith(
            QStringLiteral("Pairing required for upload. Enter the 3-digit code shown on TV. This "
                           "code is valid until ")));
        QVERIFY(fixture.ensure(QStringLiteral("upload"), [&] {
            fixture.http.answer(StatusPath, R"({"authorized":true,"expiresInSec":600})", 200,
                                Grant);
        }));
        fixture.http.takePaths();
        QVERIFY(fixture.ensure(QStringLiteral("delete"), [] {}));
        QVERIFY(fixture.http.takePaths().isEmpty());
        fixture.clock.advance(9min); // the token now expires within the minute
        QVERIFY(fixture.ensure(QStringLiteral("delete"), [&] {
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
        QCOMPARE(pairingCodeValidUntilText(time), QStringLiteral("14:05"));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(pairingCodeValidUntilText(time)->simplified().replace(QChar(0x202f), u' '),
                 QStringLiteral("2:05 PM"));
        QLocale::setDefault(QLocale(QLocale::German));
        QCOMPARE(pairingCodeValidUntilText(time), QStringLiteral("14:05"));
        QCOMPARE(pairingCodeValidUntilText(std::nullopt), std::nullopt);
    }

    void endingTheModelAtAnyAwaitIsHarmless() {
        for (const QString& path : {VerifyPath, CancelPath, StatusPath}) {
            auto fixture = std::make_unique<PairingFixture>();
            fixture->model.pairing()->verifyPairingCode(QStringLiteral("123"));
            fixture->model.pairing()->cancelPairing();
            if (path == StatusPath)
                fixture->http.answer(VerifyPath, "no", 403);
            QVERIFY(fixture->http.waiting() >= 1u);
            fixture.reset();
        }
    }
};

QTEST_GUILESS_MAIN(PairingTest)
#include "pairing_test.moc"

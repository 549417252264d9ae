#include "simulator/simulator_process.h"
#include "support/real_model.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

const QString FilesPath = QStringLiteral("api/files");

// The longest time for which the event loop did not turn.
class StallWatch {
public:
    StallWatch() {
        m_timer.callOnTimeout([this] { m_longest = std::max(m_longest, m_since.restart()); });
        m_since.start();
        m_timer.start(5);
    }
    qint64 longestMs() const { return m_longest; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

QJsonObject fault(const QString& path, const QString& kind, QJsonObject more = {}) {
    more[QStringLiteral("path")] = path;
    more[QStringLiteral("kind")] = kind;
    return more;
}

} // namespace

class SimulatedTvTest : public QObject {
    Q_OBJECT

    SimulatorProcess m_tv;

private Q_SLOTS:
    void init() {
        QVERIFY2(m_tv.start({QStringLiteral("--generate"), QStringLiteral("20"),
                             QStringLiteral("--name"), QStringLiteral("Den")}),
                 qPrintable(m_tv.errorText()));
    }
    void cleanup() { m_tv.stop(); }

    void aTvIsFoundPairedBrowsedAndKnownAgain() {
        MemorySettings settings;
        {
            RealModel real(settings);
            real.find(m_tv.port());
            QTRY_COMPARE(real.model.selected()->name(), QStringLiteral("Den"));
            QTRY_VERIFY(real.rows() >= 20);
            QTRY_VERIFY(real.pairing().requiresControlPairing);
            real.model.pairing()->verifyPairingCode(QStringLiteral("999"));
            QTRY_VERIFY(real.status().contains(QStringLiteral("rong")));
            QVERIFY(m_tv.waitForRequests(QStringLiteral("api/mac/auth/status"), 2));
            real.model.pairing()->verifyPairingCode(m_tv.pairingCode());
            QTRY_COMPARE(real.status(), QStringLiteral("Quiv Controller paired successfully."));
        }
        RealModel later(settings);
        later.find(m_tv.port());
        QTRY_VERIFY(later.pairing().isControlPaired);
        later.model.pairing()->cancelPairing();
        QTRY_COMPARE(later.status(), QStringLiteral("Pairing canceled."));
        QTRY_VERIFY(later.pairing().requiresControlPairing); // as the next pass learns
        QCOMPARE(settings.reals.size(), 0);
    }

    void tooManyWrongCodesAreTheTvsToRefuse() {
        MemorySettings settings;
        RealModel real(settings);
        real.find(m_tv.port());
        QTRY_VERIFY(real.pairing().requiresControlPairing);
        for (int attempt = 1; attempt <= 6; ++attempt) {
            real.model.pairing()->verifyPairingCode(QStringLiteral("000"));
            QVERIFY(m_tv.waitForRequests(QStringLiteral("api/mac/auth/verify"), attempt));
            QTRY_VERIFY(real.status() != QStringLiteral("Verifying pairing code..."));
        }
        QVERIFY2(real.status().contains(QStringLiteral("oo many")), qPrintable(real.status()));
        QVERIFY(real.pairing().requiresControlPairing);
    }

    void aBrokenListingIsSaidAndKeepsTheRows_data() {
        QTest::addColumn<QJsonObject>("broken");
        const auto row = [](const char* kind, QJsonObject more = {}) {
            QTest::newRow(kind) << fault(FilesPath, QString::fromUtf8(kind), std::move(more));
        };
        row("status", {{QStringLiteral("status"), 500}});
        row("body", {{QStringLiteral("body"), QStringLiteral("null")}});
        row("broken-json");
        row("mistyped-json");
        row("oversized-json");
        row("reset-before-reply");
        row("reset-after-bytes", {{QStringLiteral("bytes"), 100}});
    }
    void aBrokenListingIsSaidAndKeepsTheRows() {
        QFETCH(QJsonObject, broken);
        MemorySettings settings;
        RealModel real(settings);
        real.find(m_tv.port());
        QTRY_VERIFY(real.rows() >= 20);
        QTRY_VERIFY(
            real.pairing().requiresControlPairing); // the cycle now leaves the listing alone
        const qsizetype rows = real.rows();

        QVERIFY(m_tv.setFault(broken));
        const StallWatch watch;
        const Task<> load = real.model.library()->loadLibrary(Library::Load::Announced);
        QTRY_VERIFY_WITH_TIMEOUT(load.isDone(), 30'000);
        QVERIFY2(real.status().startsWith(QStringLiteral("Failed to fetch files: ")),
                 qPrintable(real.status()));
        QVERIFY(real.status().size() > 30);
        QCOMPARE(real.rows(), rows);
        QVERIFY2(watch.longestMs() < 1500, qPrintable(QString::number(watch.longestMs())));

        m_tv.clearFaults();
        const Task<> again = real.model.library()->loadLibrary(Library::Load::Announced);
        QTRY_VERIFY(again.isDone());
        QCOMPARE(real.status(), QStringLiteral("Loaded %1 media item(s)").arg(rows));
    }

    void aTvThatNeverAnswersBlocksNothing() {
        MemorySettings settings;
        RealModel real(settings);
        QVERIFY(m_tv.setFault(fault(QStringLiteral("*"), QStringLiteral("hang"))));
        const StallWatch watch;
        real.find(m_tv.port());
        QTRY_COMPARE(real.model.selected()->name(),
                     QStringLiteral("Announced")); // after the probe's 1.5 s
        QVERIFY(m_tv.waitForRequests(FilesPath));
        QVERIFY(real.model.library()->isLibraryLoadInProgress());
        QVERIFY(watch.longestMs() < 1000);
    }

    void halfAnAuthorisationForgetsTheToken() {
        MemorySettings settings;
        RealModel real(settings);
        real.find(m_tv.port());
        QTRY_VERIFY(real.pairing().requiresControlPairing);
        QVERIFY(m_tv.setFault(fault(QStringLiteral("api/mac/auth/verify"),
                                    QStringLiteral("one-auth-header"),
                                    {{QStringLiteral("header"), QStringLiteral("token")}})));
        real.model.pairing()->verifyPairingCode(m_tv.pairingCode());
        QTRY_COMPARE(real.status(), QStringLiteral("Quiv Controller paired successfully."));
        QVERIFY(!settings.texts.keys().join(u' ').contains(QStringLiteral("authToken")));
        QTRY_VERIFY(real.pairing().requiresControlPairing); // the TV does not know this client
    }

    void aLargeLibraryKeepsTheWindowLive() {
        m_tv.stop();
        QVERIFY(m_tv.start({QStringLiteral("--generate"), QStringLiteral("100000")}));
        MemorySettings settings;
        RealModel real(settings);
        const StallWatch watch;
        real.find(m_tv.port());
        QTRY_VERIFY_WITH_TIMEOUT(real.rows() >= 60'000, 60'000);
        QVERIFY2(watch.longestMs() < 1500, qPrintable(QString::number(watch.longestMs())));
        QSignalSpy changed(real.model.library(), &Library::contentChanged);
        const Task<> same = real.model.library()->loadLibrary(Library::Load::Quiet);
        QTRY_VERIFY_WITH_TIMEOUT(same.isDone(), 30'000);
        QCOMPARE(changed.count(), 0);
    }
};

QTEST_GUILESS_MAIN(SimulatedTvTest)
#include "simulated_tv_test.moc"

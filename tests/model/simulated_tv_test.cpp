#include "simulator/simulator_process.h"
#include "support/real_model.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

const QString FilesPath = u"api/files"_s;

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

// The most memory this process has had at a time, in bytes.
qint64 peakMemory() {
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const QByteArray line = text.sliced(text.indexOf("VmHWM:") + 6).split('\n').first();
    return line.trimmed().split(' ').first().toLongLong() << 10;
}

// Begins to measure it anew, and returns what it is now.
qint64 peakMemoryFromNow() {
    QFile reset(u"/proc/self/clear_refs"_s);
    if (reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        reset.write("5");
    return peakMemory();
}

QJsonObject fault(const QString& path, const QString& kind, QJsonObject more = {}) {
    more[u"path"_s] = path;
    more[u"kind"_s] = kind;
    return more;
}

} // namespace

class SimulatedTvTest : public QObject {
    Q_OBJECT

    SimulatorProcess m_tv;

private Q_SLOTS:
    void init() {
        QVERIFY2(m_tv.start({u"--generate"_s, u"20"_s, u"--name"_s, u"Den"_s}),
                 qPrintable(m_tv.errorText()));
    }
    void cleanup() { m_tv.stop(); }

    void aTvIsFoundPairedBrowsedAndKnownAgain() {
        MemorySettings settings;
        {
            RealModel real(settings);
            real.find(m_tv.port());
            QTRY_COMPARE(real.model.selected()->name(), u"Den"_s);
            QTRY_VERIFY(real.rows() >= 20);
            QTRY_VERIFY(real.pairing().requiresControlPairing);
            real.model.pairing()->verifyPairingCode(m_tv.pairingCode());
            QTRY_COMPARE(real.status(), u"Quiv Controller paired successfully."_s);
        }
        RealModel later(settings);
        later.find(m_tv.port());
        QTRY_VERIFY(later.pairing().isControlPaired);
        later.model.pairing()->cancelPairing();
        QTRY_COMPARE(later.status(), u"Pairing canceled."_s);
        QTRY_VERIFY(later.pairing().requiresControlPairing); // as the next pass learns
        QCOMPARE(settings.reals.size(), 0);
    }

    void aBrokenListingIsSaidAndKeepsTheRows_data() {
        QTest::addColumn<QJsonObject>("broken");
        const auto row = [](const char* kind, QJsonObject more = {}) {
            QTest::newRow(kind) << fault(FilesPath, QString::fromUtf8(kind), std::move(more));
        };
        row("status", {{u"status"_s, 500}});
        row("body", {{u"body"_s, u"null"_s}});
        row("broken-json");
        row("mistyped-json");
        row("reset-before-reply");
        row("reset-after-bytes", {{u"bytes"_s, 100}});
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
        QVERIFY2(real.status().startsWith(u"Failed to fetch files: "_s), qPrintable(real.status()));
        QVERIFY(real.status().size() > 30);
        QCOMPARE(real.rows(), rows);
        QVERIFY2(watch.longestMs() < 1500, qPrintable(QString::number(watch.longestMs())));

        m_tv.clearFaults();
        const Task<> again = real.model.library()->loadLibrary(Library::Load::Announced);
        QTRY_VERIFY(again.isDone());
        QCOMPARE(real.status(), u"Loaded %1 media item(s)"_s.arg(rows));
    }

    void aHostileReplyCostsNothing_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonObject>("planted");
        const auto row = [](const char* name, const char* path, const QString& before,
                            const QString& body, int repeat, const QString& after) {
            QTest::newRow(name) << QString::fromUtf8(path)
                                << QJsonObject{{u"before"_s, before},
                                               {u"body"_s, body},
                                               {u"repeat"_s, repeat},
                                               {u"after"_s, after},
                                               {u"tokenBytes"_s, 60'000}};
        };
        row("long name", "api/info", u"{\"name\":\""_s, u"n"_s, 60'000, u"\"}"_s);
        row("longer name", "api/info", u"{\"name\":\""_s, u"n"_s, 240'000, u"\"}"_s);
        row("lists", "api/info", u"["_s, u"[[]],"_s, 13'000'000, u"0]"_s);
        row("files", "api/files", u"{\"videos\":[],\"files\":["_s,
            u"{\"name\":\"a\",\"kind\":\"\",\"sizeBytes\":1},"_s, 1'000'000, u"{}]}"_s);
        row("tracks", "api/playback",
            u"{\"isPlaying\":true,\"positionMs\":1,\"durationMs\":9,\"audioTracks\":["_s,
            u"{\"id\":\"1\",\"label\":\"\",\"selected\":false},"_s, 100'000, u"{}]}"_s);
    }
    void aHostileReplyCostsNothing() {
        QFETCH(QString, path);
        QFETCH(QJsonObject, planted);
        QVERIFY(m_tv.setFault(fault(path, u"body"_s, planted)));
        MemorySettings settings;
        QElapsedTimer ending;
        const qint64 before = peakMemoryFromNow();
        {
            RealModel real(settings);
            const StallWatch watch;
            real.find(m_tv.port());
            QTRY_VERIFY(real.model.selected()->isSelected());
            QVERIFY(m_tv.waitForRequests(u"api/mac/auth/status"_s)); // the first pass' last
            QVERIFY2(watch.longestMs() < 500, qPrintable(QString::number(watch.longestMs())));
            QVERIFY(real.model.selected()->name().size() <= LongestShownText);
            QVERIFY(settings.reals.isEmpty()); // no such token
            ending.start();
        }
        QVERIFY2(ending.elapsed() < 1000, qPrintable(QString::number(ending.elapsed())));
        const qint64 grown = peakMemory() - before;
        QVERIFY2(grown < 400ll << 20, qPrintable(QString::number(grown)));
    }

    void aTvThatNeverAnswersBlocksNothing() {
        MemorySettings settings;
        RealModel real(settings);
        QVERIFY(m_tv.setFault(fault(u"*"_s, u"hang"_s)));
        const StallWatch watch;
        real.find(m_tv.port());
        QTRY_COMPARE(real.model.selected()->name(),
                     u"Announced"_s); // after the probe's 1.5 s
        QVERIFY(m_tv.waitForRequests(FilesPath));
        QVERIFY(real.model.library()->isLibraryLoadInProgress());
        QVERIFY(watch.longestMs() < 1000);
    }

    void aLargeLibraryKeepsTheWindowLive() {
        m_tv.stop();
        QVERIFY(m_tv.start({u"--generate"_s, u"100000"_s}));
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

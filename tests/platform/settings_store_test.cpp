#include "platform/settings_store.h"
#include "support/fake_clock.h"
#include "support/fake_still_extractor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QString TextKey = u"a.text"_s;
const QString RealKey = u"a.real"_s;

// Lowers a limit of this process for as long as it exists.
class LowLimit {
public:
    LowLimit(__rlimit_resource resource, rlim_t value) : m_resource(resource) {
        ::getrlimit(resource, &m_before);
        const rlimit low{value, m_before.rlim_max};
        ::setrlimit(resource, &low);
    }
    ~LowLimit() { ::setrlimit(m_resource, &m_before); }
    LowLimit(const LowLimit&) = delete;
    LowLimit& operator=(const LowLimit&) = delete;

private:
    __rlimit_resource m_resource;
    rlimit m_before{};
};

} // namespace

class SettingsStoreTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_directory;
    QString m_path;
    FakeClock m_clock;
    MemoryLog m_log;

    std::unique_ptr<FileSettingsStore> open() {
        return std::make_unique<FileSettingsStore>(m_path, m_clock, m_log);
    }
    void putFile(const QByteArray& content) {
        QDir().mkpath(QFileInfo(m_path).path());
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

private Q_SLOTS:
    void init() {
        m_path = m_directory.filePath(QString::fromUtf8(QTest::currentTestFunction()) +
                                      u"/settings.json"_s);
        m_log.lines.clear();
    }

    void valuesAreInForceAtOnceAndReachTheDiskTogether() {
        const auto store = open();
        store->setText(TextKey, u"schlüssel \u202e"_s);
        for (int renewal = 0; renewal < 100; ++renewal)
            store->setReal(RealKey, 1'700'000'000'000.0 + renewal);
        QCOMPARE(store->real(RealKey), 1'700'000'000'099.0);
        QCOMPARE(m_clock.pendingTimers(), 1u);
        QVERIFY(!QFile::exists(m_path));
        m_clock.advance(1s);
        QTRY_COMPARE(open()->real(RealKey), 1'700'000'000'099.0);
        QCOMPARE(open()->text(TextKey), u"schlüssel \u202e"_s);
        QVERIFY(!open()->text(RealKey));
        QVERIFY(!open()->real(TextKey));
        const auto others =
            QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QVERIFY(!(QFile::permissions(m_path) & others));
    }

    void theEndWritesWhatIsLeftAfterTheWriteUnderWay() {
        for (int round = 0; round < 20; ++round) {
            auto store = open();
            store->setReal(RealKey, round);
            store->setText(TextKey, u"old"_s);
            m_clock.advance(1s); // this write runs, or is about to
            store->setReal(RealKey, round + 0.5);
            store->remove(TextKey);
            store.reset();
            QCOMPARE(open()->real(RealKey), round + 0.5);
            QVERIFY(!open()->text(TextKey));
        }
    }

    void writersKeepEachOthersKeys() {
        const auto first = open();
        const auto second = open();
        for (int number = 0; number < 10; ++number) {
            first->setReal(u"first.%1"_s.arg(number), number);
            second->setReal(u"second.%1"_s.arg(number), number);
            m_clock.advance(1s); // both write
        }
        const auto isComplete = [this] {
            const auto store = open();
            return store->real(u"first.9"_s) == 9 && store->real(u"second.9"_s) == 9 &&
                   store->real(u"first.0"_s) == 0 && store->real(u"second.0"_s) == 0;
        };
        QTRY_VERIFY((m_clock.advance(1s), isComplete()));
    }

    void aFileThatIsGoneOrOutOfReachLosesNothing() {
        auto store = open();
        store->setText(TextKey, u"kept"_s);
        m_clock.advance(1s);
        QTRY_VERIFY(QFile::exists(m_path));
        QVERIFY(QFile::remove(m_path));
#ifndef __SANITIZE_ADDRESS__ // which needs descriptors itself
        {
            const int nextDescriptor = ::dup(STDERR_FILENO);
            ::close(nextDescriptor);
            const LowLimit noDescriptorLeft(RLIMIT_NOFILE, rlim_t(nextDescriptor));
            store->setReal(RealKey, 1);
            m_clock.advance(1s);
            QTRY_COMPARE(m_log.lines.size(), 1);
        }
#endif
        store->setReal(RealKey, 2);
        store.reset();
        QCOMPARE(open()->text(TextKey), u"kept"_s);
        QCOMPARE(open()->real(RealKey), 2);
        QVERIFY(!QFile::exists(m_path + u".unreadable"_s));
    }

    void aFullDiskLosesNothingAndIsReportedOnce() {
        auto store = open();
        store->setText(TextKey, u"kept"_s);
        m_clock.advance(1s);
        QTRY_COMPARE(open()->text(TextKey), u"kept"_s);
        const auto previous = ::signal(SIGXFSZ, SIG_IGN);
        {
            const LowLimit fullDisk(RLIMIT_FSIZE, 64); // bytes
            for (int size = 4096; size < 4099; ++size) {
                store->setText(u"a.long"_s, QString(size, u'x'));
                QTRY_COMPARE(m_clock.pendingTimers(), 1u); // the write before has ended
                if (size < 4098)
                    m_clock.advance(1s);
            }
            QCOMPARE(m_log.lines.size(), 1);
            QVERIFY(m_log.lines.first().contains(m_path));
        }
        ::signal(SIGXFSZ, previous);
        QCOMPARE(open()->text(TextKey), u"kept"_s);
        QVERIFY(!open()->text(u"a.long"_s));

        store->setReal(RealKey, 1);
        store.reset();
        QCOMPARE(open()->text(u"a.long"_s)->size(), 4098);
        QCOMPARE(m_log.lines.size(), 1);
    }

    void onlyAFileThatIsNoSettingsIsKeptAside() {
        putFile("{\"a.text\": \"half");
        auto store = open();
        QVERIFY(!store->text(TextKey));
        store->setText(TextKey, u"new"_s);
        store.reset();
        QCOMPARE(open()->text(TextKey), u"new"_s);
        QFile aside(m_path + u".unreadable"_s);
        QVERIFY(aside.open(QIODevice::ReadOnly));
        QCOMPARE(aside.readAll(), QByteArray("{\"a.text\": \"half"));
    }
};

QTEST_GUILESS_MAIN(SettingsStoreTest)
#include "settings_store_test.moc"

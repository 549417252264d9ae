#include "platform/settings_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <thread>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

const QString TextKey = u"a.text"_s;
const QString RealKey = u"a.real"_s;

} // namespace

class SettingsStoreTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_directory;
    QString m_path;

private Q_SLOTS:
    void init() {
        m_path = m_directory.filePath(QString::fromUtf8(QTest::currentTestFunction()) +
                                      u"/settings.json"_s);
    }

    void valuesAreOnDiskWhenSetAndReadableByTheOwnerOnly() {
        FileSettingsStore store(m_path);
        store.setText(TextKey, u"schlüssel \u202e"_s);
        store.setReal(RealKey, 1'700'000'000'123.0);
        const FileSettingsStore later(m_path);
        QCOMPARE(later.text(TextKey), u"schlüssel \u202e"_s);
        QCOMPARE(later.real(RealKey), 1'700'000'000'123.0);
        QVERIFY(!later.text(RealKey));
        QVERIFY(!later.real(TextKey));
        const auto others =
            QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QVERIFY(!(QFile::permissions(m_path) & others));

        store.remove(TextKey);
        QVERIFY(!FileSettingsStore(m_path).text(TextKey));
        QCOMPARE(FileSettingsStore(m_path).real(RealKey), 1'700'000'000'123.0);
    }

    void writersKeepEachOthersKeys() {
        const auto write = [this](const QString& prefix) {
            FileSettingsStore store(m_path);
            for (int number = 0; number < 40; ++number)
                store.setReal(prefix + QString::number(number), number);
        };
        std::thread first(write, u"first."_s);
        std::thread second(write, u"second."_s);
        first.join();
        second.join();
        const FileSettingsStore store(m_path);
        for (int number = 0; number < 40; ++number) {
            QCOMPARE(store.real(u"first.%1"_s.arg(number)), number);
            QCOMPARE(store.real(u"second.%1"_s.arg(number)), number);
        }
    }

    void aFullDiskLosesNothingThatWasThere() {
        FileSettingsStore store(m_path);
        store.setText(TextKey, u"kept"_s);
        {
            // No file of this process may grow beyond 64 bytes: writes fail as on a full disk.
            const auto previous = ::signal(SIGXFSZ, SIG_IGN);
            rlimit limit{};
            ::getrlimit(RLIMIT_FSIZE, &limit);
            const rlimit full{64, limit.rlim_max};
            ::setrlimit(RLIMIT_FSIZE, &full);
            store.setText(u"a.long"_s, QString(4096, u'x'));
            ::setrlimit(RLIMIT_FSIZE, &limit);
            ::signal(SIGXFSZ, previous);
        }
        QCOMPARE(FileSettingsStore(m_path).text(TextKey), u"kept"_s);
        QVERIFY(!FileSettingsStore(m_path).text(u"a.long"_s));
        QCOMPARE(store.text(u"a.long"_s)->size(), 4096);

        store.setReal(RealKey, 1);
        QCOMPARE(FileSettingsStore(m_path).text(u"a.long"_s)->size(), 4096);
    }

    void aFileThatIsNoSettingsIsKeptAside() {
        QDir().mkpath(QFileInfo(m_path).path());
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"a.text\": \"half");
        file.close();
        FileSettingsStore store(m_path);
        QVERIFY(!store.text(TextKey));
        store.setText(TextKey, u"new"_s);
        QCOMPARE(FileSettingsStore(m_path).text(TextKey), u"new"_s);
        QFile aside(m_path + u".unreadable"_s);
        QVERIFY(aside.open(QIODevice::ReadOnly));
        QCOMPARE(aside.readAll(), QByteArray("{\"a.text\": \"half"));
    }
};

QTEST_GUILESS_MAIN(SettingsStoreTest)
#include "settings_store_test.moc"

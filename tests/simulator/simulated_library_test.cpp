#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QFile>
#include <QJsonDocument>
#include <QTest>

using namespace quiv::simulator;

static QByteArray get(const SimulatorProcess& tv, const char* path) {
    httplib::Client client(tv.host().toStdString(), tv.port());
    const httplib::Result result = client.Get(path);
    return result && result->status == 200 ? QByteArray::fromStdString(result->body) : QByteArray();
}

static QJsonObject listing(const SimulatorProcess& tv) {
    return QJsonDocument::fromJson(get(tv, "/api/files")).object();
}

static QJsonObject memberNamed(const QJsonObject& listing, const char* list, const QString& name) {
    const QJsonArray members = listing[QLatin1String(list)].toArray();
    for (const QJsonValue& member : members) {
        if (member[QLatin1String("name")] == name)
            return member.toObject();
    }
    return {};
}

static void writeFile(const QString& folder, const char* name, int size) {
    QFile file(folder + u'/' + QLatin1String(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(size, 'x'));
}

class TestSimulatedLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsItsName();
    void listsTheFilesOfItsMediaFolder();
    void listsTheFilesOfItsUsbDriveUntilItIsUnplugged();
    void generatedEntriesAreTheSameInEveryRun();
    void generatedEntriesChangeOnDemand();
};

void TestSimulatedLibrary::tellsItsName() {
    SimulatorProcess tv;
    QVERIFY(tv.start({QStringLiteral("--name"), QStringLiteral("Küche")}));
    const auto name = [&] {
        return QJsonDocument::fromJson(get(tv, "/api/info"))[QLatin1String("name")].toString();
    };
    QCOMPARE(name(), QStringLiteral("Küche"));
    QVERIFY(tv.setName(QStringLiteral("Kitchen")));
    QCOMPARE(name(), QStringLiteral("Kitchen"));
}

void TestSimulatedLibrary::listsTheFilesOfItsMediaFolder() {
    SimulatorProcess tv;
    QVERIFY(tv.start());
    QCOMPARE(listing(tv)[QLatin1String("files")].toArray().size(), 0);
    writeFile(tv.mediaFolder(), "Big_Film.mkv", 500);
    writeFile(tv.mediaFolder(), "big_film.en.SRT", 10);
    writeFile(tv.mediaFolder(), "Big_Film 2.srt", 10);
    writeFile(tv.mediaFolder(), "notes.txt", 3);

    const QJsonObject files = listing(tv);
    QCOMPARE(files[QLatin1String("files")].toArray().size(), 4);
    const auto kindOf = [&](const char* name) {
        return memberNamed(files, "files", QLatin1String(name))[QLatin1String("kind")].toString();
    };
    QCOMPARE(kindOf("Big_Film.mkv"), QStringLiteral("VIDEO"));
    QCOMPARE(kindOf("big_film.en.SRT"), QStringLiteral("SUBTITLE"));
    QCOMPARE(kindOf("notes.txt"), QStringLiteral("OTHER"));

    QCOMPARE(files[QLatin1String("videos")].toArray().size(), 1);
    const QJsonObject video = memberNamed(files, "videos", QStringLiteral("Big_Film.mkv"));
    QCOMPARE(video[QLatin1String("displayName")].toString(), QStringLiteral("Big Film"));
    QCOMPARE(video[QLatin1String("sizeBytes")].toInt(), 500);
    QCOMPARE(video[QLatin1String("subtitleCount")].toInt(), 1);
    QCOMPARE(video[QLatin1String("storageLocation")].toString(), QStringLiteral("INTERNAL"));
    QCOMPARE(files[QLatin1String("internalStorage")][QLatin1String("usedBytes")].toInt(), 523);
    QVERIFY(!files.contains(QLatin1String("usbStorage")));
}

void TestSimulatedLibrary::listsTheFilesOfItsUsbDriveUntilItIsUnplugged() {
    const QTemporaryDir usb;
    writeFile(usb.path(), "Trip.mp4", 70);
    SimulatorProcess tv;
    QVERIFY(tv.start({QStringLiteral("--usb"), usb.path()}));
    QJsonObject files = listing(tv);
    const QJsonObject video = memberNamed(files, "videos", QStringLiteral("Trip.mp4"));
    QCOMPARE(video[QLatin1String("storageLocation")].toString(), QStringLiteral("USB"));
    QJsonObject storage = files[QLatin1String("usbStorage")].toObject();
    QCOMPARE(storage[QLatin1String("isConnected")].toBool(), true);
    QCOMPARE(storage[QLatin1String("cachedVideoBytes")].toInt(), 70);
    QCOMPARE(files[QLatin1String("preferredUploadTarget")].toString(), QStringLiteral("USB"));

    QVERIFY(tv.changeLibrary({{QStringLiteral("usbConnected"), false}}));
    files = listing(tv);
    QCOMPARE(files[QLatin1String("files")].toArray().size(), 0);
    storage = files[QLatin1String("usbStorage")].toObject();
    QCOMPARE(storage[QLatin1String("isConnected")].toBool(true), false);
    QCOMPARE(files[QLatin1String("preferredUploadTarget")].toString(), QStringLiteral("INTERNAL"));
}

void TestSimulatedLibrary::generatedEntriesAreTheSameInEveryRun() {
    SimulatorProcess tv;
    QVERIFY(tv.start({QStringLiteral("--generate"), QStringLiteral("20000")}));
    const QByteArray first = get(tv, "/api/files");
    QCOMPARE(QJsonDocument::fromJson(first)[QLatin1String("files")].toArray().size(), 20000);
    QVERIFY(get(tv, "/api/files") == first);
    tv.stop();
    QCOMPARE(tv.exitCode(), 0);
    QVERIFY(tv.start({QStringLiteral("--generate"), QStringLiteral("20000")}));
    QVERIFY(get(tv, "/api/files") == first);
}

void TestSimulatedLibrary::generatedEntriesChangeOnDemand() {
    SimulatorProcess tv;
    QVERIFY(tv.start({QStringLiteral("--generate"), QStringLiteral("3")}));
    const QString name = QStringLiteral("Generated Movie 000001.mp4");
    const auto change = [&](const char* action, const QString& entry, const QString& display = {}) {
        return tv.changeLibrary({{QStringLiteral("action"), QLatin1String(action)},
                                 {QStringLiteral("name"), entry},
                                 {QStringLiteral("displayName"), display}});
    };
    const auto modified = [&] {
        return memberNamed(listing(tv), "files", name)[QLatin1String("lastModifiedMs")].toInteger();
    };
    const qint64 before = modified();
    QVERIFY(change("touch", name));
    QCOMPARE(modified(), before + 1);
    QVERIFY(change("rename", name, QStringLiteral("A \"b\" \\ c\n")));
    QCOMPARE(memberNamed(listing(tv), "videos", name)[QLatin1String("displayName")].toString(),
             QStringLiteral("A \"b\" \\ c\n"));
    QVERIFY(change("remove", name));
    QVERIFY(!change("remove", name));
    QVERIFY(change("add", QStringLiteral("New.srt")));
    QVERIFY(!change("add", QStringLiteral("New.srt")));
    QCOMPARE(memberNamed(listing(tv), "files", QStringLiteral("New.srt"))[QLatin1String("kind")],
             QStringLiteral("SUBTITLE"));
    QCOMPARE(listing(tv)[QLatin1String("files")].toArray().size(), 3);
}

QTEST_GUILESS_MAIN(TestSimulatedLibrary)
#include "simulated_library_test.moc"

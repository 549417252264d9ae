#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QFile>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv::simulator;

namespace {

QByteArray get(const SimulatorProcess& tv, const char* path) {
    httplib::Client client(tv.host().toStdString(), tv.port());
    const httplib::Result result = client.Get(path);
    return result && result->status == 200 ? QByteArray::fromStdString(result->body) : QByteArray();
}

QJsonObject listing(const SimulatorProcess& tv) {
    return QJsonDocument::fromJson(get(tv, "/api/files")).object();
}

QJsonObject memberNamed(const QJsonObject& listing, const char* list, const QString& name) {
    const QJsonArray members = listing[QLatin1String(list)].toArray();
    for (const QJsonValue& member : members) {
        if (member["name"_L1] == name)
            return member.toObject();
    }
    return {};
}

void writeFile(const QString& folder, const char* name, int size) {
    QFile file(folder + u'/' + QLatin1String(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(size, 'x'));
}

} // namespace

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
    QVERIFY(tv.start({u"--name"_s, u"Küche"_s}));
    const auto name = [&] {
        return QJsonDocument::fromJson(get(tv, "/api/info"))["name"_L1].toString();
    };
    QCOMPARE(name(), u"Küche"_s);
    QVERIFY(tv.setName(u"Kitchen"_s));
    QCOMPARE(name(), u"Kitchen"_s);
}

void TestSimulatedLibrary::listsTheFilesOfItsMediaFolder() {
    SimulatorProcess tv;
    QVERIFY(tv.start());
    QCOMPARE(listing(tv)["files"_L1].toArray().size(), 0);
    writeFile(tv.mediaFolder(), "Big_Film.mkv", 500);
    writeFile(tv.mediaFolder(), "big_film.en.SRT", 10);
    writeFile(tv.mediaFolder(), "Big_Film 2.srt", 10);
    writeFile(tv.mediaFolder(), "notes.txt", 3);

    const QJsonObject files = listing(tv);
    QCOMPARE(files["files"_L1].toArray().size(), 4);
    const auto kindOf = [&](const char* name) {
        return memberNamed(files, "files", QLatin1String(name))["kind"_L1].toString();
    };
    QCOMPARE(kindOf("Big_Film.mkv"), u"VIDEO"_s);
    QCOMPARE(kindOf("big_film.en.SRT"), u"SUBTITLE"_s);
    QCOMPARE(kindOf("notes.txt"), u"OTHER"_s);

    QCOMPARE(files["videos"_L1].toArray().size(), 1);
    const QJsonObject video = memberNamed(files, "videos", u"Big_Film.mkv"_s);
    QCOMPARE(video["displayName"_L1].toString(), u"Big Film"_s);
    QCOMPARE(video["sizeBytes"_L1].toInt(), 500);
    QCOMPARE(video["subtitleCount"_L1].toInt(), 1);
    QCOMPARE(video["storageLocation"_L1].toString(), u"INTERNAL"_s);
    QCOMPARE(files["internalStorage"_L1]["usedBytes"_L1].toInt(), 523);
    QVERIFY(!files.contains("usbStorage"_L1));
}

void TestSimulatedLibrary::listsTheFilesOfItsUsbDriveUntilItIsUnplugged() {
    const QTemporaryDir usb;
    writeFile(usb.path(), "Trip.mp4", 70);
    SimulatorProcess tv;
    QVERIFY(tv.start({u"--usb"_s, usb.path()}));
    QJsonObject files = listing(tv);
    const QJsonObject video = memberNamed(files, "videos", u"Trip.mp4"_s);
    QCOMPARE(video["storageLocation"_L1].toString(), u"USB"_s);
    QJsonObject storage = files["usbStorage"_L1].toObject();
    QCOMPARE(storage["isConnected"_L1].toBool(), true);
    QCOMPARE(storage["cachedVideoBytes"_L1].toInt(), 70);
    QCOMPARE(files["preferredUploadTarget"_L1].toString(), u"USB"_s);

    QVERIFY(tv.changeLibrary({{u"usbConnected"_s, false}}));
    files = listing(tv);
    QCOMPARE(files["files"_L1].toArray().size(), 0);
    storage = files["usbStorage"_L1].toObject();
    QCOMPARE(storage["isConnected"_L1].toBool(true), false);
    QCOMPARE(files["preferredUploadTarget"_L1].toString(), u"INTERNAL"_s);
}

void TestSimulatedLibrary::generatedEntriesAreTheSameInEveryRun() {
    SimulatorProcess tv;
    QVERIFY(tv.start({u"--generate"_s, u"20000"_s}));
    const QByteArray first = get(tv, "/api/files");
    QCOMPARE(QJsonDocument::fromJson(first)["files"_L1].toArray().size(), 20000);
    QVERIFY(get(tv, "/api/files") == first);
    tv.stop();
    QCOMPARE(tv.exitCode(), 0);
    QVERIFY(tv.start({u"--generate"_s, u"20000"_s}));
    QVERIFY(get(tv, "/api/files") == first);
}

void TestSimulatedLibrary::generatedEntriesChangeOnDemand() {
    SimulatorProcess tv;
    QVERIFY(tv.start({u"--generate"_s, u"3"_s}));
    const QString name = u"Generated Movie 000001.mp4"_s;
    const auto change = [&](const char* action, const QString& entry, const QString& display = {}) {
        return tv.changeLibrary({{u"action"_s, QLatin1String(action)},
                                 {u"name"_s, entry},
                                 {u"displayName"_s, display}});
    };
    const auto modified = [&] {
        return memberNamed(listing(tv), "files", name)["lastModifiedMs"_L1].toInteger();
    };
    const qint64 before = modified();
    QVERIFY(change("touch", name));
    QCOMPARE(modified(), before + 1);
    QVERIFY(change("rename", name, u"A \"b\" \\ c\n"_s));
    QCOMPARE(memberNamed(listing(tv), "videos", name)["displayName"_L1].toString(),
             u"A \"b\" \\ c\n"_s);
    QVERIFY(change("remove", name));
    QVERIFY(!change("remove", name));
    QVERIFY(change("add", u"New.srt"_s));
    QVERIFY(!change("add", u"New.srt"_s));
    QCOMPARE(memberNamed(listing(tv), "files", u"New.srt"_s)["kind"_L1], u"SUBTITLE"_s);
    QCOMPARE(listing(tv)["files"_L1].toArray().size(), 3);
}

QTEST_GUILESS_MAIN(TestSimulatedLibrary)
#include "simulated_library_test.moc"

#include "net/json_structure.h"
#include "net/wire_decoding.h"
#include "support/test_main.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

const QByteArray Files = R"({"files":[{"name":"a.mkv","kind":"VIDEO","sizeBytes":3000000000,
    "lastModifiedMs":1700000000123,"extra":{}}],"videos":[{"name":"a.mkv","displayName":"A",
    "sizeBytes":1,"subtitleCount":2,"storageLocation":"USB"}],"usbStorage":{"driveId":"d",
    "driveName":"Backup","isConnected":true,"freeBytes":1,"totalBytes":2,"cachedVideoCount":3,
    "cachedVideoBytes":4},"usbSetupHint":null})";

// The description of the failure; empty when it decodes.
template <class Record> QString failureOf(const QByteArray& json) {
    try {
        (void)decode<Record>(json);
        return {};
    } catch (const DecodingError& error) {
        return error.description();
    }
}

template <class Record> void decodeQuietly(const QByteArray& json) {
    (void)failureOf<Record>(json);
}

void decodeAsEverything(const QByteArray& json) {
    decodeQuietly<FilesResponse>(json);
    decodeQuietly<RemoteDeviceInfo>(json);
    decodeQuietly<PlaybackResponse>(json);
    decodeQuietly<PairingStatusResponse>(json);
    decodeQuietly<UploadStatusResponse>(json);
    decodeQuietly<MoveStatusResponse>(json);
    decodeQuietly<ServerErrorPayload>(json);
    decodeQuietly<UploadSuccessPayload>(json);
}

} // namespace

class WireDecodingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aListingKeepsEveryField() {
        const auto response = decode<FilesResponse>(Files);
        QCOMPARE(response.files.size(), 1);
        QVERIFY(
            (response.files[0] == RemoteFile{u"a.mkv"_s, u"VIDEO"_s, 3000000000, 1700000000123}));
        QCOMPARE(response.videos[0].storageLocation, u"USB"_s);
        QVERIFY(!response.videos[0].lastModifiedMs);
        QCOMPARE(response.usbStorage->cachedVideoBytes, 4);
        QVERIFY(!response.storage && !response.internalStorage && !response.usbSetupHint);
    }

    void aRequiredFieldMissingNullOrMistypedFailsTheWholeReply_data() {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QString>("path");
        const auto row = [](const char* from, const char* to, const char* path) {
            QTest::newRow(to) << QByteArray(from) << QByteArray(to) << QString::fromUtf8(path);
        };
        row("\"videos\":[", "\"movies\":[", "\"videos\" is missing");
        row("\"files\":[", "\"files\":null,\"x\":[", "\"files\" is missing");
        row("\"kind\":\"VIDEO\"", "\"kind\":7", "\"files[0].kind\"");
        row("3000000000", "3.5", "\"files[0].sizeBytes\"");
        row("3000000000", "1e30", "\"files[0].sizeBytes\"");
        row("3000000000", "9223372036854775808", "\"files[0].sizeBytes\"");
        row("3000000000", "\"3000000000\"", "\"files[0].sizeBytes\"");
        row("1700000000123", "true", "\"files[0].lastModifiedMs\"");
        row("\"isConnected\":true", "\"isConnected\":1", "\"usbStorage.isConnected\"");
        row("\"usbSetupHint\":null", "\"usbSetupHint\":[]", "\"usbSetupHint\"");
        row("\"usbSetupHint\":null", "\"storage\":{\"usedBytes\":1}", "\"storage.totalBytes\"");
    }
    void aRequiredFieldMissingNullOrMistypedFailsTheWholeReply() {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(QString, path);
        QByteArray json = Files;
        QVERIFY(json.contains(from));
        json.replace(from, to);
        const QString failure = failureOf<FilesResponse>(json);
        QVERIFY2(failure.contains(path), qPrintable(failure));
    }

    void numbersAreWholeAndBounded() {
        const std::pair<const char*, std::int64_t> numbers[] = {
            {"3000000000.0", 3000000000},
            {"-1", 0},
            {"-9223372036854775808", 0},
            {"9223372036854775807", LargestNumber}};
        for (const auto& [text, size] : numbers) {
            const QByteArray json = QByteArray(Files).replace("3000000000", text);
            QCOMPARE(decode<FilesResponse>(json).files[0].sizeBytes, size);
        }
        const auto playback = decode<PlaybackResponse>(
            R"({"isPlaying":true,"positionMs":-7,"durationMs":-1,"playbackSpeed":1e308})");
        QCOMPARE(playback.playbackSpeed, double(LargestNumber));
        QCOMPARE(playback.positionMs + playback.durationMs, 0);
        const QByteArray endless =
            R"({"isPlaying":true,"positionMs":1,"durationMs":1,"playbackSpeed":1e999})";
        QVERIFY(!failureOf<PlaybackResponse>(endless).isEmpty());
    }

    void textsThatAreShownAreCutAndThoseThatGoBackAreWholeOrMissing() {
        const QByteArray name(4096, 'n');
        const auto listing = [](const QByteArray& fileName) {
            return decode<FilesResponse>(QByteArray(Files).replace(
                "{\"name\":\"a.mkv\",\"kind\"", "{\"name\":\"" + fileName +
                                                    "\",\"sizeBytes\":1,\"kind\":\"\"},"
                                                    "{\"name\":\"a.mkv\",\"kind\""));
        };
        QCOMPARE(listing(name).files[0].name.size(), 4096);
        for (const QByteArray& unusable : {name + "n", QByteArray("\xc3\xa4").repeated(2049),
                                           QByteArray("\\ud800"), QByteArray("\\udfffx")}) {
            const auto files = listing(unusable).files;
            QCOMPARE(files.size(), 1);
            QCOMPARE(files[0].name, u"a.mkv"_s);
        }
        QCOMPARE(listing("a\\u0000b").files[0].name.size(), 3);
        QVERIFY(!decode<FilesResponse>(QByteArray(Files).replace("\"d\"", '"' + name + "n\""))
                     .usbStorage);
        const QByteArray pair = "\\ud83d\\udcfa";
        const auto info = decode<RemoteDeviceInfo>(
            "{\"name\":\"" + QByteArray(255, 'x') + pair + "\",\"deviceModel\":\"" +
            QByteArray(240'000, 'y') + "\",\"installationId\":\"" + name + "n\"}");
        QCOMPARE(info.name, QString(255, u'x'));
        QCOMPARE(info.deviceModel->size(), 256);
        QVERIFY(!info.installationId);
        const QByteArray unnamed =
            QByteArray(R"({"state":"","movedBytes":0,"totalBytes":0,"message":"")") +
            ",\"updatedAtMs\":0,\"fileName\":\"\\ud800\"}";
        QVERIFY(failureOf<MoveStatusResponse>(unnamed).contains(u"cannot be used"_s));
        const QByteArray twice = R"({"name":"first","name":"last"})";
        QCOMPARE(decode<RemoteDeviceInfo>(twice).name, u"last"_s);
    }

    void structureIsCountedBeforeAnythingIsBuilt() {
        const QByteArray mixed = "{\"a\":[1,\"]},[\\\"{\",{}],\"b\":2}";
        QCOMPARE(structureOf(mixed), (JsonStructure{3, 3, 6}));
        QCOMPARE(structureOf("\"\\"), JsonStructure());
        QVERIFY(failureOf<RemoteDeviceInfo>("{\"a\":[" + QByteArray("[[]],").repeated(13'000))
                    .contains(u"too much"_s));
        QVERIFY(failureOf<PlaybackResponse>("[" + QByteArray("1,").repeated(500'000))
                    .contains(u"too much"_s));
        const QByteArray file = R"({"name":"a","kind":"","sizeBytes":1})";
        const auto listing = [&file](qsizetype more) {
            return "{\"videos\":[],\"files\":[" + (file + ',').repeated(more) + file + "]}";
        };
        QCOMPARE(decode<FilesResponse>(listing(MostFiles - 1)).files.size(), MostFiles);
        for (const qsizetype more : {MostFiles, qsizetype(1'000'000)})
            QVERIFY_EXCEPTION_THROWN(decode<FilesResponse>(listing(more)), TooManyFiles);
        const QByteArray track = R"({"id":"1","label":"","selected":false},)";
        const auto playback = decode<PlaybackResponse>(
            "{\"isPlaying\":true,\"positionMs\":1,\"durationMs\":1,\"audioTracks\":[" +
            track.repeated(3000).chopped(1) + "]}");
        QCOMPARE(playback.audioTracks.size(), MostTracks);
    }

    void playbackHasItsDefaults() {
        const auto playback = decode<PlaybackResponse>(
            R"({"isPlaying":true,"positionMs":5,"durationMs":6,"playbackSpeed":null})");
        QCOMPARE(playback.playbackSpeed, 1.0);
        QVERIFY(playback.subtitleTracks.isEmpty() && playback.audioTracks.isEmpty());
        QVERIFY(!failureOf<PlaybackResponse>(R"({"isPlaying":true,"durationMs":6})").isEmpty());
        const auto withTrack = decode<PlaybackResponse>(
            R"({"isPlaying":false,"positionMs":5,"durationMs":6,"playbackSpeed":2,
                "audioTracks":[{"id":"1","label":"","selected":true}]})");
        QCOMPARE(withTrack.playbackSpeed, 2.0);
        QVERIFY(withTrack.audioTracks[0].selected);
    }

    void infoMayBeEmptyButNotMistyped() {
        QCOMPARE(decode<RemoteDeviceInfo>("{}"), RemoteDeviceInfo());
        QVERIFY(!failureOf<RemoteDeviceInfo>(R"({"apiVersion":"3"})").isEmpty());
    }

    void whatIsNoObjectFails() {
        for (const char* json :
             {"", "null", "[]", "7", "\"x\"", "{", "{}{}", "\xff\xfe", "{\"a\":\"\xff\"}"})
            QVERIFY2(!failureOf<FilesResponse>(json).isEmpty(), json);
        QVERIFY(!failureOf<RemoteDeviceInfo>(QByteArray(5'000'000, '[')).isEmpty());
        QVERIFY(!failureOf<RemoteDeviceInfo>(QByteArray("{\"a\":").repeated(1'000'000)).isEmpty());
    }

    // Any damage to a reply ends in a record or an error, never in a crash.
    void damagedRepliesNeverBreakAnything() {
        QRandomGenerator random(20);
        const QByteArray alphabet = "{}[]\",:0123456789eE+-.truefalsn\\u \xff";
        for (int round = 0; round < 3000; ++round) {
            QByteArray json = Files;
            for (int edit = random.bounded(1, 6); edit > 0 && !json.isEmpty(); --edit) {
                const auto position = random.bounded(json.size());
                switch (random.bounded(3)) {
                case 0:
                    json[position] = alphabet[random.bounded(alphabet.size())];
                    break;
                case 1:
                    json.remove(position, random.bounded(20));
                    break;
                default:
                    json.insert(position, json.sliced(position, std::min<qsizetype>(
                                                                    30, json.size() - position)));
                }
            }
            decodeAsEverything(json);
        }
        QCOMPARE(failureOf<FilesResponse>(Files), QString());
    }
};

static const quiv::TestCase<WireDecodingTest> registered;
#include "wire_decoding_test.moc"

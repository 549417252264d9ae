#include "platform/open_file.h"
#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QString PreflightPath = u"api/files/upload-preflight"_s;
const QString UploadPath = u"api/files/upload"_s;
const QString ThumbnailPath = u"api/files/thumbnail"_s;
const QString UploadStatusPath = u"api/upload-status"_s;
const QByteArray Empty = R"({"files":[],"videos":[]})";

// The queue over a paired TV, fed with files of 1000 bytes.
struct Fixture : ModelFixture {
    Fixture() { selectPaired(FirstTv); }

    Uploads& uploads() { return *model.uploads(); }
    QUrl file(const QString& name, int size = 1000) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray(size, 'x'));
        return QUrl::fromLocalFile(file.fileName());
    }
    void queue(const QStringList& names) {
        QList<QUrl> urls;
        for (const QString& name : names)
            urls.append(file(name));
        uploads().queueUploadsFromPicker(urls);
        turn();
    }
    QStringList rows() {
        QStringList rows;
        for (const UploadListItem& item : uploads().uploadListItems())
            rows.append(QStringView(u" ?>!")[static_cast<int>(item.state)] + item.fileName);
        return rows;
    }
    void progress(std::int64_t sent, std::int64_t total = 1000) {
        http.latest(UploadPath).onProgress({sent, total, 0, -1});
    }
    // What the TV answers, and what comes of it.
    template <class... Reply> bool answer(const QString& path, const Reply&... reply) {
        const bool isAwaited = http.answer(path, reply...);
        turn();
        return isAwaited;
    }
    // The TV knows nothing of the upload.
    void denyCompletion() {
        answer(UploadStatusPath, "null");
        answer(FilesPath, Empty);
    }

    QTemporaryDir folder;
};

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

} // namespace

class UploadsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filesGoOneAfterTheOther() {
        Fixture fixture;
        fixture.queue({text("a.srt"), text("b.srt"), text("notes.pdf")});
        QCOMPARE(fixture.rows(), QStringList({text(">a.srt"), text(" b.srt")}));
        QCOMPARE(fixture.status(), text("Uploading a.srt"));
        const HttpRequest request = fixture.http.latest(UploadPath);
        QCOMPARE(request.method, "PUT");
        QCOMPARE(request.bodyFile->stamp()->sizeBytes, 1000);
        QVERIFY(!request.timeouts.total); // as long as bytes move
        QVERIFY(request.url.endsWith("/api/files/upload?name=a.srt&uploadId=" +
                                     fixture.uploads().uploadListItems()[0].id.toLatin1()));
        fixture.progress(0);
        fixture.clock.advance(250ms);
        fixture.progress(500);
        QCOMPARE(fixture.status(), text("Uploading a.srt (1 queued)... 50%"));
        QCOMPARE(fixture.uploads().uploadListItems()[0].speedBytesPerSecond, 2000.0);

        fixture.answer(UploadPath, R"({"fileName":" a (1).srt "})");
        QCOMPARE(fixture.rows(), QStringList(text(">b.srt")));
        fixture.answer(UploadPath, "not JSON");
        QCOMPARE(fixture.status(), text("Upload queue finished: 2 uploaded"));
        QVERIFY(fixture.rows().isEmpty());
        QVERIFY(fixture.answer(FilesPath, Empty)); // the new files show
    }

    void aVideoIsAnnouncedWithItsStill() {
        Fixture fixture;
        fixture.queue({text("a.mkv")});
        const HttpRequest preflight = fixture.http.latest(PreflightPath);
        QVERIFY(preflight.url.endsWith("?name=a.mkv&sizeBytes=1000"));
        QCOMPARE(preflight.body, *fixture.stills.still);
        QVERIFY(preflight.headers.contains(
            std::pair(QByteArray("Content-Type"), QByteArray("image/jpeg"))));
        QVERIFY(fixture.http.latest(UploadPath).url.isEmpty()); // waits for it
        fixture.answer(PreflightPath, QByteArray());
        QVERIFY(fixture.http.latest(UploadPath).url.endsWith("&thumbnailMode=client"));
        fixture.answer(UploadPath, QByteArray());
        QCOMPARE(fixture.status(), text("Upload queue finished: 1 uploaded"));
        QVERIFY(fixture.http.latest(ThumbnailPath).url.isEmpty());
    }

    void aStillThatWasNotAnnouncedFollowsTheFile() {
        Fixture fixture;
        fixture.queue({text("a.mkv")});
        fixture.answer(PreflightPath, "No such thing", 404);
        QCOMPARE(
            fixture.log.lines,
            QStringList(text("QuivController upload preflight failed for a.mkv: No such thing")));
        QVERIFY(!fixture.http.latest(UploadPath).url.contains("thumbnailMode"));
        fixture.answer(UploadPath, R"({"fileName":"a (1).mkv"})");
        QVERIFY(fixture.http.latest(ThumbnailPath).url.endsWith("?name=a%20%281%29.mkv"));
        QCOMPARE(fixture.http.latest(ThumbnailPath).body, *fixture.stills.still);
        fixture.answer(ThumbnailPath, QByteArray(), 500);
        QCOMPARE(fixture.log.lines.size(), 2);
        QCOMPARE(fixture.status(), text("Upload queue finished: 1 uploaded"));
    }

    void withoutAStillTheFileIsAnnouncedAlone() {
        Fixture fixture;
        fixture.stills.still.reset();
        fixture.uploads().queueUploadsFromPicker({fixture.file(text("empty.mkv"), 0)});
        ModelFixture::turn();
        const HttpRequest preflight = fixture.http.latest(PreflightPath);
        QVERIFY(preflight.url.endsWith("?name=empty.mkv"));
        QVERIFY(preflight.body.isEmpty());
        fixture.answer(PreflightPath, QByteArray());
        QVERIFY(!fixture.http.latest(UploadPath).url.contains("thumbnailMode"));
    }

    void aSilentTvIsNotAskedForEveryVideoAtOnce() {
        Fixture fixture;
        QStringList names;
        for (int number = 0; number < 20; ++number)
            names.append(u"%1.mkv"_s.arg(number));
        fixture.queue(names);
        QCOMPARE(fixture.takeTargets(PreflightPath).size(), 4);
        fixture.answer(PreflightPath, QByteArray());
        ModelFixture::turn();
        const QStringList next = fixture.takeTargets(PreflightPath);
        QCOMPARE(next,
                 QStringList(text("PUT api/files/upload-preflight?name=4.mkv&sizeBytes=1000")));
    }

    void failuresAreSaidAndTheQueueGoesOn_data() {
        QTest::addColumn<int>("status"); // or an error code
        QTest::addColumn<QString>("message");
        QTest::newRow("full") << 507
                              << text("Upload failed: not enough free space on target storage.");
        QTest::newRow("too large")
            << 413 << text("Upload failed: file is too large for the current upload target.");
        QTest::newRow("lost") << -1005 << HttpError(HttpErrorCode::ConnectionLost).description();
        QTest::newRow("no HTTP") << -1011 << text("Upload failed: invalid server response");
        QTest::newRow("unreadable")
            << -1102 << HttpError(HttpErrorCode::CannotReadFile).description();
    }
    void failuresAreSaidAndTheQueueGoesOn() {
        QFETCH(int, status);
        QFETCH(QString, message);
        Fixture fixture;
        fixture.queue({text("a.srt"), text("b.srt")});
        QStringList said;
        connect(fixture.model.status(), &StatusLine::statusMessageChanged, this,
                [&] { said.append(fixture.status()); });
        if (status > 0)
            fixture.answer(UploadPath, QByteArray(), status);
        else
            fixture.answer(UploadPath, HttpErrorCode(status));
        fixture.denyCompletion();
        QVERIFY2(said.contains(text("Upload failed for a.srt: ") + message),
                 qPrintable(said.join(u'\n')));
        QCOMPARE(fixture.answer(StatusPath, R"({"authorized":true})"), status == -1005);
        fixture.answer(UploadPath, QByteArray());
        QCOMPARE(fixture.status(), text("Upload queue finished: 1 uploaded, 1 failed"));
        const UploadListItem failed = fixture.uploads().uploadListItems().constFirst();
        QCOMPARE(failed.state, UploadListItemState::Failed);
        QCOMPARE(failed.reason, message);
        fixture.uploads().retryUploadJob(failed.id);
        ModelFixture::turn();
        fixture.answer(UploadPath, QByteArray());
        QCOMPARE(fixture.status(), text("Upload queue finished: 1 uploaded"));
        QVERIFY(fixture.rows().isEmpty());
    }

    void aJobThatCannotStartWaitsAndGoesOnByItself_data() {
        QTest::addColumn<int>("status"); // or an error code
        QTest::newRow("the token was revoked") << 401;
        QTest::newRow("the TV's app restarts") << -1004;
    }
    void aJobThatCannotStartWaitsAndGoesOnByItself() {
        QFETCH(int, status);
        Fixture fixture;
        fixture.queue({text("a.srt"), text("b.srt")});
        if (status > 0)
            fixture.answer(UploadPath, QByteArray(), status);
        else
            fixture.answer(UploadPath, HttpErrorCode(status));
        fixture.denyCompletion();
        for (int round = 0; round < 3; ++round) {
            fixture.clock.advance(2s);
            QCOMPARE(fixture.rows(), QStringList({text("?a.srt"), text(" b.srt")}));
            if (status > 0)
                fixture.answer(StatusPath, R"({"authorized":false})");
            else
                fixture.answer(StatusPath, HttpErrorCode(status));
        }
        QVERIFY(!fixture.uploads().uploadListItems().constFirst().reason.isEmpty());
        fixture.clock.advance(2s);
        fixture.answer(StatusPath, R"({"authorized":true,"expiresInSec":86400})");
        fixture.answer(UploadPath, QByteArray());
        if (status > 0)
            fixture.answer(StatusPath, R"({"authorized":true,"expiresInSec":86400})");
        fixture.answer(UploadPath, QByteArray());
        QCOMPARE(fixture.status(), text("Upload queue finished: 2 uploaded"));
    }

    void aTvThatSaysItIsReadyMayRefuseTenTimes() {
        Fixture fixture;
        fixture.queue({text("a.srt")});
        for (int refusals = 0; refusals <= 10; ++refusals) {
            QVERIFY(fixture.answer(UploadPath, HttpErrorCode::CannotConnect));
            fixture.denyCompletion();
            fixture.clock.advance(2s);
            fixture.answer(StatusPath, R"({"authorized":true})");
        }
        QCOMPARE(fixture.rows(), QStringList(text("!a.srt")));
    }

    void filesDroppedBeforePairingWaitForIt() {
        Fixture fixture;
        fixture.model.selectDevice(OtherTv);
        fixture.queue({text("a.mkv")});
        QVERIFY(fixture.http.latest(PreflightPath).url.isEmpty());
        fixture.answer(StatusPath, R"({"authorized":false})");
        QVERIFY(fixture.status().startsWith(text("Pairing required for upload.")));
        QCOMPARE(fixture.rows(), QStringList(text("?a.mkv")));
        fixture.clock.advance(2s);
        fixture.answer(StatusPath, R"({"authorized":true})");
        fixture.answer(PreflightPath, QByteArray());
        QVERIFY(fixture.http.latest(UploadPath).url.startsWith("http://other.local:8080/"));
    }

    void whatTheTvHasAfterAllIsASuccess_data() {
        QTest::addColumn<QByteArray>("uploadStatus");
        QTest::addColumn<QByteArray>("listing");
        QTest::newRow("status")
            << QByteArray(
                   R"({"state":"COMPLETED","fileName":"a.srt","receivedBytes":0,"totalBytes":1000,"message":"","updatedAtMs":1700000000000})")
            << QByteArray();
        QTest::newRow("listing")
            << QByteArray("null")
            << QByteArray(
                   R"({"files":[{"name":"A (1).srt","kind":"SUBTITLE","sizeBytes":1000}],"videos":[]})");
    }
    void whatTheTvHasAfterAllIsASuccess() {
        QFETCH(QByteArray, uploadStatus);
        QFETCH(QByteArray, listing);
        for (const bool isRefused : {true, false}) {
            Fixture fixture;
            fixture.queue({text("a.srt")});
            if (isRefused)
                fixture.answer(UploadPath, QByteArray(), 500);
            else
                fixture.answer(UploadPath, HttpErrorCode::ConnectionLost);
            fixture.answer(UploadStatusPath, uploadStatus);
            if (!listing.isEmpty())
                fixture.answer(FilesPath, listing);
            QCOMPARE(fixture.status(), text("Upload queue finished: 1 uploaded"));
        }
    }

    void aBodyThatStartsOverNearItsEndMayBeThere() {
        Fixture fixture;
        fixture.queue({text("a.srt")});
        fixture.progress(600);
        fixture.progress(10); // not near the end
        QCOMPARE(fixture.http.waiting(), 1u);
        fixture.progress(990);
        fixture.progress(20);
        fixture.denyCompletion();
        QCOMPARE(fixture.status(), text("Uploading a.srt... 2%"));
        fixture.progress(30);
        QVERIFY(fixture.answer(
            UploadStatusPath,
            R"({"state":"COMPLETED","fileName":"a.srt","receivedBytes":0,"totalBytes":1000,"message":"","updatedAtMs":1700000000000})"));
        QTRY_COMPARE(fixture.status(), text("Upload queue finished: 1 uploaded"));
    }

    void onlyAFileThatChangesMeanwhileIsNotUploaded() {
        Fixture fixture;
        fixture.queue({text("a.srt"), text("b.srt")});
        fixture.file(text("a.srt"), 1001);
        fixture.answer(UploadPath, QByteArray());
        QVERIFY(QFile::remove(fixture.folder.filePath(text("b.srt"))));
        fixture.answer(UploadPath, QByteArray());
        QCOMPARE(fixture.status(), text("Upload queue finished: 1 uploaded, 1 failed"));
    }

    void cancellingEndsTheTransferAndSaysSo() {
        Fixture fixture;
        fixture.queue({text("a.srt"), text("b.srt"), text("c.mkv")});
        const auto rows = fixture.uploads().uploadListItems();
        fixture.uploads().cancelUploadJob(rows[2].id);
        QCOMPARE(fixture.status(), text("Removed c.mkv from upload queue"));
        fixture.uploads().cancelUploadJob(rows[0].id);
        QCOMPARE(fixture.status(), text("Canceling a.srt..."));
        QCOMPARE(fixture.rows().size(), 2); // until the transfer has ended
        QTRY_VERIFY(fixture.http.paths.last() == UploadStatusPath);
        fixture.clock.advance(1s); // a TV that says nothing is not waited for
        QTRY_COMPARE(fixture.rows(), QStringList(text(">b.srt")));
        ModelFixture::turn();
        fixture.answer(UploadPath, QByteArray());
        QCOMPARE(fixture.status(), text("Upload queue finished: 1 uploaded"));
        fixture.uploads().cancelUploadJob(rows[0].id);
        QCOMPARE(fixture.status(), text("Upload queue finished: 1 uploaded"));
    }

    void cancellingBeforeTheTransferSendsNothing() {
        Fixture fixture;
        fixture.queue({text("a.mkv"), text("b.srt")});
        fixture.uploads().cancelUploadJob(fixture.uploads().uploadListItems()[0].id);
        QCOMPARE(fixture.rows(), QStringList(text(">b.srt")));
        QVERIFY(!fixture.answer(PreflightPath, QByteArray()));
        QVERIFY(fixture.http.latest(UploadPath).url.contains("name=b.srt&"));
        fixture.answer(UploadPath, HttpErrorCode::CannotConnect);
        fixture.denyCompletion();
        fixture.clock.advance(2s); // it is being asked whether it may start
        fixture.uploads().cancelUploadJob(fixture.uploads().uploadListItems()[0].id);
        QVERIFY(fixture.rows().isEmpty());
        QVERIFY(!fixture.answer(StatusPath, R"({"authorized":true})"));
        QCOMPARE(fixture.status(), text("Upload queue finished: 0 uploaded"));
    }

    void aJobGoesToTheTvItWasQueuedFor() {
        Fixture fixture;
        fixture.queue({text("a.srt"), text("b.mkv")});
        fixture.answer(PreflightPath, QByteArray());
        fixture.selectPaired(OtherTv);
        fixture.queue({text("b.mkv")}); // the name is free on that one
        fixture.answer(UploadPath, QByteArray());
        fixture.answer(StatusPath, R"({"authorized":true})"); // of the first TV
        QByteArray url = fixture.http.latest(UploadPath).url;
        QVERIFY(url.startsWith("http://tv.local:8080/") && url.contains("thumbnailMode"));
        fixture.answer(UploadPath, QByteArray());
        fixture.answer(PreflightPath, QByteArray());
        url = fixture.http.latest(UploadPath).url;
        QVERIFY(url.startsWith("http://other.local:8080/"));
        QCOMPARE(fixture.uploads().uploadListItems().constFirst().tvKey, text("other.local:8080"));
    }

    void otherMessagesAreLeftToBeRead() {
        Fixture fixture;
        fixture.queue({text("a.srt")});
        fixture.progress(100);
        fixture.model.status()->post(text("Deleted x"));
        fixture.progress(200);
        QCOMPARE(fixture.status(), text("Deleted x"));
        fixture.clock.advance(5s);
        QCOMPARE(fixture.uploads().uploadListItems()[0].speedBytesPerSecond, 0.0); // it stands
        fixture.progress(300);
        QCOMPARE(fixture.status(), text("Uploading a.srt... 30%"));
    }

    void subtitlesAreQueuedUnderTheVideosName() {
        Fixture fixture;
        fixture.uploads().queueSubtitleUpload(fixture.file(text("x.srt")), text("Movie.doc"));
        QCOMPARE(fixture.status(), text("Selected file is not a supported subtitle type"));
        fixture.uploads().queueSubtitleUpload(fixture.file(text("x.srt")), text("Movie.srt"));
        QCOMPARE(fixture.status(), text("Queued subtitle upload: Movie.srt"));
        fixture.uploads().queueSubtitleUpload(fixture.file(text("y.srt")), text("movie.SRT"));
        QCOMPARE(fixture.status(), text("Subtitle is already uploading or queued: movie.SRT"));
        ModelFixture::turn();
        QVERIFY(fixture.http.latest(UploadPath).url.contains("name=Movie.srt&"));
    }

    void quittingAtAnyPointIsHarmless() {
        for (int steps = 0; steps < 5; ++steps) {
            auto fixture = std::make_unique<Fixture>();
            fixture->uploads().queueUploadsFromPicker({fixture->file(text("a.mkv"))});
            if (steps > 0)
                ModelFixture::turn();
            if (steps > 1)
                fixture->http.answer(PreflightPath, QByteArray(), 500);
            if (steps > 2)
                fixture->http.answer(UploadPath, QByteArray());
            if (steps > 3)
                fixture->http.answer(ThumbnailPath, QByteArray());
            fixture.reset();
            ModelFixture::turn();
        }
    }
};

static const quiv::TestCase<UploadsTest> registered;
#include "uploads_test.moc"

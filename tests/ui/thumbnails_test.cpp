#include "fake_window_ports.h"

#include "support/test_main.h"
#include "ui/thumbnails/thumbnail_loader.h"

#include <QBuffer>
#include <QColor>
#include <QTest>
#include <QThreadPool>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QString ThumbnailPath = u"api/thumbnail"_s;
const ThumbnailShape Shape{{120, 68}, 8};

QUrl urlOf(const char* name) {
    return thumbnailURLForVideo({QUrl(u"http://tv.local:8080"_s),
                                 {{u"clientId"_s, u"mac-1"_s}, {u"authToken"_s, u"a+b"_s}}},
                                QString::fromLatin1(name));
}

QByteArray picture(const char* format, const QColor& colour = Qt::red, QSize size = {320, 180}) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QBuffer buffer;
    image.save(&buffer, format);
    return buffer.data();
}

// A PNG that claims to be 60000 x 60000.
QByteArray hugePng() {
    QByteArray bytes = picture("PNG");
    const QByteArray size("\x00\x00\xea\x60\x00\x00\xea\x60", 8);
    bytes.replace(16, 8, size);
    quint32 checksum = 0xffffffff; // as the format asks, over the header chunk
    for (const char byte : bytes.mid(12, 17)) {
        checksum ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            checksum = (checksum >> 1) ^ (checksum & 1 ? 0xedb88320 : 0);
    }
    checksum ^= 0xffffffff;
    for (int byte = 0; byte < 4; ++byte)
        bytes[29 + byte] = static_cast<char>(checksum >> (24 - 8 * byte));
    return bytes;
}

struct Fixture {
    FakeWindowPorts ports;
    ThumbnailStore store{ports.http, ports.clock};
    ThumbnailLoader loader{store};

    // The TV's answer to the oldest request, taken in.
    bool answer(const QByteArray& body, int status = 200) {
        const bool waited = ports.http.answer(ThumbnailPath, body, status);
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        return waited;
    }
    qsizetype takeRequests() { return ports.http.takePaths().size(); }
};

} // namespace

class ThumbnailsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theAddressSaysWhatAndWho() {
        QCOMPARE(urlOf("a b&c.mkv").toEncoded(),
                 "http://tv.local:8080/api/thumbnail?name=a%20b%26c.mkv&clientId=mac-1&"
                 "authToken=a%2Bb");
    }

    void picturesTakeTheirShape() {
        for (const char* format : {"JPEG", "PNG", "BMP"}) {
            for (const QSize& size : {QSize(320, 180), QSize(90, 160), QSize(1, 1)}) {
                const QImage shown = decodedThumbnail(picture(format, Qt::red, size), Shape);
                QCOMPARE(shown.size(), Shape.size);
                const QColor middle = shown.pixelColor(60, 34);
                QVERIFY(middle.red() > 250 && middle.green() < 5 && middle.alpha() == 255);
                QCOMPARE(shown.pixelColor(0, 0).alpha(), 0); // beyond the rounded corner
                QCOMPARE(shown.pixelColor(60, 0).alpha(), 255);
            }
        }
    }

    void whatIsNoPictureShowsNothing_data() {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray jpeg = picture("JPEG");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("words") << QByteArray("<html>Not found</html>");
        QTest::newRow("drawing") << QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" "
                                               "width=\"9\" height=\"9\"></svg>");
        QTest::newRow("cut JPEG") << jpeg.first(jpeg.size() - 20);
        QTest::newRow("half JPEG") << jpeg.first(jpeg.size() / 2);
        QTest::newRow("cut PNG") << picture("PNG").first(100);
        QTest::newRow("huge") << hugePng();
        QTest::newRow("more pixels than needed") << picture("PNG", Qt::red, {4097, 4097});
    }
    void whatIsNoPictureShowsNothing() {
        QFETCH(QByteArray, bytes);
        QVERIFY(decodedThumbnail(bytes, Shape).isNull());
    }

    void aPictureIsFetchedOnceAndKept() {
        Fixture fixture;
        fixture.loader.load(urlOf("a.mkv"), Shape);
        fixture.loader.load(urlOf("a.mkv"), Shape); // it is loading
        QCOMPARE(fixture.takeRequests(), 1);
        const HttpRequest request = fixture.ports.http.latest(ThumbnailPath);
        QCOMPARE(request.timeouts.total, 20s);
        QVERIFY(request.headers.isEmpty());
        QVERIFY(fixture.answer(picture("JPEG")));
        QVERIFY(!fixture.loader.image().isNull());

        ThumbnailLoader other(fixture.store);
        other.load(urlOf("a.mkv"), Shape);
        QVERIFY(!other.image().isNull());
        other.load(urlOf("b.mkv"), Shape); // another address starts with nothing
        QVERIFY(other.image().isNull());
        QCOMPARE(fixture.takeRequests(), 1);
        other.load({}, Shape);
        QCOMPARE(fixture.ports.http.waiting(), 0u); // what is not wanted is not fetched
        QCOMPARE(fixture.ports.clock.pendingTimers(), 0u);
    }

    void whatWasUsedLongestAgoGoesFirst() {
        FakeWindowPorts ports;
        const qsizetype bytes = decodedThumbnail(picture("JPEG"), Shape).sizeInBytes();
        ThumbnailStore store(ports.http, ports.clock, 2 * bytes + 1);
        const auto fetch = [&](const char* name) {
            const Task<QImage> task = store.fetch(urlOf(name), Shape);
            ports.http.answer(ThumbnailPath, picture("JPEG"));
            QTRY_VERIFY(task.isDone());
        };
        fetch("a");
        fetch("b");
        QVERIFY(!store.cached(urlOf("a"), Shape).isNull());
        fetch("c");
        QVERIFY(store.cached(urlOf("b"), Shape).isNull());
        QVERIFY(!store.cached(urlOf("a"), Shape).isNull());
        QVERIFY(!store.cached(urlOf("c"), Shape).isNull());
        QVERIFY(store.cached(urlOf("c"), {{240, 136}, 16}).isNull()); // another display's
    }

    void aPictureThatIsNotReadyIsAskedForAgain() {
        Fixture fixture;
        fixture.loader.load(urlOf("a.mkv"), Shape);
        fixture.answer("not yet", 404);
        const auto retryAfter = [&](std::chrono::milliseconds delay) {
            fixture.takeRequests();
            fixture.ports.clock.advance(delay - 1ms);
            const bool isEarly = fixture.takeRequests() > 0;
            fixture.ports.clock.advance(1ms);
            return !isEarly && fixture.takeRequests() == 1;
        };
        QVERIFY(retryAfter(900ms));
        fixture.answer("no picture", 200);
        QVERIFY(retryAfter(1200ms));
        fixture.ports.http.answer(ThumbnailPath, HttpErrorCode::TimedOut);
        QVERIFY(retryAfter(1500ms));
        fixture.answer(picture("JPEG"));
        QVERIFY(!fixture.loader.image().isNull());
        fixture.ports.clock.advance(10s);
        QCOMPARE(fixture.takeRequests(), 0);
    }

    void afterAllRetriesItGivesUp() {
        Fixture fixture;
        fixture.loader.load(urlOf("a.mkv"), Shape);
        for (int n = 1; n <= MostThumbnailRetries; ++n) {
            QVERIFY(fixture.answer({}, 500));
            const auto expected = 600ms + std::min(n, 8) * 300ms;
            QCOMPARE(thumbnailRetryDelay(n), expected);
            fixture.ports.clock.advance(expected);
        }
        QVERIFY(fixture.answer({}, 500));
        QCOMPARE(fixture.takeRequests(), 1 + MostThumbnailRetries);
        fixture.ports.clock.advance(1h);
        QCOMPARE(fixture.takeRequests(), 0);
        fixture.loader.load(urlOf("a.mkv"), Shape); // the row appears again
        fixture.answer({}, 500);
        fixture.ports.clock.advance(1h);
        QCOMPARE(fixture.takeRequests(), 1);
    }

    void aFewAreFetchedAtOnceAndNoneForRowsThatAreGone() {
        Fixture fixture;
        std::vector<std::unique_ptr<ThumbnailLoader>> rows;
        for (int row = 0; row < 50; ++row) {
            rows.push_back(std::make_unique<ThumbnailLoader>(fixture.store));
            rows.back()->load(urlOf(QByteArray::number(row).constData()), Shape);
        }
        QCOMPARE(fixture.ports.http.waiting(), 4u);
        fixture.takeRequests();
        rows.erase(rows.begin(), rows.begin() + 45);
        QCoreApplication::processEvents();
        QCOMPARE(fixture.ports.http.waiting(), 4u);
        for (const char* name : {"name=45", "name=46", "name=47", "name=48"})
            QVERIFY(fixture.ports.http.sent.end() !=
                    std::ranges::find_if(fixture.ports.http.sent, [&](const HttpRequest& request) {
                        return request.url.contains(name);
                    }));
        QCOMPARE(fixture.takeRequests(), 4);
        rows.clear();
        QCoreApplication::processEvents();
        QCOMPARE(fixture.ports.http.waiting(), 0u);
    }
};

static const quiv::TestCase<ThumbnailsTest> registered;
#include "thumbnails_test.moc"

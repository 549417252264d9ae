#include "fake_window_ports.h"

#include "support/test_main.h"
#include "ui/thumbnails/thumbnail_loader.h"

#include <QColor>
#include <QTest>

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

const QByteArray Picture("\xff\xd8 a picture");

struct Fixture {
    FakeWindowPorts ports;
    ThumbnailStore store{ports.http, ports.pictures, ports.clock};
    ThumbnailLoader loader{store};

    // The TV's answer to the oldest request, taken in.
    bool answer(const QByteArray& body, int status = 200) {
        const bool waited = ports.http.answer(ThumbnailPath, body, status);
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
        Fixture fixture;
        fixture.loader.load(urlOf("a.mkv"), Shape);
        QVERIFY(fixture.answer(Picture));
        const QImage shown = fixture.loader.image();
        QCOMPARE(shown.size(), Shape.size);
        QCOMPARE(shown.pixelColor(60, 34), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(0, 0).alpha(), 0); // beyond the rounded corner
        QCOMPARE(shown.pixelColor(60, 0).alpha(), 255);
    }

    void aPictureIsFetchedOnceAndKept() {
        Fixture fixture;
        fixture.loader.load(urlOf("a.mkv"), Shape);
        fixture.loader.load(urlOf("a.mkv"), Shape); // it is loading
        QCOMPARE(fixture.takeRequests(), 1);
        const HttpRequest request = fixture.ports.http.latest(ThumbnailPath);
        QCOMPARE(request.timeouts.total, 20s);
        QCOMPARE(request.replyLimit, PictureDecoder::MostBytes);
        QVERIFY(request.headers.isEmpty());
        QVERIFY(fixture.answer(Picture));
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
        const qsizetype bytes = qsizetype{4} * Shape.size.width() * Shape.size.height();
        ThumbnailStore store(ports.http, ports.pictures, ports.clock, 2 * bytes + 1);
        const auto fetch = [&](const char* name) {
            const Task<FetchedThumbnail> task = store.fetch(urlOf(name), Shape);
            ports.http.answer(ThumbnailPath, Picture);
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
        fixture.answer(Picture);
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
        fixture.loader.load(urlOf("b.mkv"), Shape); // the row shows another
        QVERIFY(fixture.answer(Picture));
        fixture.takeRequests();
        fixture.loader.load(urlOf("a.mkv"), Shape); // it appears again
        fixture.answer({}, 500);
        fixture.ports.clock.advance(1h);
        QCOMPARE(fixture.takeRequests(), 1);
    }

    void nothingIsAskedAgainUntilTheRightsChange() {
        Fixture fixture;
        fixture.loader.load(urlOf("a.mkv"), Shape);
        fixture.answer("pair first", 401);
        fixture.loader.load(urlOf("b.mkv"), Shape);
        fixture.ports.clock.advance(1h);
        QCOMPARE(fixture.takeRequests(), 1);
        QUrl renewed = urlOf("a.mkv");
        renewed.setQuery(renewed.query().replace(u"a%2Bb"_s, u"new"_s));
        fixture.loader.load(renewed, Shape);
        QVERIFY(fixture.answer(Picture));
        QVERIFY(!fixture.loader.image().isNull());
    }

    void thePictureStaysUntilItIsThereInAnotherSize() {
        Fixture fixture;
        fixture.loader.load(urlOf("a.mkv"), Shape);
        QVERIFY(fixture.answer(Picture));
        const ThumbnailShape larger{{240, 136}, 16};
        fixture.loader.load(urlOf("a.mkv"), larger);
        QCOMPARE(fixture.loader.image().size(), Shape.size);
        fixture.answer("busy", 503);
        QCOMPARE(fixture.loader.image().size(), Shape.size);
        fixture.ports.clock.advance(900ms);
        QVERIFY(fixture.answer(Picture));
        QCOMPARE(fixture.loader.image().size(), larger.size);
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

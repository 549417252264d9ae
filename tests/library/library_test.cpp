#include "support/model_fixture.h"

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

using namespace quiv;

namespace {

const TVEndpoint Tv = tvNamed(QStringLiteral("TV"), QStringLiteral("tv.local"));
const TVEndpoint OtherTv = tvNamed(QStringLiteral("Other"), QStringLiteral("other.local"));

QByteArray listing(const QByteArray& names) {
    QByteArray files;
    for (const QByteArray& name : names.split(' '))
        files += (files.isEmpty() ? "" : ",") +
                 ("{\"name\":\"" + name + "\",\"kind\":\"VIDEO\",\"sizeBytes\":1}");
    return "{\"files\":[" + files + "],\"videos\":[]}";
}

struct LibraryFixture : ModelFixture {
    LibraryFixture() { model.selectDevice(Tv); }

    Task<> load(Library::Load how) { return model.library()->loadLibrary(how); }
    // Answers a load and waits until it is over.
    void answer(const Task<>& task, const QByteArray& body, int code = 200) {
        http.answer(FilesPath, body, code);
        QTRY_VERIFY(task.isDone());
    }
    QStringList names() {
        QStringList result;
        for (const LibraryRow& row : library().groupedFiles)
            result.append(row.group.id);
        return result;
    }
};

} // namespace

class LibraryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aVisibleLoadSaysWhatItDoes() {
        LibraryFixture fixture;
        fixture.model.status()->post(QString());
        const Task<> task = fixture.load(Library::Load::Visible);
        QCOMPARE(fixture.status(), QStringLiteral("Loading library from TV..."));
        QVERIFY(fixture.model.library()->isLibraryLoadInProgress());
        fixture.answer(task, listing("a.mkv b.mkv"));
        QCOMPARE(fixture.names(), QStringList({QStringLiteral("a.mkv"), QStringLiteral("b.mkv")}));
        QCOMPARE(fixture.status(), QStringLiteral("Loaded 2 media item(s)"));
        QVERIFY(!fixture.model.library()->isLibraryLoadInProgress());
    }

    void aFailedLoadKeepsTheRowsAndSaysWhy() {
        LibraryFixture fixture;
        fixture.answer(fixture.load(Library::Load::Quiet), listing("a.mkv"));
        fixture.answer(fixture.load(Library::Load::Visible), "{\"files\":[]}");
        QVERIFY(fixture.status().startsWith(QStringLiteral("Failed to fetch files: ")));
        QVERIFY(fixture.status().contains(QStringLiteral("\"videos\" is missing")));
        QVERIFY(!fixture.model.library()->isLibraryLoadInProgress());
        fixture.answer(fixture.load(Library::Load::Announced), "Disk error", 500);
        QCOMPARE(fixture.status(), QStringLiteral("Failed to fetch files: Disk error"));
        fixture.model.status()->post(QStringLiteral("before"));
        fixture.answer(fixture.load(Library::Load::Quiet), "Disk error", 500);
        QCOMPARE(fixture.status(), QStringLiteral("before"));
        QCOMPARE(fixture.names(), QStringList(QStringLiteral("a.mkv")));
    }

    void anUnchangedListingCostsNoRebuild() {
        LibraryFixture fixture;
        fixture.answer(fixture.load(Library::Load::Quiet), listing("a.mkv"));
        QSignalSpy changed(fixture.model.library(), &Library::contentChanged);
        fixture.answer(fixture.load(Library::Load::Visible), listing("a.mkv"));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(fixture.status(), QStringLiteral("Loaded 1 media item(s)"));
        fixture.answer(fixture.load(Library::Load::Quiet), listing("a.mkv b.mkv"));
        QCOMPARE(changed.count(), 1);
    }

    void anotherTvStartsEmptyAndLateRepliesAreDropped() {
        LibraryFixture fixture;
        fixture.answer(fixture.load(Library::Load::Quiet), listing("a.mkv"));
        const Task<> task = fixture.load(Library::Load::Visible);
        QSignalSpy reset(fixture.model.library(), &Library::contentReset);
        fixture.model.selectDevice(OtherTv);
        QCOMPARE(reset.count(), 1);
        QVERIFY(fixture.names().isEmpty());
        fixture.answer(task, listing("late.mkv"));
        QVERIFY(fixture.names().isEmpty());
        QVERIFY(fixture.model.library()->isLibraryLoadInProgress());
        QCOMPARE(fixture.status(), QStringLiteral("Loading library from Other..."));
        // What the first TV listed is no reason to take the same listing of this one as known.
        fixture.answer(fixture.load(Library::Load::Visible), listing("a.mkv"));
        QCOMPARE(fixture.names(), QStringList(QStringLiteral("a.mkv")));
    }

    void theTvMayChangeWhileAListingIsDecoded() {
        LibraryFixture fixture;
        const Task<> task = fixture.load(Library::Load::Quiet);
        fixture.http.answer(FilesPath, listing("late.mkv"));
        fixture.model.selectDevice(OtherTv);
        QTRY_VERIFY(task.isDone());
        QVERIFY(fixture.names().isEmpty());
    }

    void endingTheModelAtAnyAwaitIsHarmless() {
        auto fixture = std::make_unique<LibraryFixture>();
        Task<> task = fixture->load(Library::Load::Visible);
        task.cancel();
        task = fixture->load(Library::Load::Visible);
        fixture->http.answer(FilesPath, listing("a.mkv"));
        task.cancel(); // while it is decoded
        fixture.reset();
        QThreadPool::globalInstance()->waitForDone();
        ModelFixture::turn();
    }
};

QTEST_GUILESS_MAIN(LibraryTest)
#include "library_test.moc"

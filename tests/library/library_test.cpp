#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

QByteArray listing(const QByteArray& names) {
    QByteArray files;
    for (const QByteArray& name : names.split(' '))
        files += (files.isEmpty() ? "" : ",") +
                 ("{\"name\":\"" + name + "\",\"kind\":\"VIDEO\",\"sizeBytes\":1}");
    return "{\"files\":[" + files + "],\"videos\":[]}";
}

struct LibraryFixture : ModelFixture {
    LibraryFixture() { model.selectDevice(FirstTv); }

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
        QCOMPARE(fixture.status(), u"Loading library from TV..."_s);
        QVERIFY(fixture.model.library()->isLibraryLoadInProgress());
        fixture.answer(task, listing("a.mkv b.mkv"));
        QCOMPARE(fixture.names(), QStringList({u"a.mkv"_s, u"b.mkv"_s}));
        QCOMPARE(fixture.status(), u"Loaded 2 media item(s)"_s);
        QVERIFY(!fixture.model.library()->isLibraryLoadInProgress());
    }

    void aFailedLoadKeepsTheRowsAndSaysWhy() {
        LibraryFixture fixture;
        fixture.answer(fixture.load(Library::Load::Visible), QByteArray());
        QVERIFY(fixture.status().startsWith(u"Failed to fetch files: "_s));
        QVERIFY(!fixture.model.library()->failure().isEmpty());
        fixture.answer(fixture.load(Library::Load::Quiet), listing("a.mkv"));
        fixture.answer(fixture.load(Library::Load::Visible), "{\"files\":[]}");
        QVERIFY(fixture.status().startsWith(u"Failed to fetch files: "_s));
        QVERIFY(fixture.status().contains(u"\"videos\" is missing"_s));
        QVERIFY(!fixture.model.library()->isLibraryLoadInProgress());
        fixture.answer(fixture.load(Library::Load::Announced), "Disk error", 500);
        QCOMPARE(fixture.status(), u"Failed to fetch files: Disk error"_s);
        fixture.model.status()->post(u"before"_s);
        fixture.answer(fixture.load(Library::Load::Quiet), "Disk error", 500);
        QCOMPARE(fixture.status(), u"before"_s);
        QCOMPARE(fixture.names(), QStringList(u"a.mkv"_s));
        QVERIFY(fixture.model.library()->failure().isEmpty()); // there is a listing
        QCOMPARE(fixture.http.latest(FilesPath).replyLimit, ReplyLimit<FilesResponse>);
        const QByteArray tooMany =
            "{\"files\":[" + QByteArray("{},").repeated(2 * MostFiles) + "{}],\"videos\":[]}";
        fixture.answer(fixture.load(Library::Load::Quiet), tooMany + ' ');
        QVERIFY(fixture.names().isEmpty()); // which would be no longer true
        QVERIFY(fixture.model.library()->failure().contains(u"250,000"_s));

        fixture.model.selectDevice(tvNamed(u"Odd"_s, u"no host"_s));
        const Task<> impossible = fixture.load(Library::Load::Visible);
        QVERIFY(!fixture.model.library()->isLibraryLoadInProgress());
        QVERIFY(!fixture.model.library()->failure().isEmpty());
    }

    void anUnchangedListingCostsNoRebuild() {
        LibraryFixture fixture;
        fixture.answer(fixture.load(Library::Load::Quiet), listing("a.mkv"));
        QSignalSpy changed(fixture.model.library(), &Library::contentChanged);
        fixture.answer(fixture.load(Library::Load::Visible), listing("a.mkv"));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(fixture.status(), u"Loaded 1 media item(s)"_s);
        fixture.answer(fixture.load(Library::Load::Quiet), listing("a.mkv b.mkv"));
        QCOMPARE(changed.count(), 1);
    }

    void anotherTvStartsEmptyAndLateRepliesAreDropped() {
        LibraryFixture fixture;
        fixture.answer(fixture.load(Library::Load::Quiet),
                       R"({"files":[],"videos":[],"usbSetupHint":"Plug in a drive"})");
        const Task<> task = fixture.load(Library::Load::Visible);
        fixture.model.selectDevice(OtherTv);
        QCOMPARE(fixture.library(), LibraryContent()); // the storage figures too
        fixture.answer(task, listing("late.mkv"));
        QVERIFY(fixture.names().isEmpty());
        QVERIFY(fixture.model.library()->isLibraryLoadInProgress());
        QCOMPARE(fixture.status(), u"Loading library from Other..."_s);
        // What the first TV listed is no reason to take the same listing of this one as known.
        fixture.answer(fixture.load(Library::Load::Visible), listing("a.mkv"));
        QCOMPARE(fixture.names(), QStringList(u"a.mkv"_s));
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
        QVERIFY(awaitBackground(std::chrono::seconds(10)));
        ModelFixture::turn();
    }
};

static const quiv::TestCase<LibraryTest> registered;
#include "library_test.moc"

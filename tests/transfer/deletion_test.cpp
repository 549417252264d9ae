#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

const QString DeletePath = u"api/files/delete"_s;

RemoteFile file(const char* name) {
    return {QString::fromLatin1(name), u"OTHER"_s, 0, std::nullopt};
}

FileGroup movie() {
    FileGroup group;
    group.title = u"Movie"_s;
    group.video = file("m.mkv");
    group.subtitles = {file("m.en.srt"), file("m.de.srt")};
    group.others = {file("m.nfo")};
    return group;
}

} // namespace

class DeletionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filesGoOneByOneThenTheLibraryIsLoaded() {
        ModelFixture fixture;
        fixture.selectPaired(FirstTv);
        fixture.model.deletion()->deleteGroup(movie());
        QCOMPARE(fixture.status(), u"Deleting Movie..."_s);
        QCOMPARE(fixture.model.state().pendingFiles.size(), 4);
        for (const char* name : {"m.mkv", "m.en.srt", "m.de.srt", "m.nfo"}) {
            QCOMPARE(fixture.takeTargets(DeletePath),
                     QStringList(u"POST api/files/delete?name="_s + QString::fromLatin1(name)));
            fixture.http.answer(DeletePath, "whatever");
        }
        QVERIFY(fixture.http.answer(FilesPath, R"({"files":[],"videos":[]})"));
        QTRY_COMPARE(fixture.status(), u"Deleted Movie"_s);
        QVERIFY(fixture.model.state().pendingFiles.isEmpty());
    }

    void theFirstFailureEndsIt() {
        ModelFixture fixture;
        fixture.selectPaired(FirstTv);
        FileGroup group = movie();
        group.video.reset();
        fixture.model.deletion()->deleteGroups({group, movie()});
        QCOMPARE(fixture.status(), u"Deleting 2 titles..."_s);
        fixture.http.answer(DeletePath, QByteArray());
        fixture.http.answer(DeletePath, R"({"ok":false,"error":"In use."})", 409);
        QCOMPARE(fixture.status(), u"Delete failed: In use."_s);
        QCOMPARE(fixture.http.waiting(), 0u);
    }

    void onlyAPairedClientDeletes() {
        ModelFixture fixture;
        fixture.model.selectDevice(FirstTv);
        fixture.model.deletion()->deleteGroup(movie());
        fixture.http.answer(StatusPath, R"({"authorized":false})");
        QVERIFY(fixture.status().startsWith(u"Pairing required for delete."_s));
        QVERIFY(fixture.takeTargets(DeletePath).isEmpty());
    }

    void aDeletionEndsOnTheTvItBeganOn() {
        ModelFixture fixture;
        fixture.selectPaired(FirstTv);
        fixture.model.deletion()->deleteGroup(movie());
        fixture.model.selectDevice(OtherTv);
        for (int file = 0; file < 4; ++file) {
            QVERIFY(fixture.http.sent.last().url.startsWith("http://tv.local:8080/"));
            fixture.http.answer(DeletePath, QByteArray());
        }
        QCOMPARE(fixture.status(), u"Deleted Movie"_s);
    }
};

static const quiv::TestCase<DeletionTest> registered;
#include "deletion_test.moc"

#include "platform/open_file.h"
#include "support/model_fixture.h"
#include "support/test_main.h"
#include "transfer/download_names.h"
#include "transfer/download_place.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

const QString DownloadPath = u"api/files/download"_s;

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

// Downloads from a paired TV into a folder of the test.
struct Fixture : ModelFixture {
    Fixture() {
        dialogs.desktop.isOffered = true;
        selectPaired(FirstTv);
    }

    Downloads& downloads() { return *model.downloads(); }
    QString path(const QString& name = text("a.mkv")) const { return folder.filePath(name); }
    void choose(const QString& destination) {
        QVERIFY(QTest::qWaitFor([this] { return dialogs.desktop.isAsked; })); // the disk is first
        dialogs.desktop.answer(QList<QUrl>{QUrl::fromLocalFile(destination)});
        turn();
    }
    void begin(const QString& destination) {
        downloads().downloadFile({text("a.mkv"), text("VIDEO"), 1000, {}});
        turn();
        choose(destination);
    }
    // The whole file arrives.
    void arrive(const QByteArray& bytes) {
        const int file = http.latest(DownloadPath).replyFile->descriptor();
        QCOMPARE(::pwrite(file, bytes.constData(), std::size_t(bytes.size()), 0), bytes.size());
        http.answer(DownloadPath, QByteArray());
        turn();
    }
    void progress(std::int64_t received, std::int64_t total) {
        http.latest(DownloadPath).onProgress({0, 0, received, total});
    }
    // All of them, without what the names hold.
    QStringList files() const {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    static QByteArray contentOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
};

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

} // namespace

class DownloadsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileArrivesWhereTheUserWantsIt() {
        Fixture fixture;
        fixture.downloads().downloadFile({text("sub/ .a b.mkv"), text("VIDEO"), 1000, {}});
        ModelFixture::turn();
        FileDialogRequest expected{FileDialogRequest::Purpose::Save, text("Download from TV"),
                                   text("Download"), text("a b.mkv")};
        expected.folder = QDir::homePath(); // there is nothing but home here
        QTRY_COMPARE(fixture.dialogs.desktop.requests, QList<FileDialogRequest>{expected});
        QVERIFY(!fixture.downloads().state().isDownloading);
        fixture.choose(fixture.path(text("new/folder/b.mkv")));
        QCOMPARE(fixture.downloads().state(), (DownloadState{true, 0, text("sub/ .a b.mkv"),
                                                             endpointKey(FirstTv), FirstTv.name}));
        QCOMPARE(fixture.status(), text("Downloading sub/ .a b.mkv... 0%"));
        const HttpRequest request = fixture.http.latest(DownloadPath);
        QCOMPARE(request.method, "GET");
        QVERIFY(request.url.endsWith("/api/files/download?name=sub%2F%20.a%20b.mkv"));
        QVERIFY(!request.timeouts.total);   // as long as bytes move
        QVERIFY(fixture.files().isEmpty()); // nor is there a folder
        QVERIFY(!QFile::exists(fixture.path(text("new"))));

        fixture.progress(5, -1); // unknown
        QCOMPARE(fixture.status(), text("Downloading sub/ .a b.mkv... 0%"));
        fixture.progress(999, 1000);
        QCOMPARE(fixture.status(), text("Downloading sub/ .a b.mkv... 99%"));
        QCOMPARE(fixture.downloads().state().currentDownloadProgress, 0.999);
        fixture.progress(1300, 1000);
        QCOMPARE(fixture.downloads().state().currentDownloadProgress, 1.0);
        fixture.arrive("all of it");
        QCOMPARE(fixture.status(), text("Downloaded sub/ .a b.mkv"));
        QCOMPARE(fixture.downloads().state(), DownloadState());
        const QString stored = fixture.path(text("new/folder/b.mkv"));
        QCOMPARE(Fixture::contentOf(stored), "all of it");
        QCOMPARE(QDir(fixture.path(text("new/folder"))).entryList(QDir::Files | QDir::Hidden),
                 QStringList(text("b.mkv")));
        QVERIFY(QFile::permissions(stored) & QFile::ReadGroup);
    }

    void aDownloadIsCancelledWhicheverTvIsShown() {
        Fixture fixture;
        fixture.begin(fixture.path());
        fixture.model.selectDevice(OtherTv);
        fixture.downloads().cancelDownload();
        QCOMPARE(fixture.status(), text("Canceling download..."));
        ModelFixture::turn();
        QCOMPARE(fixture.downloads().state(), DownloadState());
        QCOMPARE(fixture.status(), text("Download canceled"));
        QVERIFY(fixture.files().isEmpty());
    }

    void severalGoToOneFolderOneAfterTheOther() {
        Fixture fixture;
        write(fixture.path(), "mine");
        fixture.downloads().downloadFiles({{text("a.mkv"), text("VIDEO"), 1000, {}},
                                           {text("b.mkv"), text("VIDEO"), 1000, {}},
                                           {text("/x/a.mkv"), text("VIDEO"), 1000, {}}});
        ModelFixture::turn();
        QCOMPARE(fixture.dialogs.desktop.requests.constLast().purpose,
                 FileDialogRequest::Purpose::Folder);
        fixture.choose(fixture.folder.path());
        QCOMPARE(fixture.status(), text("Downloading a.mkv (1 of 3)... 0%"));
        fixture.arrive("one");
        fixture.http.answer(DownloadPath, R"({})", 404);
        ModelFixture::turn();
        QCOMPARE(fixture.status(), text("Downloading /x/a.mkv (3 of 3)... 0%"));
        fixture.arrive("three");
        QCOMPARE(fixture.status(), text("Downloaded 2 of 3 files. Download failed for b.mkv: "
                                        "Download failed (HTTP 404)."));
        QCOMPARE(Fixture::contentOf(fixture.path()), "mine");
        QCOMPARE(Fixture::contentOf(fixture.path(text("a (1).mkv"))), "one");
        QCOMPARE(Fixture::contentOf(fixture.path(text("a (2).mkv"))), "three");

        fixture.downloads().downloadFiles({{}, {}});
        ModelFixture::turn();
        fixture.choose(fixture.folder.path());
        fixture.downloads().cancelDownload();
        ModelFixture::turn();
        QCOMPARE(fixture.downloads().state(), DownloadState()); // nor does the other begin
        QCOMPARE(fixture.files().size(), 3);
    }

    void oneAtATime() {
        Fixture fixture;
        fixture.model.downloads()->cancelDownload(); // nothing to cancel
        QVERIFY(!fixture.status().startsWith(text("Cancel")));
        fixture.begin(fixture.path());
        fixture.downloads().downloadFile({text("b.mkv"), text("VIDEO"), 1, {}});
        ModelFixture::turn();
        QCOMPARE(fixture.status(), text("Another download is already in progress"));
        QCOMPARE(fixture.dialogs.desktop.requests.size(), 1);
    }

    void withoutTvPairingOrPlaceNothingBegins() {
        ModelFixture alone;
        alone.model.downloads()->downloadFile({text("a.mkv"), text("VIDEO"), 1, {}});
        QCOMPARE(alone.status(), text("Select a TV first"));

        Fixture fixture;
        fixture.downloads().downloadFile({text("a.mkv"), text("VIDEO"), 1, {}});
        ModelFixture::turn();
        fixture.dialogs.desktop.answer(QList<QUrl>{QUrl(text("smb://elsewhere/a.mkv"))});
        QCOMPARE(fixture.status(), text("Not downloaded, because that place is not on this "
                                        "computer. Choose a folder of this computer."));
        fixture.downloads().downloadFile({text("a.mkv"), text("VIDEO"), 1, {}});
        ModelFixture::turn();
        fixture.dialogs.desktop.answer(QList<QUrl>{QUrl(text("file:"))});
        QCOMPARE(fixture.status(), text("Download failed for a.mkv: Download failed: missing "
                                        "destination path"));
        fixture.downloads().downloadFile({text("a.mkv"), text("VIDEO"), 1, {}});
        ModelFixture::turn();
        fixture.dialogs.desktop.answer(QList<QUrl>());
        QCOMPARE(fixture.status(), text("Download canceled"));
        QCOMPARE(fixture.files(), QStringList());
        QVERIFY(fixture.takeTargets(DownloadPath).isEmpty());
    }

    void failuresLeaveEverythingAsItWas_data() {
        QTest::addColumn<int>("status"); // or an error code
        QTest::addColumn<QString>("message");
        const QString failed = text("Download failed for a.mkv: ");
        QTest::newRow("not there") << 404 << failed + text("Download failed (HTTP 404).");
        QTest::newRow("unpaired")
            << 401 << failed + text("Pairing required: enter the 3-digit code shown on TV.");
        QTest::newRow("locked out")
            << 429 << failed + text("Too many auth attempts. Wait before trying again.");
        QTest::newRow("no HTTP") << -1011
                                 << failed + text("Download failed: invalid server "
                                                  "response");
        QTest::newRow("cut off") << -1005
                                 << failed + HttpError(HttpErrorCode::ConnectionLost).description();
        QTest::newRow("cancelled") << -999 << text("Download canceled");
    }
    void failuresLeaveEverythingAsItWas() {
        QFETCH(int, status);
        QFETCH(QString, message);
        Fixture fixture;
        write(fixture.path(), "before");
        fixture.begin(fixture.path());
        if (status == -999)
            fixture.downloads().cancelDownload();
        else if (status < 0)
            fixture.http.answer(DownloadPath, HttpErrorCode(status));
        else
            fixture.http.answer(DownloadPath, R"({"error":"not shown"})", status);
        if (status == -999) {
            QCOMPARE(fixture.status(), text("Canceling download..."));
            fixture.progress(1, 2); // comes late
            QCOMPARE(fixture.status(), text("Canceling download..."));
        }
        QTRY_COMPARE(fixture.status(), message);
        QCOMPARE(fixture.downloads().state(), DownloadState());
        QCOMPARE(Fixture::contentOf(fixture.path()), "before");
        QCOMPARE(fixture.files(), QStringList(text("a.mkv")));
        QCOMPARE(fixture.pairing().requiresControlPairing, status == 401 || status == 429);
    }

    void onlyAFileGivesWay() {
        Fixture fixture;
        write(fixture.path(), "before");
        const auto onlyMine =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QVERIFY(QFile::setPermissions(fixture.path(), onlyMine));
        const QString link = fixture.path(text("link.mkv"));
        QVERIFY(QFile::link(fixture.path(), link));
        fixture.begin(link);
        fixture.arrive("after");
        QVERIFY(QFileInfo(link).isSymbolicLink());
        QCOMPARE(Fixture::contentOf(fixture.path()), "after");
        QCOMPARE(QFile::permissions(fixture.path()), onlyMine);

        const QString taken = fixture.path(text("taken"));
        QVERIFY(QDir().mkpath(taken));
        fixture.begin(taken);
        QVERIFY(fixture.status().contains(text("\"taken\" is no file that could be replaced")));
        fixture.begin(fixture.path(text("a.mkv/below.mkv")));
        QVERIFY(fixture.status().contains(text("could not be created")));
        QCOMPARE(fixture.takeTargets(DownloadPath).size(), 1);
        QCOMPARE(fixture.files(), QStringList({text("a.mkv"), text("link.mkv")}));
    }

    void aFolderThatGoesMeanwhileIsSaid() {
        Fixture fixture;
        QDir folder(fixture.folder.path());
        QVERIFY(folder.mkdir(text("gone")) && folder.mkdir(text("renamed")));
        fixture.begin(fixture.path(text("gone/a.mkv")));
        QVERIFY(folder.rmdir(text("gone")));
        fixture.arrive("bytes");
        QVERIFY2(fixture.status().contains(text("is no longer there")),
                 qPrintable(fixture.status()));

        fixture.begin(fixture.path(text("renamed/a.mkv")));
        QVERIFY(folder.rename(text("renamed"), text("other")));
        fixture.arrive("bytes");
        QCOMPARE(Fixture::contentOf(fixture.path(text("other/a.mkv"))), "bytes");
    }

    void quittingAtAnyPointLeavesNothing() {
        for (int point = 0; point < 3; ++point) {
            QTemporaryDir folder;
            {
                Fixture fixture;
                const QString path = folder.filePath(text("a.mkv"));
                if (point == 0)
                    fixture.downloads().downloadFile({text("a.mkv"), text("VIDEO"), 1, {}});
                else
                    fixture.begin(path);
                if (point == 2)
                    fixture.downloads().cancelDownload();
            }
            ModelFixture::turn();
            QVERIFY(QDir(folder.path())
                        .isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
        }
    }

    void theTvsOwnWordsComeFirst() {
        QCOMPARE(downloadErrorMessage(404, R"({"error":" Gone "})"), text("Gone"));
        QCOMPARE(downloadErrorMessage(404, " plain\n"), text("plain"));
        QCOMPARE(downloadErrorMessage(401, "\xff"),
                 text("Pairing required: enter the 3-digit code shown on TV."));
        QCOMPARE(downloadErrorMessage(500, std::nullopt), text("Download failed (HTTP 500)."));
    }

    void proposedNamesStayInTheirFolder_data() {
        QTest::addColumn<QString>("remote");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("plain") << text("My Film (1).mkv") << text("My Film (1).mkv");
        QTest::newRow("path") << text("/etc/../x.mkv") << text("x.mkv");
        QTest::newRow("other path") << text("C:\\Windows\\x.mkv") << text("x.mkv");
        QTest::newRow("hidden") << text(" ..bashrc") << text("bashrc");
        QTest::newRow("parent") << text("..") << text("Download");
        QTest::newRow("folder") << text("a/") << text("Download");
        QTest::newRow("ends") << text("x.mkv. . ") << text("x.mkv");
        QTest::newRow("controls") << u"a\n\u0000b\u202Egpj.mkv"_s << text("abgpj.mkv");
        QTest::newRow("long") << QString(300, u'n') + text(".mkv")
                              << QString(251, u'n') + text(".mkv");
        QTest::newRow("long, four bytes each") << u"\U0001F3AC"_s.repeated(100) + text(".mkv")
                                               << u"\U0001F3AC"_s.repeated(62) + text(".mkv");
        QTest::newRow("no extension to keep")
            << text("a.") + QString(300, u'n') << text("a.") + QString(253, u'n');
    }
    void proposedNamesStayInTheirFolder() {
        QFETCH(QString, remote);
        QFETCH(QString, proposed);
        QCOMPARE(proposedDownloadName(remote), proposed);
        QVERIFY(numberedDownloadName(proposed, 12).toUtf8().size() <= 255);
        QVERIFY(numberedDownloadName(proposed, 12).contains(text(" (12)")));
    }
};

static const quiv::TestCase<DownloadsTest> registered;
#include "downloads_test.moc"

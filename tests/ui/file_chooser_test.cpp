#include "support/test_main.h"
#include "ui/presenters/file_chooser_presenter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

// Choosing files in the window, from a home with folders and files.
class FileChooserTest : public QObject {
    Q_OBJECT

private:
    using Purpose = FileDialogRequest::Purpose;

    FileDialogRequest request(Purpose purpose) const {
        FileDialogRequest made(purpose, u"Files"_s, u"Take"_s, u"Proposed.mkv"_s);
        made.folder = m_home.filePath(u"Videos"_s);
        return made;
    }
    Task<> ask(Purpose purpose) {
        const FileDialogAnswer answer = co_await m_chooser.ask(request(purpose));
        m_files = answer.value();
    }
    QStringList chosenNames() const {
        QStringList names;
        for (const QUrl& file : m_files)
            names.append(file.fileName());
        return names;
    }
    QString rowName(int row) {
        return m_chooser.rows()->index(row, 0).data(Qt::UserRole).toString();
    }

    QTemporaryDir m_home;
    FileChooserPresenter m_chooser;
    QList<QUrl> m_files;

private Q_SLOTS:
    void initTestCase() {
        qputenv("HOME", m_home.path().toUtf8());
        const QDir folder(m_home.path());
        folder.mkpath(u"Videos/Old"_s);
        for (const char* name : {"Videos/b 10.mkv", "Videos/a 10.mkv", "Videos/Old/c.mkv"})
            QFile(folder.filePath(QString::fromLatin1(name))).open(QIODevice::WriteOnly);
    }

    void filesAreChosenFromFolders() {
        Task<> asking = ask(Purpose::OpenSeveral);
        QTRY_COMPARE(rowName(0), u"Old"_s);
        QCOMPARE(rowName(1), u"a 10.mkv"_s);
        m_chooser.accept(); // nothing is chosen yet
        QVERIFY(m_chooser.isShown());
        for (const QString& name : {u"b 10.mkv"_s, u"a 10.mkv"_s, u"not there"_s})
            m_chooser.select(name);
        m_chooser.accept();
        QTRY_COMPARE(chosenNames(), QStringList({u"a 10.mkv"_s, u"b 10.mkv"_s}));
        QVERIFY(!m_chooser.isShown());

        asking = ask(Purpose::OpenOne);
        QTRY_COMPARE(m_chooser.rows()->rowCount(), 3);
        m_chooser.select(u"a 10.mkv"_s);
        m_chooser.select(u"Old"_s); // what was chosen stays behind
        QVERIFY(!m_chooser.canAccept());
        QTRY_COMPARE(rowName(0), u"c.mkv"_s);
        m_chooser.goUp();
        QTRY_COMPARE(m_chooser.rows()->rowCount(), 3);
        m_chooser.select(u"a 10.mkv"_s);
        m_chooser.activate(u"b 10.mkv"_s);
        QTRY_COMPARE(chosenNames(), QStringList(u"b 10.mkv"_s));

        asking = ask(Purpose::OpenOne);
        asking.cancel(); // nobody waits for it any more
        QVERIFY(!m_chooser.isShown());
    }

    void aPlaceToSaveToIsChosen() {
        Task<> asking = ask(Purpose::Save);
        QTRY_COMPARE(m_chooser.rows()->rowCount(), 3);
        QCOMPARE(m_chooser.name(), u"Proposed.mkv"_s);
        for (const char* bad : {"", "  ", "..", "../x", "a/b"}) {
            m_chooser.setName(QString::fromLatin1(bad));
            QVERIFY2(!m_chooser.canAccept(), bad);
        }
        m_chooser.setName(u"Old"_s);
        for (int tries = 0; tries < 2; ++tries) {
            m_chooser.accept();
            QTRY_VERIFY(m_chooser.note().contains(u"is the name of a folder"_s));
        }
        m_chooser.select(u"a 10.mkv"_s);
        m_chooser.accept();
        QTRY_COMPARE(m_chooser.acceptLabel(), u"Replace"_s);
        QVERIFY(m_chooser.note().contains(u"a 10.mkv"_s));
        m_chooser.setName(u"b 10.mkv"_s); // asks anew
        QCOMPARE(m_chooser.acceptLabel(), u"Take"_s);
        m_chooser.accept();
        QTRY_COMPARE(m_chooser.acceptLabel(), u"Replace"_s);
        m_chooser.accept();
        QTRY_COMPARE(chosenNames(), QStringList(u"b 10.mkv"_s));

        asking = ask(Purpose::Save);
        QTRY_COMPARE(m_chooser.rows()->rowCount(), 3);
        m_chooser.createFolder(u"Old/x/y"_s);
        QTRY_VERIFY(!m_chooser.note().isEmpty());
        m_chooser.createFolder(u"New"_s);
        QTRY_VERIFY(m_chooser.folder().endsWith(u"New"_s));
        m_chooser.accept();
        QTRY_COMPARE(chosenNames(), QStringList(u"Proposed.mkv"_s));
        QVERIFY(m_files.constFirst().path().endsWith(u"Videos/New/Proposed.mkv"_s));

        asking = ask(Purpose::Save);
        m_chooser.cancel();
        QTRY_VERIFY(m_files.isEmpty());
    }

    void aTypedPathIsAFolderOrAFile() {
        Task<> asking = ask(Purpose::OpenSeveral);
        QTRY_COMPARE(m_chooser.rows()->rowCount(), 4);
        m_chooser.goTo(u"nowhere"_s);
        QTRY_VERIFY(m_chooser.note().startsWith(u"There is no folder"_s));
        m_chooser.goTo(u" ~/Videos/Old/ "_s);
        QTRY_COMPARE(rowName(0), u"c.mkv"_s);
        m_chooser.goTo(u"../a 10.mkv"_s);
        QTRY_COMPARE(chosenNames(), QStringList(u"a 10.mkv"_s));

        asking = ask(Purpose::Save);
        m_chooser.goTo(u"Old/new.mkv"_s);
        QTRY_COMPARE(chosenNames(), QStringList(u"new.mkv"_s));
        QVERIFY(m_files.constFirst().path().endsWith(u"Videos/Old/new.mkv"_s));
    }

    void filesAreFilteredAndCountedAsPeopleDo() {
        for (const char* name : {"Videos/Old/d 9.SRT", "Videos/Old/d 10.srt"})
            QFile(m_home.filePath(QString::fromLatin1(name))).open(QIODevice::WriteOnly);
        FileDialogRequest filtered = request(Purpose::OpenSeveral);
        filtered.folder += u"/Old"_s;
        filtered.filters = {{u"Subtitles"_s, {u"srt"_s}}, {u"Music"_s, {u"ogg"_s}}, {u"All"_s, {}}};
        const Task<FileDialogAnswer> asking = m_chooser.ask(filtered);
        QTRY_COMPARE(m_chooser.rows()->rowCount(), 2);
        QCOMPARE(rowName(0), u"d 9.SRT"_s);
        m_chooser.select(u"d 9.SRT"_s);
        m_chooser.chooseFilter(1);
        QCOMPARE(m_chooser.rows()->rowCount(), 0);
        QVERIFY(!m_chooser.canAccept()); // what is not seen is not chosen
        m_chooser.chooseFilter(2);
        QCOMPARE(m_chooser.rows()->rowCount(), 3);
    }
};

static const quiv::TestCase<FileChooserTest> registered;
#include "file_chooser_test.moc"

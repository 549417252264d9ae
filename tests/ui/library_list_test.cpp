#include "sample_state.h"
#include "support/test_main.h"
#include "ui/presenters/keyboard_commands.h"
#include "ui/presenters/row_selection.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

using InList = KeyboardCommand::InList;
using InWindow = KeyboardCommand::InWindow;

QStringList selectedNames(const RowSelection& selection) {
    QStringList names = selection.keys.values();
    names.sort();
    return names;
}

} // namespace

// What the library's list makes of keys and picks.
class LibraryListTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsAreSelectedAsElsewhere() {
        QList<LibraryRow> rows;
        for (const QChar name : u"abcde"_s)
            rows.append(sampleRow(name, name));
        const auto pick = [&rows](const RowSelection& before, const QString& key,
                                  Qt::KeyboardModifiers modifiers) {
            return selectionAfterPick(before, rows, key, modifiers);
        };
        RowSelection selection = pick({}, u"b"_s, Qt::NoModifier);
        selection = pick(selection, u"d"_s, Qt::ControlModifier);
        QCOMPARE(selectedNames(selection), QStringList({u"b"_s, u"d"_s}));
        selection = pick(selection, u"a"_s, Qt::ShiftModifier | Qt::ControlModifier);
        QCOMPARE(selectedNames(selection), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
        selection = pick(selection, u"e"_s, Qt::ShiftModifier); // from "d" as before
        QCOMPARE(selectedNames(selection), QStringList({u"d"_s, u"e"_s}));

        const auto titles = [&](const QString& key) {
            QStringList acted;
            for (const LibraryRow& row : rowsActedOn(selection, rows, key))
                acted.append(row.group.title);
            return acted;
        };
        QCOMPARE(titles(u"e"_s), QStringList({u"d"_s, u"e"_s}));
        QCOMPARE(titles(u"a"_s), QStringList(u"a"_s)); // not one of them
        QCOMPARE(titles(u"gone"_s), QStringList());
        rows.remove(3);
        selection = selectionAmong(selection, rows);
        QCOMPARE(selectedNames(selection), QStringList(u"e"_s));
        selection = pick(selection, u"c"_s, Qt::ShiftModifier); // the anchor has gone
        QCOMPARE(selectedNames(selection), QStringList(u"c"_s));
        selection = pick(selection, u"c"_s, Qt::ControlModifier);
        QCOMPARE(selectedNames(selection), QStringList());
        QCOMPARE(selectionOfAll(rows).keys.size(), 4);
    }

    void typingFindsTitles() {
        const QList<LibraryRow> rows{sampleRow(u"1"_s, u"Glacier"_s), sampleRow(u"2"_s, u"Night"_s),
                                     sampleRow(u"3"_s, u"glass"_s)};
        QCOMPARE(rowBeginningWith(rows, u"g"_s, 0), 2); // the next one
        QCOMPARE(rowBeginningWith(rows, u"g"_s, 2), 0);
        QCOMPARE(rowBeginningWith(rows, u"gl"_s, 2), 2);
        QCOMPARE(rowBeginningWith(rows, u"glac"_s, 2), 0);
        QCOMPARE(rowBeginningWith(rows, u"x"_s, 2), -1);
        QCOMPARE(rowBeginningWith({}, u"x"_s, -1), -1);
    }

    void keysMean_data() {
        QTest::addColumn<QKeyCombination>("keys");
        QTest::addColumn<QString>("text");
        QTest::addColumn<InList>("inList");
        QTest::addColumn<InList>("whileTyping");
        QTest::addColumn<InWindow>("inWindow");
        const auto row = [](const char* name, QKeyCombination keys, const char* text, InList inList,
                            InList whileTyping, InWindow inWindow) {
            QTest::newRow(name) << keys << QString::fromLatin1(text) << inList << whileTyping
                                << inWindow;
        };
        row("letter", Qt::Key_G, "g", InList::Type, InList::Type, InWindow::None);
        row("blank", Qt::Key_Space, " ", InList::None, InList::Type, InWindow::Pause);
        row("slash", Qt::Key_Slash, "/", InList::None, InList::Type, InWindow::Search);
        row("slash with Shift", Qt::SHIFT | Qt::Key_Slash, "/", InList::None, InList::Type,
            InWindow::Search);
        row("Ctrl+G", Qt::CTRL | Qt::Key_G, "\x07", InList::None, InList::None, InWindow::None);
        row("Alt+G", Qt::ALT | Qt::Key_G, "g", InList::None, InList::None, InWindow::None);
        row("select on", Qt::SHIFT | Qt::Key_Down, "", InList::Go, InList::Go, InWindow::None);
        row("go on", Qt::CTRL | Qt::Key_Down, "", InList::GoOnly, InList::GoOnly, InWindow::None);
        row("keypad", Qt::KeypadModifier | Qt::Key_Enter, "\r", InList::Primary, InList::Primary,
            InWindow::None);
        row("menu", Qt::SHIFT | Qt::Key_F10, "", InList::OpenMenu, InList::OpenMenu,
            InWindow::None);
        row("delete", Qt::Key_Delete, "\x7f", InList::Delete, InList::Delete, InWindow::None);
        row("cut", Qt::SHIFT | Qt::Key_Delete, "\x7f", InList::None, InList::None, InWindow::None);
        row("help", Qt::CTRL | Qt::SHIFT | Qt::Key_Question, "?", InList::None, InList::None,
            InWindow::ShowShortcuts);
        row("find", Qt::CTRL | Qt::Key_F, "\x06", InList::None, InList::None, InWindow::Search);
        row("not find", Qt::CTRL | Qt::SHIFT | Qt::Key_F, "", InList::None, InList::None,
            InWindow::None);
    }
    void keysMean() {
        QFETCH(QKeyCombination, keys);
        QFETCH(QString, text);
        QTEST(listCommand(keys, text, false), "inList");
        QTEST(listCommand(keys, text, true), "whileTyping");
        QTEST(windowCommand(keys), "inWindow");
    }
};

static const quiv::TestCase<LibraryListTest> registered;
#include "library_list_test.moc"

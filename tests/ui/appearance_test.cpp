#include "support/memory_settings.h"
#include "support/test_main.h"
#include "ui/window/appearance.h"
#include "ui/window/contrast.h"
#include "ui/window/interface_font.h"
#include "ui/window/plain_font.h"
#include "ui/window/window_place.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

struct Pair {
    const char* name;
    QColor colour;
    QColor ground;
};

QList<QColor> plainGrounds(const Palette& c) {
    return {c.window, c.sidebar, c.surface, over(c.rowHovered, c.window),
            over(c.rowHovered, c.surface)};
}

// Every text with everything that it is written on.
QList<Pair> textPairs(const Palette& c) {
    QList<Pair> pairs{{"label of a prominent button", c.accentInk, c.accent},
                      {"its label under the pointer", c.accentInk, c.accentHovered},
                      {"its label while pressed", c.accentInk, c.accentPressed},
                      {"label under the pointer", c.primaryText, c.surfaceHovered},
                      {"label while pressed", c.primaryText, c.surfacePressed},
                      {"deletion under the pointer", c.destructive, c.surfaceHovered},
                      {"pairing", c.stripLabel, over(c.stripFill, c.window)},
                      {"validity of the code", c.secondaryText, over(c.stripFill, c.window)},
                      {"green badge", c.greenText, c.greenFill},
                      {"badge of a USB storage", c.greenText, c.usbFill},
                      {"amber badge", c.amberText, c.amberFill}};
    for (const QColor& ground : plainGrounds(c)) {
        const QColor tinted = over(c.accentFill, ground);
        pairs << Pair{"text", c.primaryText, ground} << Pair{"detail", c.secondaryText, ground}
              << Pair{"hint", c.tertiaryText, ground} << Pair{"link", c.accent, ground}
              << Pair{"deletion", c.destructive, ground} << Pair{"not ready", c.notReady, ground}
              << Pair{"accent on its tint", c.accentText, tinted}
              << Pair{"text on the tint", c.primaryText, tinted}
              << Pair{"neutral badge", c.primaryText, over(c.neutralFill, ground)}
              << Pair{"badge of the TV's storage", c.primaryText, over(c.internalFill, ground)};
    }
    return pairs;
}

// What is no text but has to be seen.
QList<Pair> shapePairs(const Palette& c) {
    QList<Pair> pairs{{"progress on its track", c.accent, over(c.track, c.surface)},
                      {"selected TV", c.selectedTv, over(c.accentFill, c.surface)}};
    for (const QColor& ground : {c.window, c.surface, c.sidebar})
        pairs << Pair{"focus ring", c.accent, ground}
              << Pair{"field", over(c.fieldBorder, ground), ground}
              << Pair{"scroll bar", over(c.scrollThumb, ground), ground};
    return pairs;
}

// What changes under the pointer, and from what.
QList<Pair> hoverPairs(const Palette& c) {
    return {{"row", over(c.rowHovered, c.window), c.window},
            {"row on a card", over(c.rowHovered, c.surface), c.surface},
            {"button", c.surfaceHovered, c.surface},
            {"pressed button", c.surfacePressed, c.surfaceHovered},
            {"prominent button", c.accentHovered, c.accent},
            {"pressed prominent button", c.accentPressed, c.accentHovered},
            {"round button", over(c.accentFillHovered, c.window), over(c.accentFill, c.window)}};
}

void check(const QList<Pair>& pairs, double least) {
    for (const Pair& pair : pairs) {
        const double ratio = contrastRatio(pair.colour, pair.ground);
        QVERIFY2(ratio >= least,
                 qPrintable(u"%1: %2 on %3 is %4, not %5"_s.arg(
                     QString::fromLatin1(pair.name), pair.colour.name(), pair.ground.name(),
                     QString::number(ratio), QString::number(least))));
    }
}

} // namespace

// What the views take over from the desktop.
class AppearanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyPairOfColoursCanBeSeen_data() {
        QTest::addColumn<bool>("isDark");
        QTest::addColumn<bool>("isHighContrast");
        QTest::addColumn<QColor>("accent");
        for (const bool isDark : {false, true}) {
            for (const bool isHighContrast : {false, true}) {
                for (const char* accent :
                     {"", "#ffffff", "#000000", "#ffd400", "#3a944a", "#ed5b00"})
                    QTest::addRow("%d %d %s", isDark, isHighContrast, accent)
                        << isDark << isHighContrast << QColor(QString::fromLatin1(accent));
            }
        }
    }
    void everyPairOfColoursCanBeSeen() {
        QFETCH(bool, isDark);
        QFETCH(bool, isHighContrast);
        QFETCH(QColor, accent);
        const Palette colours = paletteOf(
            {isDark, isHighContrast, accent.isValid() ? std::optional(accent) : std::nullopt});
        check(textPairs(colours), isHighContrast ? 7 : 4.5);
        check(shapePairs(colours), 3);
        check(hoverPairs(colours), 1.15);
    }

    void theFontOfTheDesktopIsFollowed() {
        const QFont unchosen(u"Sans Serif"_s, 9);
        QCOMPARE(interfaceFont({}, unchosen, 96), (InterfaceFont{{}, 13}));
        QCOMPARE(interfaceFont({}, QFont(u"Sans"_s, 18), 96), (InterfaceFont{{}, 24}));
        QCOMPARE(interfaceFont({}, QFont(u"Hack"_s, 9), 144), (InterfaceFont{u"Hack"_s, 18}));
        DesktopLook look;
        look.fontFamily = u"Cantarell"_s;
        look.fontPoints = 12;
        look.textScale = 1.5;
        QCOMPARE(interfaceFont(look, unchosen, 96), (InterfaceFont{u"Cantarell"_s, 24}));
    }

    void digitsAreTabularAndSignsStayAsTheyAre() {
        // A list of three features, eight bytes into the table.
        QByteArray table("\0\1\0\0\0\0\0\x8\0\3", 10);
        for (const char* tag : {"calt", "kern", "tnum"})
            table += QByteArray(tag) + QByteArray(2, '\0');
        const QByteArray changed = withTabularFigures(table);
        QVERIFY(changed.indexOf("tnum") < changed.indexOf("kern"));
        QVERIFY(changed.indexOf("kern") < changed.indexOf("calt"));
        for (qsizetype size = 0; size < table.size(); ++size) // a broken font
            QCOMPARE(withTabularFigures(table.left(size)).size(), size);

        const QByteArray file = fontFile({{"glyf", "12345"}, {"name", nameTable(u"Q"_s)}});
        QCOMPARE(file.mid(12, 4), "glyf");
        QCOMPARE(file.size() % 4, 0);
        QCOMPARE(file.mid(12 + 2 * 16, 5), "12345");
    }

    void theWindowOpensWhereItWasIfItCan() {
        const QRect laptop(0, 30, 1366, 738);
        const QRect desk(1366, 0, 3840, 2160);
        const QRect first = firstPlace({}, {laptop}).area;
        QVERIFY(laptop.contains(first) && first.top() >= 60); // with its title bar
        const WindowPlace onDesk{QRect(2000, 100, 1600, 1200), false};
        QCOMPARE(firstPlace(onDesk, {laptop, desk}), onDesk);
        QVERIFY(laptop.contains(firstPlace(onDesk, {laptop}).area)); // the desk's screen is gone
        QCOMPARE(firstPlace(WindowPlace{QRect(9000, 0, 1, 1), true}, {desk}).area.size(),
                 QSize(960, 600));

        MemorySettings settings;
        QCOMPARE(savedPlace(settings), std::nullopt);
        savePlace(onDesk, settings);
        savePlace({desk, true}, settings);
        QCOMPARE(savedPlace(settings), (WindowPlace{onDesk.area, true}));
        settings.setReal(u"WindowWidth"_s, std::nan(""));
        QCOMPARE(savedPlace(settings), std::nullopt);
    }

    void hairlinesAreWholeDevicePixels() {
        for (const double ratio : {1.0, 1.25, 1.5, 1.67, 2.0, 3.0}) {
            const double pixels = hairlineAt(ratio) * ratio;
            QVERIFY2(std::abs(pixels - std::round(pixels)) < 1e-9 && pixels >= 1,
                     qPrintable(QString::number(ratio)));
        }
        QCOMPARE(hairlineAt(1.25) * 1.25, 1.0);
        QCOMPARE(hairlineAt(1.67) * 1.67, 2.0);
    }
};

static const quiv::TestCase<AppearanceTest> registered;
#include "appearance_test.moc"

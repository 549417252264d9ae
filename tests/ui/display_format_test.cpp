#include "support/fake_still_extractor.h"
#include "support/test_main.h"
#include "ui/display_format.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

std::optional<QString> label(const char* manufacturer, const char* model, const char* brand) {
    const auto optional = [](const char* text) {
        return text ? std::optional(QString::fromUtf8(text)) : std::nullopt;
    };
    TVEndpoint tv;
    tv.deviceManufacturer = optional(manufacturer);
    tv.deviceModel = optional(model);
    tv.deviceBrand = optional(brand);
    return deviceDisplayLabel(tv);
}

FileGroup group(int subtitles, std::optional<std::int64_t> reported = std::nullopt) {
    FileGroup made;
    made.video = RemoteFile{u"a.mkv"_s, u"VIDEO"_s, 0, std::nullopt};
    made.reportedSubtitleCount = reported;
    for (int i = 0; i < subtitles; ++i)
        made.subtitles.append(RemoteFile());
    return made;
}

PlaybackResponse playing(const QString& name, const QStringList& trackIds) {
    PlaybackResponse playback;
    playback.currentVideoName = name;
    for (const QString& id : trackIds)
        playback.subtitleTracks.append({id, QString(), std::nullopt, false});
    return playback;
}

} // namespace

class DisplayFormatTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void byteCounts_data() {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        const auto add = [](qint64 bytes, const char* text) {
            QTest::newRow(text) << bytes << QString::fromLatin1(text);
        };
        add(0, "Zero KB");
        add(1, "1 byte");
        add(999, "999 bytes");
        add(1'000, "1 KB");
        add(1'499, "1 KB");
        add(1'500, "2 KB");
        add(999'499, "999 KB");
        add(999'500, "1 MB"); // not "1000 KB"
        add(1'250'000, "1.3 MB");
        add(31'500'000, "31.5 MB");
        add(999'949'999, "999.9 MB");
        add(999'950'000, "1 GB");
        add(4'200'000'000, "4.2 GB");
        add(4'250'000'000, "4.25 GB");
        add(4'205'000'000, "4.21 GB");
        add(12'050'000'000, "12.05 GB");
        add(310'000'000'000, "310 GB");
        add(999'994'999'999, "999.99 GB");
        add(999'995'000'000, "1 TB");
        add(std::numeric_limits<qint64>::max(), "9223372.04 TB");
        add(-512, "-512 bytes");
        add(std::numeric_limits<qint64>::min(), "-9223372.04 TB");
    }

    void byteCounts() {
        QFETCH(qint64, bytes);
        QTEST(formatByteCount(bytes), "text");
    }

    void playbackTimes() {
        QCOMPARE(formatPlaybackTime(0), u"00:00"_s);
        QCOMPARE(formatPlaybackTime(59'999), u"00:59"_s);
        QCOMPARE(formatPlaybackTime(83'000), u"01:23"_s);
        QCOMPARE(formatPlaybackTime(3'599'999), u"59:59"_s);
        QCOMPARE(formatPlaybackTime(3'600'000), u"1:00:00"_s);
        QCOMPARE(formatPlaybackTime(90'061'000), u"25:01:01"_s);
        QCOMPARE(formatPlaybackTime(-5'000), u"00:00"_s);
    }

    void playbackSpeeds() {
        QCOMPARE(formatPlaybackSpeed(1.0), u"1x"_s);
        QCOMPARE(formatPlaybackSpeed(1.0004), u"1x"_s);
        QCOMPARE(formatPlaybackSpeed(1.5), u"1.5x"_s);
        QCOMPARE(formatPlaybackSpeed(1.25), u"1.25x"_s);
        QCOMPARE(formatPlaybackSpeed(0.333), u"0.33x"_s);
    }

    void nearestSpeedKeepsTheEarlierOfTwo() {
        QCOMPARE(nearestSpeedOption({0.5, 1.0, 1.5}, 1.25), 1.0);
        QCOMPARE(nearestSpeedOption({0.5, 1.0, 1.5}, 1.26), 1.5);
        QCOMPARE(nearestSpeedOption({}, 1.1), 1.1);
    }

    void transferSpeeds() {
        const QString none = u"-- B/s"_s;
        QCOMPARE(formatTransferSpeed(0), none);
        QCOMPARE(formatTransferSpeed(-3), none);
        QCOMPARE(formatTransferSpeed(std::numeric_limits<double>::quiet_NaN()), none);
        QCOMPARE(formatTransferSpeed(std::numeric_limits<double>::infinity()), none);
        QCOMPARE(formatTransferSpeed(1e300), none);
        QCOMPARE(formatTransferSpeed(1499.6), u"2 KB/s"_s);
        QCOMPARE(formatTransferSpeed(31'500'000), u"31.5 MB/s"_s);
    }

    void percentagesAreTruncated() {
        QCOMPARE(formatPercent(0.426), u"42%"_s);
        QCOMPARE(formatPercent(0.999), u"99%"_s);
        QCOMPARE(formatPercent(1.0), u"100%"_s);
        QCOMPARE(formatPercent(std::numeric_limits<double>::quiet_NaN()), u"0%"_s);
        QCOMPARE(formatPercent(1e300), u"0%"_s);
    }

    void deviceLabelsDoNotRepeatTheMaker() {
        QCOMPARE(label("Sony", "Sony Bravia", nullptr), u"Sony Bravia"_s);
        QCOMPARE(label("SONY", "sony Bravia", nullptr), u"sony Bravia"_s);
        QCOMPARE(label("Sony", "KD-55", "Other"), u"Sony KD-55"_s);
        QCOMPARE(label(nullptr, " KD-55 ", nullptr), u"KD-55"_s);
        QCOMPARE(label("Sony", "  ", "Bravia"), u"Bravia"_s);
        QVERIFY(!label("Sony", nullptr, nullptr));
    }

    void subtitleCountTakesTheHighest() {
        QCOMPARE(subtitleCountText(group(0), {}), u"No subtitles"_s);
        QCOMPARE(subtitleCountText(group(1), {}), u"1 subtitle"_s);
        QCOMPARE(subtitleCountText(group(2, 5), {}), u"5 subtitles"_s);
        QCOMPARE(subtitleCountText(group(3, 1), {}), u"3 subtitles"_s);
        QCOMPARE(subtitleCountText(group(0, -4), {}), u"No subtitles"_s);
        const QStringList tracks{u" OFF "_s, u"1"_s, u"2"_s};
        QCOMPARE(subtitleCountText(group(1), playing(u"a.mkv"_s, tracks)), u"2 subtitles"_s);
        QCOMPARE(subtitleCountText(group(1), playing(u"b.mkv"_s, tracks)), u"1 subtitle"_s);
    }

    void aHostileTextStaysOnOneLine_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("line break") << u"a\nb"_s << u"a b"_s;
        QTest::newRow("separators") << u"a\u2028b\u2029c"_s + QChar(0x85) << u"a b c "_s;
        QTest::newRow("escape") << u"\u001b[31m"_s << u"\uFFFD[31m"_s;
        QTest::newRow("marks") << u"a\u200fb\u061c"_s << u"a\uFFFDb\uFFFD"_s;
        QTest::newRow("half a pair") << u"a"_s + QChar(0xd83c) << u"a\uFFFD"_s;
        QTest::newRow("null") << u"a"_s + QChar(0) << u"a\uFFFD"_s;
        QTest::newRow("override") << u"a\u202Egpj.exe"_s << u"a\uFFFDgpj.exe"_s;
        QTest::newRow("isolate") << u"\u2067a"_s << u"\uFFFDa"_s;
        QTest::newRow("markup") << u"<b>a</b>"_s << u"<b>a</b>"_s;
        QTest::newRow("other scripts") << u"שלום 🎬"_s << u"שלום 🎬"_s;
    }

    void aHostileTextStaysOnOneLine() {
        QFETCH(QString, text);
        QTEST(displayText(text), "shown");
        MemoryLog log;
        log.write(text);
        QTEST(log.lines.join(u'\n'), "shown");
    }

    void aLongTextIsCutBetweenCharacters() {
        const QString text = QString(999, u'a') + u"🎬🎬"_s;
        QCOMPARE(displayText(text), QString(999, u'a') + QChar(0x2026));
        QCOMPARE(displayText(QString(1000, u'a')), QString(1000, u'a'));
    }
};

static const quiv::TestCase<DisplayFormatTest> registered;
#include "display_format_test.moc"

#include "ui/display_format.h"

#include <QTest>

#include <limits>

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
    made.video = RemoteFile{QStringLiteral("a.mkv"), QStringLiteral("VIDEO"), 0, std::nullopt};
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
    void byteCounts_data();
    void byteCounts();
    void playbackTimes();
    void playbackSpeeds();
    void nearestSpeedKeepsTheEarlierOfTwo();
    void transferSpeeds();
    void percentagesAreTruncated();
    void deviceLabelsDoNotRepeatTheMaker();
    void subtitleCountTakesTheHighest();
    void aHostileTextStaysOnOneLine_data();
    void aHostileTextStaysOnOneLine();
    void aLongTextIsCutBetweenCharacters();
};

void DisplayFormatTest::byteCounts_data() {
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

void DisplayFormatTest::byteCounts() {
    QFETCH(qint64, bytes);
    QTEST(formatByteCount(bytes), "text");
}

void DisplayFormatTest::playbackTimes() {
    QCOMPARE(formatPlaybackTime(0), QStringLiteral("00:00"));
    QCOMPARE(formatPlaybackTime(59'999), QStringLiteral("00:59"));
    QCOMPARE(formatPlaybackTime(83'000), QStringLiteral("01:23"));
    QCOMPARE(formatPlaybackTime(3'599'999), QStringLiteral("59:59"));
    QCOMPARE(formatPlaybackTime(3'600'000), QStringLiteral("1:00:00"));
    QCOMPARE(formatPlaybackTime(90'061'000), QStringLiteral("25:01:01"));
    QCOMPARE(formatPlaybackTime(-5'000), QStringLiteral("00:00"));
}

void DisplayFormatTest::playbackSpeeds() {
    QCOMPARE(formatPlaybackSpeed(1.0), QStringLiteral("1x"));
    QCOMPARE(formatPlaybackSpeed(1.0004), QStringLiteral("1x"));
    QCOMPARE(formatPlaybackSpeed(1.5), QStringLiteral("1.5x"));
    QCOMPARE(formatPlaybackSpeed(1.25), QStringLiteral("1.25x"));
    QCOMPARE(formatPlaybackSpeed(0.333), QStringLiteral("0.33x"));
}

void DisplayFormatTest::nearestSpeedKeepsTheEarlierOfTwo() {
    QCOMPARE(nearestSpeedOption({0.5, 1.0, 1.5}, 1.25), 1.0);
    QCOMPARE(nearestSpeedOption({0.5, 1.0, 1.5}, 1.26), 1.5);
    QCOMPARE(nearestSpeedOption({}, 1.1), 1.1);
}

void DisplayFormatTest::transferSpeeds() {
    const QString none = QStringLiteral("-- B/s");
    QCOMPARE(formatTransferSpeed(0), none);
    QCOMPARE(formatTransferSpeed(-3), none);
    QCOMPARE(formatTransferSpeed(std::numeric_limits<double>::quiet_NaN()), none);
    QCOMPARE(formatTransferSpeed(std::numeric_limits<double>::infinity()), none);
    QCOMPARE(formatTransferSpeed(1e300), none);
    QCOMPARE(formatTransferSpeed(1499.6), QStringLiteral("2 KB/s"));
    QCOMPARE(formatTransferSpeed(31'500'000), QStringLiteral("31.5 MB/s"));
}

void DisplayFormatTest::percentagesAreTruncated() {
    QCOMPARE(formatPercent(0.426), QStringLiteral("42%"));
    QCOMPARE(formatPercent(0.999), QStringLiteral("99%"));
    QCOMPARE(formatPercent(1.0), QStringLiteral("100%"));
    QCOMPARE(formatPercent(std::numeric_limits<double>::quiet_NaN()), QStringLiteral("0%"));
    QCOMPARE(formatPercent(1e300), QStringLiteral("0%"));
}

void DisplayFormatTest::deviceLabelsDoNotRepeatTheMaker() {
    QCOMPARE(label("Sony", "Sony Bravia", nullptr), QStringLiteral("Sony Bravia"));
    QCOMPARE(label("SONY", "sony Bravia", nullptr), QStringLiteral("sony Bravia"));
    QCOMPARE(label("Sony", "KD-55", "Other"), QStringLiteral("Sony KD-55"));
    QCOMPARE(label(nullptr, " KD-55 ", nullptr), QStringLiteral("KD-55"));
    QCOMPARE(label("Sony", "  ", "Bravia"), QStringLiteral("Bravia"));
    QVERIFY(!label("Sony", nullptr, nullptr));
}

void DisplayFormatTest::subtitleCountTakesTheHighest() {
    QCOMPARE(subtitleCountText(group(0), {}), QStringLiteral("No subtitles"));
    QCOMPARE(subtitleCountText(group(1), {}), QStringLiteral("1 subtitle"));
    QCOMPARE(subtitleCountText(group(2, 5), {}), QStringLiteral("5 subtitles"));
    QCOMPARE(subtitleCountText(group(3, 1), {}), QStringLiteral("3 subtitles"));
    QCOMPARE(subtitleCountText(group(0, -4), {}), QStringLiteral("No subtitles"));
    const QStringList tracks{QStringLiteral(" OFF "), QStringLiteral("1"), QStringLiteral("2")};
    QCOMPARE(subtitleCountText(group(1), playing(QStringLiteral("a.mkv"), tracks)),
             QStringLiteral("2 subtitles"));
    QCOMPARE(subtitleCountText(group(1), playing(QStringLiteral("b.mkv"), tracks)),
             QStringLiteral("1 subtitle"));
}

void DisplayFormatTest::aHostileTextStaysOnOneLine_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("line break") << QStringLiteral("a\nb") << QStringLiteral("a b");
    QTest::newRow("separators") << QStringLiteral("a\u2028b\u2029c") << QStringLiteral("a b c");
    QTest::newRow("null") << QStringLiteral("a") + QChar(0) << QStringLiteral("a\uFFFD");
    QTest::newRow("override") << QStringLiteral("a\u202Egpj.exe")
                              << QStringLiteral("a\uFFFDgpj.exe");
    QTest::newRow("isolate") << QStringLiteral("\u2067a") << QStringLiteral("\uFFFDa");
    QTest::newRow("markup") << QStringLiteral("<b>a</b>") << QStringLiteral("<b>a</b>");
    QTest::newRow("other scripts") << QStringLiteral("שלום 🎬") << QStringLiteral("שלום 🎬");
}

void DisplayFormatTest::aHostileTextStaysOnOneLine() {
    QFETCH(QString, text);
    QTEST(displayText(text), "shown");
}

void DisplayFormatTest::aLongTextIsCutBetweenCharacters() {
    const QString text = QString(999, u'a') + QStringLiteral("🎬🎬");
    QCOMPARE(displayText(text), QString(999, u'a') + QChar(0x2026));
    QCOMPARE(displayText(QString(1000, u'a')), QString(1000, u'a'));
}

QTEST_APPLESS_MAIN(DisplayFormatTest)
#include "display_format_test.moc"

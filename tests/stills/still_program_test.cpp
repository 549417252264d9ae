#include "confined/confinement.h"
#include "platform/stills/process_still_extractor.h"
#include "stills/candidate_times.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

struct Outcome {
    int exitCode = -1;
    QByteArray output;
    QByteArray reason;
};

bool isNear(QColor seen, QColor colour) {
    return qAbs(seen.red() - colour.red()) < 60 && qAbs(seen.green() - colour.green()) < 60 &&
           qAbs(seen.blue() - colour.blue()) < 60;
}

} // namespace

// The program, over files that ffmpeg makes.
class StillProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { // a video to turn
        QVERIFY(make(redQuarter({640, 360}), u"-c:v libx264"_s, u"plain.mp4"_s));
    }

    void candidateTimes() {
        using Times = std::vector<double>;
        QCOMPARE(uploadThumbnailCandidateTimes(100), Times({12.0, 42.0, 0.0}));
        QCOMPARE(uploadThumbnailCandidateTimes(2), Times({0.35, 0.84, 0.0}));
        for (const double length : {1.0, 0.5, 0.0, -3.0, std::numeric_limits<double>::infinity(),
                                    std::numeric_limits<double>::quiet_NaN()})
            QCOMPARE(uploadThumbnailCandidateTimes(length), Times({0.0}));
    }

    // All show a red quarter at the top left, of a blue picture, to who looks at them in a player.
    void stillsAreUprightAndFit_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QSize>("quarter");
        QTest::addColumn<QString>("options");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<Qt::Corner>("redCorner");
        const auto row = [](const char* name, const char* file, QSize quarter, const char* options,
                            QSize size, Qt::Corner corner = Qt::TopLeftCorner) {
            QTest::newRow(name) << QString::fromUtf8(file) << quarter
                                << QString::fromLatin1(options) << size << corner;
        };
        const QSize hd(640, 360), small(160, 90);
        row("mp4", "a.mp4", hd, "-c:v libx264", {960, 540});
        row("odd name", "-a \n'\"%d é.mp4", small, "-c:v libx264", {320, 180});
        row("mkv, 10 bits", "a.mkv", hd, "-c:v libx265 -pix_fmt yuv420p10le", {960, 540});
        row("webm", "a.webm", small, "-c:v libvpx-vp9 -deadline realtime", {320, 180});
        row("avi", "a.avi", small, "-c:v mpeg4", {320, 180});
        row("ts", "a.ts", small, "-c:v mpeg2video", {320, 180});
        row("flv", "a.flv", small, "-c:v flv", {320, 180});
        row("wmv", "a.wmv", small, "-c:v wmv2", {320, 180});
        row("mov with transparency", "a.mov", small, "-c:v qtrle -pix_fmt argb", {320, 180});
        row("portrait", "a.mp4", {270, 480}, "-c:v libx264", {304, 540});
        row("wide pixels", "a.mp4", {360, 288}, "-c:v libx264 -aspect 16:9", {960, 540});
        row("narrow pixels", "a.mp4", {360, 240}, "-c:v mpeg4 -aspect 4:3", {640, 480});
        row("turned", "a.mp4", hd, "-i plain.mp4 -map 1 -c copy -metadata:s:v rotate=90",
            {304, 540}, Qt::BottomLeftCorner);
        row("upside down", "a.mp4", hd, "-i plain.mp4 -map 1 -c copy -metadata:s:v rotate=180",
            {960, 540}, Qt::BottomRightCorner);
        row("mirrored", "a.mkv", small,
            "-c:v libx264 -bsf:v h264_metadata=display_orientation=insert:flip=horizontal",
            {320, 180}, Qt::TopRightCorner);
        row("8K", "a.mp4", {3840, 2160}, "-c:v libx264 -preset ultrafast -frames:v 1", {960, 540});
        row("a sliver", "a.mp4", {8, 1080}, "-c:v libx264", {4, 540});
    }
    void stillsAreUprightAndFit() {
        QFETCH(QString, file);
        QFETCH(QSize, quarter);
        QFETCH(QString, options);
        QFETCH(QSize, size);
        QFETCH(Qt::Corner, redCorner);
        QVERIFY(make(redQuarter(quarter), options, file));
        const Outcome outcome = run(file);
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY(outcome.output.startsWith("\xff\xd8") && outcome.output.endsWith("\xff\xd9"));
        const QImage still = QImage::fromData(outcome.output);
        QCOMPARE(still.size(), size);
        for (const Qt::Corner corner :
             {Qt::TopLeftCorner, Qt::TopRightCorner, Qt::BottomLeftCorner, Qt::BottomRightCorner}) {
            const QPoint place(corner & 1 ? size.width() - 1 : 0,
                               corner & 2 ? size.height() - 1 : 0);
            QVERIFY(isNear(still.pixelColor(place), corner == redCorner ? Qt::red : Qt::blue));
        }
    }

    // Red where the first candidate is, blue before and after.
    void stillsAreTakenWhereTheyShould() {
        const QString source =
            u"color=blue:s=160x90:r=10:d=100,drawbox=c=red:t=fill:enable='between(t,11.7,12.5)'"_s;
        const char* const once = "-c:v libx264 -preset ultrafast -g 100000";
        const std::pair<const char*, const char*> files[] = {
            {"indexed.mp4", "-c:v libx264 -preset ultrafast"},
            {"once.mkv", once},
            {"once.ts", once},
            {"once.flv", once},
            {"fragments.mp4", "-c:v libx264 -movflags frag_keyframe+empty_moov"},
            {"variable.mkv",
             "-vf select='lt(t,1)+between(t,11,13)+gt(t,99)' -vsync vfr -c:v libx264"}};
        for (const auto& [file, options] : files) {
            QVERIFY2(make(source, QString::fromLatin1(options), QString::fromLatin1(file)), file);
            const QImage still = QImage::fromData(run(QString::fromLatin1(file)).output);
            QVERIFY2(still.size() == QSize(160, 90), file);
            QVERIFY2(isNear(still.pixelColor(80, 45), Qt::red), file);
        }
    }

    // Paper white must not become the grey that its code is in a plain picture.
    void highDynamicRangeIsNotWashedOut() {
        const QString tags = u"-c:v libx265 -color_primaries bt2020 "
                             "-colorspace bt2020nc -color_trc "_s;
        const auto white = [](int code) {
            return u"color=black:s=64x64:d=0.2,format=yuv420p10le,"
                   "geq=lum=%1:cb=512:cr=512"_s.arg(code);
        };
        QVERIFY(make(white(573), tags + u"smpte2084"_s, u"pq.mp4"_s));
        QVERIFY(make(white(721), tags + u"arib-std-b67"_s, u"hlg.mp4"_s));
        for (const char* file : {"pq.mp4", "hlg.mp4"}) {
            const QColor seen =
                QImage::fromData(run(QString::fromLatin1(file)).output).pixelColor(32, 32);
            QVERIFY2(seen.red() > 220 && seen.red() < 245, file);
            QVERIFY(qAbs(seen.red() - seen.blue()) < 4 && qAbs(seen.red() - seen.green()) < 4);
        }
    }

    void brokenFilesGiveWhatTheyStillHave() {
        const QString source = u"testsrc2=s=320x180:r=10:d=20"_s;
        QVERIFY(make(source, u"-c:v libx264 -g 10 -movflags +faststart"_s, u"front.mp4"_s));
        QVERIFY(make(source, u"-c:v libx264 -g 10"_s, u"end.mp4"_s));
        QVERIFY(make(source, u"-c:v libx264 -g 10"_s, u"whole.mkv"_s));
        for (const char* file : {"front.mp4", "end.mp4", "whole.mkv"})
            QVERIFY(QFile::resize(path(QString::fromLatin1(file)), 60'000)); // a tenth of it
        QCOMPARE(run(u"front.mp4"_s).exitCode, 0);
        QCOMPARE(run(u"whole.mkv"_s).exitCode, 0);
        QVERIFY(hasNone("end.mp4"));
    }

    void whatIsNoVideoGivesNone() {
        const QString video = u"testsrc2=s=320x180:r=10:d=3"_s;
        const QString sound = u"sine=d=2"_s;
        QVERIFY(make(video, u"-c:v libx264"_s, u"real.mp4"_s));
        QVERIFY(make(video, u"-frames:v 1"_s, u"picture.jpg"_s));
        QVERIFY(make(video, u"-c:v mjpeg -f image2pipe"_s, u"raw.mp4"_s));
        QVERIFY(make(sound, u"-c:a aac"_s, u"sound.mp4"_s));
        QVERIFY(make(sound,
                     u"-i picture.jpg -map 0 -map 1 -c:v copy "
                     "-disposition:v attached_pic"_s,
                     u"cover.mp4"_s));
        QVERIFY(make(video,
                     u"-c:v libx264 -encryption_scheme cenc-aes-ctr "
                     "-encryption_key 76a6c65c5ea762046bd749a2e632ccbb "
                     "-encryption_kid a7e61c373e219033c21091fa607bf3b8"_s,
                     u"encrypted.mp4"_s));
        write("empty.mp4", {});
        write("garbage.mp4", QByteArray(100'000, 'G'));
        write("hls.mp4",
              "#EXTM3U\n#EXT-X-TARGETDURATION:3\n#EXTINF:3,\nreal.mp4\n#EXT-X-ENDLIST\n");
        write("concat.mp4", "ffconcat version 1.0\nfile real.mp4\n");
        QCOMPARE(mkfifo(QFile::encodeName(path(u"fifo.mp4"_s)), 0600), 0);
        QVERIFY(QDir(m_folder.path()).mkdir(u"folder.mp4"_s));
        QCOMPARE(run(u"real.mp4"_s).exitCode, 0);
        for (const char* file :
             {"picture.jpg", "raw.mp4", "sound.mp4", "cover.mp4", "encrypted.mp4", "empty.mp4",
              "garbage.mp4", "hls.mp4", "concat.mp4", "fifo.mp4", "folder.mp4", "missing.mp4"})
            QVERIFY2(hasNone(file), file);
    }

    void itIsConfinedWhileItDecodes() {
        if (IsSanitized)
            QSKIP("a sanitizer needs what is forbidden");
        QVERIFY(make(redQuarter({1920, 1080}), u"-c:v libx264"_s, u"4k.mp4"_s));
        QProcess program;
        program.start(binary(), {path(u"4k.mp4"_s)});
        QFile status(u"/proc/%1/status"_s.arg(program.processId()));
        bool isConfined = false;
        do {
            isConfined = status.open(QIODevice::ReadOnly) &&
                         status.readAll().contains("NoNewPrivs:\t1\nSeccomp:\t2\n");
            status.close();
        } while (!isConfined && !program.waitForFinished(1));
        QVERIFY(isConfined);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
    }

private:
    static QString binary() { return ProcessStillExtractor::standardProgram(); }
    static QString redQuarter(QSize size) {
        return u"color=red:s=%1x%2:r=10:d=0.5,pad=iw*2:ih*2:0:0:blue"_s.arg(size.width())
            .arg(size.height());
    }
    QString path(const QString& file) const { return m_folder.filePath(file); }

    bool make(const QString& source, const QString& options, const QString& file) {
        QProcess ffmpeg;
        ffmpeg.setWorkingDirectory(m_folder.path());
        ffmpeg.start(u"ffmpeg"_s, u"-nostdin -v fatal -y -f lavfi -i"_s.split(u' ') +
                                      QStringList(source) + options.split(u' ') +
                                      QStringList(u"file:"_s + file));
        return ffmpeg.waitForFinished(60'000) && ffmpeg.exitCode() == 0;
    }
    void write(const char* name, const QByteArray& content) {
        QFile file(path(QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    // The name alone, from the file's folder: how a list of files would find others.
    Outcome run(const QString& file) {
        QProcess program;
        program.setWorkingDirectory(m_folder.path());
        program.start(binary(), {file});
        if (!program.waitForFinished(15'000) || program.exitStatus() != QProcess::NormalExit)
            return {};
        return {program.exitCode(), program.readAllStandardOutput(),
                program.readAllStandardError()};
    }
    bool hasNone(const char* file) {
        const Outcome outcome = run(QString::fromLatin1(file));
        return outcome.exitCode == 1 && outcome.output.isEmpty() &&
               outcome.reason.startsWith("quiv-still: ") && outcome.reason.count('\n') == 1;
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(StillProgramTest)
#include "still_program_test.moc"

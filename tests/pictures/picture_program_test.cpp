#include <QTest> // first, or moc stumbles over the library's concepts

#include "confined/confinement.h"
#include "platform/pictures/process_picture_decoder.h"
#include "support/outcome.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <QtEndian>

#include <list>
#include <webp/encode.h>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

using Pixels = Outcome<QByteArray>;

constexpr QSize Size(120, 68);

// Red on the left, blue on the right.
QImage halves(QSize size, QImage::Format format = QImage::Format_RGB32) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QPainter(&image).fillRect(image.rect().adjusted(size.width() / 2, 0, 0, 0), Qt::blue);
    return image.convertToFormat(format);
}

QByteArray encoded(const QImage& image, const char* format, bool isProgressive = false) {
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setQuality(isProgressive ? 95 : 75);
    writer.setProgressiveScanWrite(isProgressive);
    writer.write(image);
    return buffer.data();
}

QByteArray webp(const QImage& image) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    std::uint8_t* bytes = nullptr;
    const std::size_t size = WebPEncodeRGB(rgb.constBits(), rgb.width(), rgb.height(),
                                           int(rgb.bytesPerLine()), 90, &bytes);
    const QByteArray result(reinterpret_cast<const char*>(bytes), qsizetype(size));
    WebPFree(bytes);
    return result;
}

QByteArray bigEndian(quint32 number) {
    const quint32 swapped = qToBigEndian(number);
    return {reinterpret_cast<const char*>(&swapped), sizeof swapped};
}

// As PNG and gzip ask for.
quint32 checksum(const QByteArray& bytes) {
    quint32 sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (sum & 1 ? 0xedb88320 : 0);
    }
    return ~sum;
}

QByteArray pngChunk(const QByteArray& typeAndContent) {
    return bigEndian(quint32(typeAndContent.size() - 4)) + typeAndContent +
           bigEndian(checksum(typeAndContent));
}

constexpr int PngHeader = 8 + 4 + 4 + 13 + 4; // its end

QByteArray giantPng() {
    QByteArray bytes = encoded(halves({9, 9}), "PNG");
    const QByteArray header = "IHDR" + bigEndian(60'000) + bigEndian(60'000) + bytes.mid(24, 5);
    return bytes.replace(8, PngHeader - 8, pngChunk(header));
}

// 1.5 MB that texts of 1.6 GB are compressed into.
QByteArray pngOfTexts() {
    const QByteArray text = qCompress(QByteArray(7'900'000, 'x'), 9).sliced(4);
    const QByteArray chunk = pngChunk(QByteArray("zTXtComment\0\0", 13) + text);
    return encoded(halves({320, 180}), "PNG").insert(PngHeader, chunk.repeated(200));
}

// 1 MB that a drawing of 1 GB is compressed into.
QByteArray gzippedSvg() {
    const QByteArray shapes = QByteArray("<path d='M0 0h9v9z'/>").repeated(800'000);
    const QByteArray deflated = qCompress(shapes, 9).sliced(4 + 2).chopped(4);
    const auto member = [&](const QByteArray& begin) {
        const QByteArray body = begin.isEmpty() ? deflated : qCompress(begin).sliced(6).chopped(4);
        return QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\3", 10) + body + QByteArray(8, '\0');
    };
    return member("<svg xmlns='http://www.w3.org/2000/svg'>") + member({}).repeated(20);
}

// With the last scan so many times, or as often as 1 MiB holds.
QByteArray jpegOfScans(QSize size, qsizetype scans = 1 << 20) {
    const QByteArray bytes = encoded(halves(size), "JPEG", true).chopped(2);
    const QByteArray scan = bytes.sliced(bytes.lastIndexOf("\xff\xda"));
    return bytes + scan.repeated(std::min((1 << 20) / scan.size(), scans)) + "\xff\xd9";
}

QByteArray randomBytes(qsizetype count, const QByteArray& begin = {}) {
    QRandomGenerator generator(7);
    QByteArray bytes(count, Qt::Uninitialized);
    generator.generate(bytes.begin(), bytes.end());
    return begin + bytes;
}

// A file of what the system knows of a process.
QByteArray processFile(const QString& process, const QString& name) {
    QFile file(u"/proc/%1/%2"_s.arg(process, name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().simplified() : QByteArray();
}

// The most memory this process has had at once since it was asked before, in KiB.
qint64 peakMemory() {
    const QByteArray status = processFile(u"self"_s, u"status"_s);
    QFile reset(u"/proc/self/clear_refs"_s);
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1)
        qFatal("no /proc");
    return status.mid(status.indexOf("VmHWM:") + 6).trimmed().split(' ').first().toLongLong();
}

// How long the main thread was away from its event loop at most.
class StallWatch : public QTimer {
public:
    StallWatch() {
        callOnTimeout([this] { longest = std::max(longest, m_sinceLast.restart()); });
        m_sinceLast.start();
        start(5ms);
    }
    qint64 longest = 0; // milliseconds

private:
    QElapsedTimer m_sinceLast;
};

} // namespace

// The program and the adapter that runs it, over good and hostile pictures.
class PictureProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void picturesAreStretched_data() {
        QTest::addColumn<QByteArray>("bytes");
        const QImage image = halves({320, 180});
        QTest::newRow("JPEG") << encoded(image, "JPEG");
        QTest::newRow("progressive JPEG") << encoded(image, "JPEG", true);
        QTest::newRow("large JPEG") << encoded(halves({3840, 2160}), "JPEG");
        QTest::newRow("small JPEG") << encoded(halves({20, 90}), "JPEG");
        QTest::newRow("JPEG and more") << encoded(image, "JPEG") + QByteArray(99, 'x');
        QTest::newRow("PNG") << encoded(image, "PNG");
        QTest::newRow("PNG with a palette")
            << encoded(halves({9, 9}, QImage::Format_Indexed8), "PNG");
        QTest::newRow("PNG of 16 bits") << encoded(halves({9, 9}, QImage::Format_RGBA64), "PNG");
        QTest::newRow("PNG with texts") << pngOfTexts();
        QTest::newRow("WebP") << webp(image);
    }
    void picturesAreStretched() {
        QFETCH(QByteArray, bytes);
        ProcessPictureDecoder decoder(program());
        Pixels pixels(decoder.decode(bytes, Size));
        QVERIFY(!pixels.isDone()); // from the event loop only
        QTRY_VERIFY(pixels.isDone());
        QVERIFY(isHalves(pixels));
    }

    void transparencyIsMultipliedIn() {
        QImage direct(9, 9, QImage::Format_ARGB32);
        direct.fill(QColor(255, 0, 0, 51));
        QImage indexed(9, 9, QImage::Format_Indexed8);
        indexed.setColorTable({qRgba(255, 0, 0, 51)});
        indexed.fill(0);
        ProcessPictureDecoder decoder(program());
        for (const QImage& image : {direct, indexed}) {
            Pixels pixels(decoder.decode(encoded(image, "PNG"), {3, 2}));
            QTRY_VERIFY(pixels.isDone());
            QCOMPARE(pixels.value(), QByteArray("\x33\x00\x00\x33", 4).repeated(6));
        }
    }

    void whatIsNoPictureIsNone_data() {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray jpeg = encoded(halves({320, 180}), "JPEG");
        const QByteArray png = encoded(halves({320, 180}), "PNG");
        const QByteArray picture = webp(halves({320, 180}));
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("words") << QByteArray("<html>Not found</html>");
        QTest::newRow("BMP") << encoded(halves({9, 9}), "BMP");
        QTest::newRow("cut JPEG") << jpeg.chopped(20);
        QTest::newRow("half a JPEG") << jpeg.first(jpeg.size() / 2);
        QTest::newRow("cut PNG") << png.chopped(60);
        QTest::newRow("cut WebP") << picture.chopped(20);
        QTest::newRow("giant PNG") << giantPng();
        QTest::newRow("more pixels than needed")
            << encoded(QImage(4097, 4097, QImage::Format_Mono), "PNG");
        QTest::newRow("more bytes than allowed")
            << jpeg + QByteArray(PictureDecoder::MostBytes, '\0');
        QTest::newRow("random") << randomBytes(100'000);
        QTest::newRow("random JPEG") << randomBytes(100'000, jpeg.first(jpeg.size() / 2));
        QTest::newRow("random PNG") << randomBytes(100'000, png.first(PngHeader));
        QTest::newRow("random WebP") << randomBytes(100'000, picture.first(40));
    }
    void whatIsNoPictureIsNone() {
        QFETCH(QByteArray, bytes);
        ProcessPictureDecoder decoder(program());
        Pixels pixels(decoder.decode(bytes, Size));
        QTRY_VERIFY(pixels.isDone());
        QVERIFY(!pixels.value());
    }

    // Each gives what a picture shows, or nothing; the window never notices.
    void bombsCostOnePicture_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("count");
        QTest::newRow("gzipped SVG") << gzippedSvg() << 1;
        QTest::newRow("PNG of texts") << pngOfTexts() << 1;
        QTest::newRow("eight PNGs of texts") << pngOfTexts() << 8;
        QTest::newRow("JPEG of a thousand scans") << jpegOfScans({1600, 1600}) << 1;
        QTest::newRow("large JPEG of many scans") << jpegOfScans({4096, 4096}, 50) << 2;
    }
    void bombsCostOnePicture() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, count);
        ProcessPictureDecoder decoder(program());
        std::list<Pixels> bombs;
        peakMemory();
        const qint64 memory = peakMemory();
        StallWatch watch;
        for (int i = 0; i < count; ++i)
            bombs.emplace_back(decoder.decode(bytes, Size));
        Pixels next(decoder.decode(encoded(halves({320, 180}), "JPEG"), Size));
        QTRY_VERIFY_WITH_TIMEOUT(next.isDone(), 10'000);
        QVERIFY(isHalves(next));
        QTRY_VERIFY(std::ranges::all_of(bombs, &Pixels::isDone));
        for (const Pixels& bomb : bombs)
            QVERIFY(!bomb.value() || isHalves(bomb));
        QVERIFY(peakMemory() - memory < 32 << 10);
        QVERIFY(watch.longest < 100);
    }

    void itIsConfinedBeforeItReads() {
        if (IsSanitized)
            QSKIP("a sanitizer needs what is forbidden");
        QProcess process;
        process.start(program(), {u"120"_s, u"68"_s});
        const QString id = QString::number(process.processId());
        QTRY_VERIFY(processFile(id, u"status"_s).contains("NoNewPrivs: 1 Seccomp: 2"));
        const QByteArray limits = processFile(id, u"limits"_s);
        for (const char* limit : {"Max cpu time 2 2 ", "Max file size 0 0 ", "Max open files 0 0 ",
                                  "Max core file size 0 0 ", "Max address space 268435456 "})
            QVERIFY2(limits.contains(limit), limit);
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(process.readAllStandardError().startsWith("quiv-picture: "));
    }

    // What a decoder that was taken over could say.
    void onlyPixelsOfTheSizeCount_data() {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<bool>("isPicture");
        QTest::newRow("right") << QByteArray("cat >/dev/null; head -c 24 /dev/zero") << true;
        QTest::newRow("reads nothing") << QByteArray("head -c 24 /dev/zero") << true;
        QTest::newRow("short") << QByteArray("head -c 23 /dev/zero") << false;
        QTest::newRow("long") << QByteArray("head -c 25 /dev/zero") << false;
        QTest::newRow("endless") << QByteArray("exec cat /dev/zero") << false;
        QTest::newRow("hangs") << QByteArray("head -c 24 /dev/zero; exec sleep 1000") << false;
        QTest::newRow("crashes") << QByteArray("head -c 24 /dev/zero; kill -SEGV $$") << false;
    }
    void onlyPixelsOfTheSizeCount() {
        QFETCH(QByteArray, script);
        QFETCH(bool, isPicture);
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"program"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + script + '\n') > 0);
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        file.close();
        ProcessPictureDecoder decoder(file.fileName());
        Pixels pixels(decoder.decode(randomBytes(1 << 20), {3, 2}));
        QTRY_VERIFY(pixels.isDone());
        QCOMPARE(pixels.value().has_value(), isPicture);
    }

private:
    static QString program() { return ProcessPictureDecoder::standardProgram(); }

    static bool isHalves(const Pixels& pixels) {
        if (!pixels.value() ||
            pixels.value()->size() != qsizetype{4} * Size.width() * Size.height())
            return false;
        const QImage image(reinterpret_cast<const uchar*>(pixels.value()->constData()),
                           Size.width(), Size.height(), QImage::Format_RGBA8888_Premultiplied);
        const QColor left = image.pixelColor(9, 9), right = image.pixelColor(110, 60);
        return left.red() > 250 && left.blue() < 5 && left.alpha() == 255 && right.red() < 5 &&
               right.blue() > 250 && right.alpha() == 255;
    }
};

QTEST_GUILESS_MAIN(PictureProgramTest)
#include "picture_program_test.moc"

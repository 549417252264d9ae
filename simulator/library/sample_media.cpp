#include "simulator/library/sample_media.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

#include <functional>
#include <vector>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

// A clip as ffmpeg's arguments, blanks between them, without the file name at the end. Inputs are
// relative to the folder that the samples are made in and may be samples made before.
struct Clip {
    const char* name;
    const char* arguments;
};

struct TextFile {
    const char* name;
    const char* text;
};

struct Samples {
    std::vector<TextFile> texts; // made first: clips may take them in
    std::vector<Clip> clips;
    const char* garbageName = nullptr;
};

constexpr const char* EnglishSubtitles = "1\n00:00:00,500 --> 00:00:01,500\nHello\n\n"
                                         "2\n00:00:01,600 --> 00:00:02,800\nStill here\n";
constexpr const char* GermanSubtitles = "1\n00:00:00,500 --> 00:00:01,500\nHallo\n\n"
                                        "2\n00:00:01,600 --> 00:00:02,800\nImmer noch da\n";

} // namespace

namespace {

Samples mediaSamples() {
    return {
        .texts = {{"Test Card.en.srt", EnglishSubtitles},
                  {"Test Card.de.srt", GermanSubtitles},
                  {"Colours.srt", EnglishSubtitles},
                  {"Lost Subtitle.srt", EnglishSubtitles},
                  {"Read Me.txt", "Made by the simulated TV.\n"}},
        .clips =
            {{"Test Card.mp4", "-f lavfi -i testsrc2=s=480x270:r=15:d=4 "
                               "-f lavfi -i sine=f=440:d=4 "
                               "-c:v libx264 -preset ultrafast -pix_fmt yuv420p "
                               "-c:a aac -movflags +faststart"},
             {"Two.Languages.2024.mkv",
              "-f lavfi -i testsrc2=s=480x270:r=15:d=3 -f lavfi -i sine=f=330:d=3 "
              "-f lavfi -i sine=f=660:d=3 -i Test%20Card.en.srt -i Test%20Card.de.srt "
              "-map 0 -map 1 -map 2 -map 3 -map 4 "
              "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac -c:s srt "
              "-metadata:s:a:0 language=eng -metadata:s:a:1 language=deu "
              "-metadata:s:s:0 language=eng -metadata:s:s:1 language=deu"},
             {"Colours.webm",
              "-f lavfi -i gradients=s=320x180:r=10:d=3 "
              "-f lavfi -i sine=f=550:d=3 "
              "-c:v libvpx -pix_fmt yuv420p -deadline realtime -cpu-used 8 -c:a libvorbis"},
             // Long enough to seek in; a picture every other second keeps it cheap.
             {"Harbour Tour.mkv",
              "-f lavfi -i testsrc2=s=320x180:r=1/2:d=720 "
              "-f lavfi -i sine=f=300:r=8000:d=720 -i Test%20Card.en.srt -i Test%20Card.de.srt "
              "-map 0 -map 1 -map 1 -map 2 -map 3 -map 2 -c:v libx264 -preset ultrafast "
              "-pix_fmt yuv420p -c:a adpcm_ima_wav -c:s srt "
              "-metadata:s:a:0 language=eng -metadata:s:a:1 language=deu "
              "-metadata:s:s:0 language=eng -metadata:s:s:1 language=deu "
              "-metadata:s:s:2 language=fra"},
             // Only copying lets ffmpeg write the turn into the file instead of turning the
             // pictures.
             {"Upright Phone.mp4", "-i Test%20Card.mp4 -map 0:v -c copy -t 2 "
                                   "-metadata:s:v:0 rotate=90"},
             {"Old_Camera.avi", "-f lavfi -i testsrc=s=320x240:r=10:d=2 "
                                "-f lavfi -i sine=f=220:d=2 -c:v mpeg4 -c:a mp2"}},
        .garbageName = "Broken Download.mp4",
    };
}

Samples usbSamples() {
    return {
        .texts = {{"Holiday.en.srt", EnglishSubtitles}},
        .clips = {{"Holiday.mov", "-f lavfi -i gradients=s=480x270:r=15:d=5:seed=7 "
                                  "-c:v libx264 -preset ultrafast -pix_fmt yuv420p"}},
    };
}

bool write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

bool encode(const QString& folder, const Clip& clip) {
    QStringList arguments = u"-nostdin -v error -threads 1"_s.split(u' ');
    for (const QString& argument : QString::fromLatin1(clip.arguments).split(u' '))
        arguments.append(QString(argument).replace("%20"_L1, " "_L1));
    arguments.append(QString::fromLatin1(clip.name));
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(u"ffmpeg"_s, arguments);
    return process.waitForFinished(30'000) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

// Bytes that no decoder takes for a video, the same every time.
QByteArray garbage() {
    QByteArray bytes(65'536, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

// Returns the names of the clips that could not be made.
QStringList makeAll(const QString& folder, const Samples& samples) {
    QStringList missing;
    const QString prefix = folder + u'/';
    for (const TextFile& text : samples.texts)
        write(prefix + QLatin1String(text.name), text.text);
    if (samples.garbageName)
        write(prefix + QLatin1String(samples.garbageName), garbage());
    for (const Clip& clip : samples.clips) {
        if (encode(folder, clip))
            continue;
        missing.append(QLatin1String(clip.name));
        QFile::remove(prefix + QLatin1String(clip.name));
    }
    return missing;
}

void moveAll(const QString& from, const QString& to) {
    const QStringList names = QDir(from).entryList(QDir::Files);
    for (const QString& name : names)
        QFile::rename(from + u'/' + name, to + u'/' + name);
}

QString fill(const QString& folder, const Samples& samples) {
    // Another simulator may be filling the same folder; it is done when the lock is free.
    QLockFile lock(folder + u".lock"_s);
    if (!lock.lock())
        return u"Cannot write beside %1."_s.arg(folder);
    if (!QDir(folder).isEmpty())
        return {};
    if (QStandardPaths::findExecutable(u"ffmpeg"_s).isEmpty())
        return u"No sample media: the program ffmpeg is not installed."_s;
    QDir workshop(folder + u".making"_s);
    workshop.removeRecursively(); // left by an interrupted run
    if (!workshop.mkpath(u"."_s))
        return u"Cannot write beside %1."_s.arg(folder);
    const QStringList missing = makeAll(workshop.path(), samples);
    moveAll(workshop.path(), folder);
    workshop.removeRecursively();
    return missing.isEmpty()
               ? QString()
               : u"ffmpeg could not make the samples "_s + missing.join(", "_L1) + u'.';
}

} // namespace

QString makeSampleMedia(const QString& mediaFolder) {
    return fill(mediaFolder, mediaSamples());
}

QString makeSampleUsbMedia(const QString& usbFolder) {
    return fill(usbFolder, usbSamples());
}

} // namespace quiv::simulator

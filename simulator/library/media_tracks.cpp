#include "simulator/library/media_tracks.h"

#include "simulator/library/media_entry.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr int ProbeTimeoutMs = 5000;

QString labelOf(const QString& title, const QString& language, size_t number) {
    static const QHash<QString, QString> names{
        {u"eng"_s, u"English"_s},  {u"en"_s, u"English"_s},  {u"deu"_s, u"Deutsch"_s},
        {u"ger"_s, u"Deutsch"_s},  {u"de"_s, u"Deutsch"_s},  {u"fra"_s, u"Français"_s},
        {u"fre"_s, u"Français"_s}, {u"fr"_s, u"Français"_s},
    };
    if (!title.isEmpty())
        return title;
    return names.value(language, u"Track %1"_s.arg(number));
}

MediaTrack trackOf(const QJsonObject& stream, size_t number) {
    const QJsonObject tags = stream["tags"_L1].toObject();
    QString language = tags["language"_L1].toString();
    if (language == "und"_L1)
        language.clear();
    return {.id = QString::number(stream["index"_L1].toInt()),
            .label = labelOf(tags["title"_L1].toString(), language, number),
            .language = language};
}

QJsonObject probe(const QString& path) {
    QProcess process;
    process.start(u"ffprobe"_s, {u"-v"_s, u"error"_s, u"-of"_s, u"json"_s, u"-show_format"_s,
                                 u"-show_streams"_s, u"file:"_s + path});
    if (!process.waitForFinished(ProbeTimeoutMs))
        process.kill();
    process.waitForFinished();
    return QJsonDocument::fromJson(process.readAllStandardOutput()).object();
}

} // namespace

MediaDetails detailsOfFile(const QString& path) {
    const QJsonObject told = probe(path);
    MediaDetails details;
    const QString seconds = told["format"_L1]["duration"_L1].toString();
    details.durationMs = static_cast<qint64>(seconds.toDouble() * 1000);
    const QJsonArray streams = told["streams"_L1].toArray();
    for (const QJsonValue& stream : streams) {
        const QString type = stream["codec_type"_L1].toString();
        if (type == "audio"_L1)
            details.audio.push_back(trackOf(stream.toObject(), details.audio.size() + 1));
        if (type == "subtitle"_L1)
            details.subtitles.push_back(trackOf(stream.toObject(), details.subtitles.size() + 1));
    }
    return details;
}

// "Movie.en.srt" beside "Movie.mkv" is in English.
MediaTrack sideTrack(const QString& fileName, const QString& videoBase, size_t number) {
    const QString language = baseNameOf(fileName).mid(videoBase.size() + 1);
    return {.id = fileName, .label = labelOf({}, language, number), .language = language};
}

MediaDetails madeUpDetails() {
    return {.durationMs = 90 * 60 * 1000,
            .audio = {{u"1"_s, u"English (5.1)"_s, u"eng"_s}, {u"2"_s, u"Deutsch"_s, u"deu"_s}},
            .subtitles = {{u"3"_s, u"English"_s, u"eng"_s},
                          {u"4"_s, u"Deutsch"_s, u"deu"_s},
                          {u"5"_s, u"Commentary"_s, QString()}}};
}

} // namespace quiv::simulator

#include "simulator/media_tracks.h"

#include "simulator/media_entry.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace quiv::simulator {

static constexpr int probeTimeoutMs = 5000;

static QString labelOf(const QString& title, const QString& language, size_t number) {
    static const QHash<QString, QString> names{
        {QStringLiteral("eng"), QStringLiteral("English")},
        {QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("deu"), QStringLiteral("Deutsch")},
        {QStringLiteral("ger"), QStringLiteral("Deutsch")},
        {QStringLiteral("de"), QStringLiteral("Deutsch")},
        {QStringLiteral("fra"), QStringLiteral("Français")},
        {QStringLiteral("fre"), QStringLiteral("Français")},
        {QStringLiteral("fr"), QStringLiteral("Français")},
    };
    if (!title.isEmpty())
        return title;
    return names.value(language, QStringLiteral("Track %1").arg(number));
}

static MediaTrack trackOf(const QJsonObject& stream, size_t number) {
    const QJsonObject tags = stream[QLatin1String("tags")].toObject();
    QString language = tags[QLatin1String("language")].toString();
    if (language == QLatin1String("und"))
        language.clear();
    return {.id = QString::number(stream[QLatin1String("index")].toInt()),
            .label = labelOf(tags[QLatin1String("title")].toString(), language, number),
            .language = language};
}

static QJsonObject probe(const QString& path) {
    QProcess process;
    process.start(QStringLiteral("ffprobe"),
                  {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-of"),
                   QStringLiteral("json"), QStringLiteral("-show_format"),
                   QStringLiteral("-show_streams"), QStringLiteral("file:") + path});
    if (!process.waitForFinished(probeTimeoutMs))
        process.kill();
    process.waitForFinished();
    return QJsonDocument::fromJson(process.readAllStandardOutput()).object();
}

MediaDetails detailsOfFile(const QString& path) {
    const QJsonObject told = probe(path);
    MediaDetails details;
    const QString seconds = told[QLatin1String("format")][QLatin1String("duration")].toString();
    details.durationMs = static_cast<qint64>(seconds.toDouble() * 1000);
    const QJsonArray streams = told[QLatin1String("streams")].toArray();
    for (const QJsonValue& stream : streams) {
        const QString type = stream[QLatin1String("codec_type")].toString();
        if (type == QLatin1String("audio"))
            details.audio.push_back(trackOf(stream.toObject(), details.audio.size() + 1));
        if (type == QLatin1String("subtitle"))
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
            .audio = {{QStringLiteral("1"), QStringLiteral("English (5.1)"), QStringLiteral("eng")},
                      {QStringLiteral("2"), QStringLiteral("Deutsch"), QStringLiteral("deu")}},
            .subtitles = {{QStringLiteral("3"), QStringLiteral("English"), QStringLiteral("eng")},
                          {QStringLiteral("4"), QStringLiteral("Deutsch"), QStringLiteral("deu")},
                          {QStringLiteral("5"), QStringLiteral("Commentary"), QString()}}};
}

} // namespace quiv::simulator

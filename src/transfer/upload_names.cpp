#include "transfer/upload_names.h"

#include <QRegularExpression>
#include <QSet>

namespace quiv {

namespace {

const QSet<QString>& supportedVideoExtensions() {
    static const QSet<QString> extensions{
        QStringLiteral("mp4"), QStringLiteral("mkv"),  QStringLiteral("avi"),
        QStringLiteral("mov"), QStringLiteral("m4v"),  QStringLiteral("webm"),
        QStringLiteral("ts"),  QStringLiteral("m2ts"), QStringLiteral("flv"),
        QStringLiteral("wmv"),
    };
    return extensions;
}

const QSet<QString>& supportedSubtitleExtensions() {
    static const QSet<QString> extensions{
        QStringLiteral("srt"), QStringLiteral("sub"),  QStringLiteral("vtt"), QStringLiteral("ass"),
        QStringLiteral("ssa"), QStringLiteral("ttml"), QStringLiteral("xml"), QStringLiteral("txt"),
    };
    return extensions;
}

QString withoutExtension(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? name : name.first(dot);
}

QString withoutCopyMarker(const QString& stem) {
    static const QRegularExpression marker(QStringLiteral(" \\([0-9]+\\)$"));
    return QString(stem).remove(marker);
}

} // namespace

QString lowerCasedExtension(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? QString() : name.sliced(dot + 1).toLower();
}

bool hasSupportedVideoExtension(const QString& name) {
    return supportedVideoExtensions().contains(lowerCasedExtension(name));
}

bool hasSupportedSubtitleExtension(const QString& name) {
    return supportedSubtitleExtensions().contains(lowerCasedExtension(name));
}

QString uploadNameKey(const QString& name) {
    return name.trimmed().toLower();
}

QString uploadMatchKey(const QString& name) {
    const QString key = uploadNameKey(name);
    if (key.isEmpty())
        return {};
    // A slash is in no file name, so that no stem runs into its extension.
    return withoutCopyMarker(withoutExtension(key)) + u'/' + lowerCasedExtension(key);
}

bool uploadNamesMatch(const QString& name, const QString& other) {
    const QString key = uploadMatchKey(name);
    return !key.isEmpty() && key == uploadMatchKey(other);
}

QString proposedSubtitleRemoteName(const QString& videoName, const QUrl& subtitleURL) {
    const QString lastComponent = videoName.sliced(videoName.lastIndexOf(u'/') + 1);
    const QString extension = lowerCasedExtension(subtitleURL.fileName());
    return withoutExtension(lastComponent) + u'.' +
           (extension.isEmpty() ? QStringLiteral("srt") : extension);
}

} // namespace quiv

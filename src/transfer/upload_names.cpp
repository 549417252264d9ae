#include "transfer/upload_names.h"

#include <QRegularExpression>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QString withoutExtension(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? name : name.first(dot);
}

QString withoutCopyMarker(const QString& stem) {
    static const QRegularExpression marker(u" \\([0-9]+\\)$"_s);
    return QString(stem).remove(marker);
}

} // namespace

const QStringList& supportedVideoExtensions() {
    static const QStringList extensions{
        u"mp4"_s,  u"mkv"_s, u"avi"_s,  u"mov"_s, u"m4v"_s,
        u"webm"_s, u"ts"_s,  u"m2ts"_s, u"flv"_s, u"wmv"_s,
    };
    return extensions;
}

const QStringList& supportedSubtitleExtensions() {
    static const QStringList extensions{
        u"srt"_s, u"sub"_s, u"vtt"_s, u"ass"_s, u"ssa"_s, u"ttml"_s, u"xml"_s, u"txt"_s,
    };
    return extensions;
}

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
    return withoutExtension(lastComponent) + u'.' + (extension.isEmpty() ? u"srt"_s : extension);
}

} // namespace quiv

#include "simulator/library/media_entry.h"

#include <QLatin1String>
#include <QStringList>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

QString extensionOf(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? QString() : name.mid(dot + 1).toLower();
}

} // namespace

MediaEntry::Kind kindOfName(const QString& name) {
    static const QStringList videos = u"mp4 m4v mov mkv webm avi ts m2ts mpg mpeg "
                                      "wmv flv 3gp ogv"_s.split(u' ');
    static const QStringList subtitles = u"srt vtt ass ssa sub"_s.split(u' ');
    const QString extension = extensionOf(name);
    if (videos.contains(extension))
        return MediaEntry::Kind::Video;
    return subtitles.contains(extension) ? MediaEntry::Kind::Subtitle : MediaEntry::Kind::Other;
}

bool isPartial(const QString& name) {
    return name.endsWith(QLatin1String(MovingSuffix)) ||
           name.startsWith(QLatin1String(UploadingPrefix));
}

namespace {

QString withoutExtension(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot <= 0 ? name : name.left(dot);
}

} // namespace

QString displayNameOf(const QString& name) {
    return withoutExtension(name).replace(u'.', u' ').replace(u'_', u' ').simplified();
}

QString baseNameOf(const QString& name) {
    return withoutExtension(name).toLower();
}

namespace {

QByteArray kindWord(MediaEntry::Kind kind) {
    switch (kind) {
    case MediaEntry::Kind::Video:
        return "VIDEO";
    case MediaEntry::Kind::Subtitle:
        return "SUBTITLE";
    case MediaEntry::Kind::Other:
        break;
    }
    return "OTHER";
}

// By hand, since a listing of 100,000 entries built from JSON values takes seconds.
void appendJsonText(QByteArray& json, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    json += '"';
    for (const char byte : bytes) {
        if (byte == '"' || byte == '\\')
            json += '\\';
        if (static_cast<unsigned char>(byte) < 0x20)
            json += "\\u" + QByteArray::number(byte, 16).rightJustified(4, '0');
        else
            json += byte;
    }
    json += '"';
}

} // namespace

void appendFileJson(QByteArray& json, const MediaEntry& entry) {
    json += "{\"name\":";
    appendJsonText(json, entry.name);
    json += ",\"kind\":\"" + kindWord(entry.kind) + '"';
    json += ",\"sizeBytes\":" + QByteArray::number(entry.sizeBytes);
    json += ",\"lastModifiedMs\":" + QByteArray::number(entry.lastModifiedMs) + '}';
}

void appendVideoJson(QByteArray& json, const MediaEntry& entry) {
    json += "{\"name\":";
    appendJsonText(json, entry.name);
    json += ",\"displayName\":";
    appendJsonText(json, entry.displayName);
    json += ",\"sizeBytes\":" + QByteArray::number(entry.sizeBytes);
    json += ",\"subtitleCount\":" + QByteArray::number(entry.subtitleCount);
    json += entry.onUsb ? ",\"storageLocation\":\"USB\"" : ",\"storageLocation\":\"INTERNAL\"";
    json += ",\"lastModifiedMs\":" + QByteArray::number(entry.lastModifiedMs) + '}';
}

} // namespace quiv::simulator

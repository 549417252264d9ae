#include "ui/window/plain_font.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QRawFont>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// Offsets and sizes are those of every OpenType font.
constexpr qsizetype FeatureListOffset = 6;
constexpr qsizetype FeatureRecordSize = 6;
constexpr qsizetype TableRecordSize = 16;
constexpr qsizetype FileHeaderSize = 12;

quint16 wordAt(const QByteArray& bytes, qsizetype place) {
    return place >= 0 && place + 2 <= bytes.size()
               ? qFromBigEndian<quint16>(bytes.constData() + place)
               : quint16(0);
}

void append(QByteArray& bytes, quint16 word) {
    std::array<char, 2> big{};
    qToBigEndian(word, big.data());
    bytes.append(big.data(), big.size());
}

void append(QByteArray& bytes, quint32 number) {
    append(bytes, static_cast<quint16>(number >> 16));
    append(bytes, static_cast<quint16>(number));
}

QByteArray padded(QByteArray bytes) {
    bytes.append((4 - bytes.size() % 4) % 4, '\0');
    return bytes;
}

// Returns an empty list if the font has neither feature, or holds several weights in one.
QList<FontTable> copiedTables(const QRawFont& font) {
    const QByteArray substitutions = font.fontTable("GSUB");
    if (withTabularFigures(substitutions) == substitutions || !font.fontTable("fvar").isEmpty())
        return {};
    QList<FontTable> tables;
    for (const char* tag : {"CFF ", "GDEF", "GPOS", "OS/2", "cmap", "cvt ", "fpgm", "gasp", "glyf",
                            "head", "hhea", "hmtx", "loca", "maxp", "post", "prep"}) {
        if (const QByteArray content = font.fontTable(tag); !content.isEmpty())
            tables.append({tag, content});
    }
    tables.append({"GSUB", withTabularFigures(substitutions)});
    return tables;
}

bool addCopy(const QString& family, const QString& copy, int weight) {
    QFont wanted(family);
    wanted.setWeight(static_cast<QFont::Weight>(weight));
    const QRawFont font = QRawFont::fromFont(wanted);
    if (font.weight() != weight || font.familyName() != QFontInfo(wanted).family())
        return false;
    QList<FontTable> tables = copiedTables(font);
    if (tables.isEmpty())
        return false;
    tables.append({"name", nameTable(copy)});
    return QFontDatabase::addApplicationFontFromData(fontFile(tables)) >= 0;
}

} // namespace

QByteArray withTabularFigures(QByteArray substitutions) {
    const qsizetype list = wordAt(substitutions, FeatureListOffset);
    const qsizetype count = wordAt(substitutions, list);
    for (qsizetype index = 0; list > 0 && index < count; ++index) {
        const qsizetype place = list + 2 + index * FeatureRecordSize;
        if (place + 4 > substitutions.size())
            break;
        const QByteArray tag = substitutions.mid(place, 4);
        if (tag == "calt")
            substitutions.replace(place, 4, "tnum");
        else if (tag == "tnum")
            substitutions.replace(place, 4, "calt");
    }
    return substitutions;
}

QByteArray nameTable(const QString& family) {
    QByteArray text;
    for (const QChar letter : family)
        append(text, static_cast<quint16>(letter.unicode()));
    QByteArray table;
    for (const int word : {0, 1, 6 + 12, 3, 1, 0x409, 1, static_cast<int>(text.size()), 0})
        append(table, static_cast<quint16>(word)); // one record: Windows, Unicode, English, family
    return table + text;
}

QByteArray fontFile(const QList<FontTable>& tables) {
    const bool hasCff = std::any_of(tables.begin(), tables.end(),
                                    [](const FontTable& table) { return table.tag == "CFF "; });
    QByteArray file(hasCff ? QByteArray("OTTO") : QByteArray("\0\1\0\0", 4));
    append(file, static_cast<quint16>(tables.size()));
    file.append(6, '\0'); // for binary searches, which nobody makes
    QByteArray contents;
    const qsizetype start = FileHeaderSize + tables.size() * TableRecordSize;
    for (const FontTable& table : tables) {
        file += table.tag;
        append(file, quint32(0)); // no checksum
        append(file, static_cast<quint32>(start + contents.size()));
        append(file, static_cast<quint32>(table.content.size()));
        contents += padded(table.content);
    }
    return file + contents;
}

QString plainFamily(const QString& family, int weight) {
    // A family for each weight: Qt keeps several faces from memory apart by their family only.
    const QString copy = u"Quiv %1 %2"_s.arg(family).arg(weight);
    return QFontDatabase::hasFamily(copy) || addCopy(family, copy, weight) ? copy : family;
}

} // namespace quiv

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace quiv {

// Fonts that write "x265" as it is and give every digit the same width.
//
// Qt 6.4 cannot choose a font's features: it always applies contextual alternates, which write a
// multiplication sign between digits, and never tabular figures. So the font is loaded once more
// under another name, with these features in each other's place.

struct FontTable {
    QByteArray tag; // four letters
    QByteArray content;
};

// The substitution table of an OpenType font with tabular figures where contextual alternates were.
// Anything that is no such table stays as it is.
QByteArray withTabularFigures(QByteArray substitutions);

// A font file of these tables.
QByteArray fontFile(const QList<FontTable>& tables);

// A "name" table with this family's name, and nothing else.
QByteArray nameTable(const QString& family);

// Makes such a font of one weight. Returns its family, or the given one if that has neither feature
// or cannot be copied.
QString plainFamily(const QString& family, int weight);

} // namespace quiv

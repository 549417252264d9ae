#pragma once

#include <QByteArrayView>

namespace quiv {

// How much structure a JSON text has.
struct JsonStructure {
    int depth = 0;            // of lists and objects within each other
    qsizetype containers = 0; // lists and objects, empty ones too
    qsizetype values = 0;     // members and elements at all levels; never less than there are

    bool operator==(const JsonStructure&) const = default;
};

// Counts in one pass over the bytes and builds nothing: what is built of a few bytes of structure
// takes up to forty times their room. Total; of what is no JSON it counts the signs.
JsonStructure structureOf(QByteArrayView json);

} // namespace quiv

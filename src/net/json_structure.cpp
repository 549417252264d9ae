#include "net/json_structure.h"

#include <algorithm>

namespace quiv {

namespace {

// The place of the quotation mark that ends the text beginning at `begin`, or one behind the bytes.
qsizetype endOfText(QByteArrayView json, qsizetype begin) {
    qsizetype place = begin + 1;
    while (place < json.size() && json[place] != '"')
        place += json[place] == '\\' ? 2 : 1;
    return place;
}

} // namespace

JsonStructure structureOf(QByteArrayView json) {
    JsonStructure structure;
    int depth = 0;
    for (qsizetype place = 0; place < json.size(); ++place) {
        switch (json[place]) {
        case '"':
            place = endOfText(json, place);
            break;
        case '[':
        case '{':
            ++structure.containers;
            ++structure.values; // the first one in it
            structure.depth = std::max(structure.depth, ++depth);
            break;
        case ']':
        case '}':
            --depth;
            break;
        case ',':
            ++structure.values;
            break;
        default:
            break;
        }
    }
    return structure;
}

} // namespace quiv

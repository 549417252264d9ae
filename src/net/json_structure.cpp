#include "net/json_structure.h"

#include <algorithm>

namespace quiv {

namespace {

// Whether the sign at `place` follows an odd number of backslashes, none of them before `begin`.
bool isEscaped(QByteArrayView json, qsizetype begin, qsizetype place) {
    qsizetype first = place;
    while (first > begin && json[first - 1] == '\\')
        --first;
    return (place - first) % 2 != 0;
}

// The place of the quotation mark that ends the text beginning at `begin`, or one behind the bytes.
qsizetype endOfText(QByteArrayView json, qsizetype begin) {
    qsizetype place = json.indexOf('"', begin + 1);
    while (place >= 0 && isEscaped(json, begin + 1, place))
        place = json.indexOf('"', place + 1);
    return place < 0 ? json.size() : place;
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

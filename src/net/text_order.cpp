#include "net/text_order.h"

#include <algorithm>

namespace quiv {

bool comesBeforeByCodePoints(QStringView a, QStringView b) {
    const auto [inA, inB] = std::ranges::mismatch(a, b);
    if (inA == a.end() || inB == b.end())
        return inA == a.end() && inB != b.end();
    // Equal high surrogates before them were passed over, so comparing low ones is right too.
    if (inA->isSurrogate() != inB->isSurrogate())
        return inB->isSurrogate();
    return *inA < *inB;
}

} // namespace quiv

#pragma once

#include <utility>

namespace quiv {

// The one way a part changes what views read: assigns and notifies only when the value differs.
template <class Part, class Value>
bool publish(Part* part, Value& slot, Value value, void (Part::*changed)()) {
    if (slot == value)
        return false;
    slot = std::move(value);
    (part->*changed)();
    return true;
}

} // namespace quiv

#pragma once

#include "platform/appearance/desktop_appearance.h"

namespace quiv {

// A desktop whose look the test sets; it states nothing at first.
class FakeAppearance final : public DesktopAppearance {
public:
    using DesktopAppearance::setLook;
};

} // namespace quiv

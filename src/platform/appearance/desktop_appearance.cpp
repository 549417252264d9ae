#include "platform/appearance/desktop_appearance.h"

#include "platform/publish.h"

namespace quiv {

void DesktopAppearance::setLook(const DesktopLook& look) {
    publish(this, m_look, look, &DesktopAppearance::lookChanged);
}

} // namespace quiv

#include "ui/accessible/announcer.h"

#include <QAccessible>
#include <QQuickItem>

namespace quiv {

// Screen readers read a notification out when it appears, and not when its words change; so each
// of them appears anew. The bridge of Qt 6.4 does not pass alerts on.
void Announcer::announce(QQuickItem* item) const {
    QAccessibleEvent event(item, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

} // namespace quiv

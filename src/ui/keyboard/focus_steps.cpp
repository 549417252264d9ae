#include "ui/keyboard/focus_steps.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace quiv {

void FocusSteps::enter(QQuickItem* item) const {
    if (!item)
        return;
    forget(item);
    item->forceActiveFocus(Qt::OtherFocusReason);
}

void FocusSteps::forget(QQuickItem* item) const {
    if (QQuickItem* control = item->scopedFocusItem())
        control->setFocus(false);
}

void FocusSteps::step(QQuickItem* item, bool isForward) const {
    QQuickItem* focused = item && item->window() ? item->window()->activeFocusItem() : nullptr;
    if (!focused)
        return;
    QQuickItem* next = focused->nextItemInFocusChain(isForward);
    if (next && item->isAncestorOf(next))
        next->forceActiveFocus(isForward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    else if (!isForward)
        enter(item);
}

} // namespace quiv

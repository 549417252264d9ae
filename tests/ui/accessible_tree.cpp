#include "accessible_tree.h"

#include <QWindow>

#include <functional>

namespace quiv {

namespace {

// Until `visit` says false.
bool walk(QAccessibleInterface* element, const std::function<bool(QAccessibleInterface*)>& visit) {
    if (!element || element->state().invisible)
        return true;
    if (!visit(element))
        return false;
    for (int child = 0; child < element->childCount(); ++child) {
        if (!walk(element->child(child), visit))
            return false;
    }
    return true;
}

} // namespace

QAccessibleInterface* findAccessible(QWindow* window, QAccessible::Role role, const QString& name) {
    QAccessibleInterface* found = nullptr;
    walk(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface* element) {
        if (element->role() == role && element->text(QAccessible::Name) == name)
            found = element;
        return !found;
    });
    return found;
}

QStringList accessibleNames(QWindow* window, QAccessible::Role role) {
    QStringList names;
    walk(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface* element) {
        if (element->role() == role)
            names.append(element->text(QAccessible::Name));
        return true;
    });
    return names;
}

bool pressAccessible(QWindow* window, QAccessible::Role role, const QString& name) {
    QAccessibleInterface* element = findAccessible(window, role, name);
    QAccessibleActionInterface* actions = element ? element->actionInterface() : nullptr;
    const QString press = QAccessibleActionInterface::pressAction();
    if (!actions || !actions->actionNames().contains(press))
        return false;
    actions->doAction(press);
    return true;
}

} // namespace quiv

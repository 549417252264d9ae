#include "accessible_tree.h"

#include <QWindow>

#include <functional>

namespace quiv {

namespace {

void walk(QAccessibleInterface* element, const std::function<void(QAccessibleInterface*)>& visit) {
    if (!element || element->state().invisible)
        return;
    visit(element);
    for (int child = 0; child < element->childCount(); ++child)
        walk(element->child(child), visit);
}

} // namespace

QAccessibleInterface* findAccessible(QWindow* window, QAccessible::Role role, const QString& name) {
    return findAllAccessible(window, role, name).value(0);
}

QList<QAccessibleInterface*> findAllAccessible(QWindow* window, QAccessible::Role role,
                                               const QString& name) {
    QList<QAccessibleInterface*> found;
    walk(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface* element) {
        if (element->role() == role && element->text(QAccessible::Name) == name)
            found.append(element);
    });
    return found;
}

QStringList accessibleNames(QWindow* window, QAccessible::Role role) {
    QStringList names;
    walk(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface* element) {
        if (element->role() == role)
            names.append(element->text(QAccessible::Name));
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

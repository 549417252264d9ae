#pragma once

#include <QAccessible>
#include <QString>
#include <QStringList>

class QWindow;

namespace quiv {

// The window as assistive technology finds it. What is not shown is not found.

// The first of this role and name; null when there is none.
QAccessibleInterface* findAccessible(QWindow* window, QAccessible::Role role, const QString& name);

// All such elements, in order.
QList<QAccessibleInterface*> findAllAccessible(QWindow* window, QAccessible::Role role,
                                               const QString& name);

// The names of all of this role, from top to bottom.
QStringList accessibleNames(QWindow* window, QAccessible::Role role);

// Carries out the press action; false when there is no such element or it has none.
bool pressAccessible(QWindow* window, QAccessible::Role role, const QString& name);

} // namespace quiv

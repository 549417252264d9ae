#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace quiv {

// Has a screen reader say what happens away from the keyboard's focus.
class Announcer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // Says the item's accessible name; its role is that of a notification.
    Q_INVOKABLE void announce(QQuickItem* item) const;
};

} // namespace quiv

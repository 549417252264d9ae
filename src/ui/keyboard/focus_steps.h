#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace quiv {

// Moves the keyboard's focus within one item: from the item itself through its controls.
class FocusSteps : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // Gives the focus to the item itself rather than to one of its controls. Does nothing for
    // nullptr.
    Q_INVOKABLE void enter(QQuickItem* item) const;
    // None of its controls will have the focus when the item gets it.
    Q_INVOKABLE void forget(QQuickItem* item) const;
    // On to the item's next control, or back to the one before, at last to the item itself.
    Q_INVOKABLE void step(QQuickItem* item, bool isForward) const;
};

} // namespace quiv

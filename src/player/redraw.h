#pragma once

#include <QPointer>
#include <QQuickItem>

#include <memory>

namespace quiv {

// Has an item drawn anew, from any thread. Made while the main thread cannot destroy the item;
// whoever holds it may outlive the item and go on any thread.
class Redraw {
public:
    explicit Redraw(QQuickItem* item)
        : m_receiver(new QObject, [](QObject* receiver) { receiver->deleteLater(); }),
          m_item(item) {
        m_receiver->moveToThread(item->thread());
    }

    void post() const {
        QMetaObject::invokeMethod(
            m_receiver.get(),
            [item = m_item] {
                if (item)
                    item->update();
            },
            Qt::QueuedConnection);
    }

private:
    const std::shared_ptr<QObject> m_receiver;
    const QPointer<QQuickItem> m_item;
};

} // namespace quiv

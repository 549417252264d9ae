#pragma once

#include "model/window_state.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace quiv {

// A question about the selected TV that waits for a yes or no, and goes with its TV.
class PromptPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    using QObject::QObject;

    bool isShown() const { return m_confirmed != nullptr; }
    // The text stays while the prompt fades.
    const QString& message() const { return m_message; }

    void show(const WindowState& state);

    // Asks this instead of what was asked before.
    void ask(const QString& message, std::function<void()> confirmed);

    Q_INVOKABLE void cancel();
    Q_INVOKABLE void confirm();

Q_SIGNALS:
    void changed();

private:
    WindowState m_state;
    QString m_message;
    std::function<void()> m_confirmed; // empty while nothing is asked
};

} // namespace quiv

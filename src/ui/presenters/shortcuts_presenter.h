#pragma once

#include "ui/presenters/keyboard_commands.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace quiv {

// The keys that work anywhere in the window, and the page that tells of all keys.
class ShortcutsPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
    Q_PROPERTY(QStringList keys READ keys CONSTANT)
    Q_PROPERTY(QStringList meanings READ meanings CONSTANT)

public:
    // No key acts while `isBlocked` says so: a dialog may have to wait a moment for the focus.
    explicit ShortcutsPresenter(std::function<bool()> isBlocked, QObject* parent = nullptr);

    bool isShown() const { return m_isShown; }
    // The page's lines: keys and, at the same place, what they do.
    QStringList keys() const;
    QStringList meanings() const;

    Q_INVOKABLE quiv::KeyboardCommand::InWindow commandFor(int key, int modifiers) const;
    Q_INVOKABLE quiv::KeyboardCommand::InList
    listCommandFor(int key, int modifiers, const QString& text, bool isTyping) const;
    Q_INVOKABLE int rowAfter(int key, int current, int count, int perPage) const;

    Q_INVOKABLE void present();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void isShownChanged();

private:
    std::function<bool()> m_isBlocked;
    bool m_isShown = false;
};

} // namespace quiv

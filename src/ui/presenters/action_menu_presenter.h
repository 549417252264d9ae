#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace quiv {

// An entry of a menu. One that is not enabled is shown, but not chosen.
struct ActionMenuEntry {
    QString text;
    QString symbol;
    bool isEnabled = true;
    std::function<void()> choose;
};

// The menu that is open, or was open last: what can be done with a row of the list, or which of its
// files can be downloaded.
class ActionMenuPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the library's presenter")
    Q_PROPERTY(QString label READ label NOTIFY changed)
    Q_PROPERTY(QStringList texts READ texts NOTIFY changed)
    Q_PROPERTY(QStringList symbols READ symbols NOTIFY changed)
    Q_PROPERTY(QVariantList enabledStates READ enabledStates NOTIFY changed)

public:
    using QObject::QObject;

    // What the menu is about.
    const QString& label() const { return m_label; }
    QStringList texts() const;
    QStringList symbols() const;
    QVariantList enabledStates() const;

    void offer(const QString& label, const QList<ActionMenuEntry>& entries);
    Q_INVOKABLE void choose(int index);

Q_SIGNALS:
    void changed();

private:
    QString m_label;
    QList<ActionMenuEntry> m_entries;
};

} // namespace quiv

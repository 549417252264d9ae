#include "ui/presenters/action_menu_presenter.h"

namespace quiv {

QStringList ActionMenuPresenter::texts() const {
    QStringList texts;
    for (const ActionMenuEntry& entry : m_entries)
        texts.append(entry.text);
    return texts;
}

QStringList ActionMenuPresenter::symbols() const {
    QStringList symbols;
    for (const ActionMenuEntry& entry : m_entries)
        symbols.append(entry.symbol);
    return symbols;
}

QVariantList ActionMenuPresenter::enabledStates() const {
    QVariantList states;
    for (const ActionMenuEntry& entry : m_entries)
        states.append(entry.isEnabled);
    return states;
}

void ActionMenuPresenter::offer(const QString& label, const QList<ActionMenuEntry>& entries) {
    m_label = label;
    m_entries = entries;
    Q_EMIT changed();
}

void ActionMenuPresenter::choose(int index) {
    if (index < 0 || index >= m_entries.size() || !m_entries[index].isEnabled)
        return;
    const auto choose = m_entries[index].choose; // may offer another menu
    choose();
}

} // namespace quiv

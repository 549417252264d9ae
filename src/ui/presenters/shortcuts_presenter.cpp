#include "ui/presenters/shortcuts_presenter.h"

#include "platform/publish.h"

#include <array>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

struct Line {
    const char16_t* keys;
    const char16_t* meaning;
};

constexpr std::array Lines{
    Line{u"Ctrl+F or /", u"Search the files on this TV"},
    Line{u"Escape", u"Clear the search and leave it"},
    Line{u"Down", u"From the search to what was found"},
    Line{u"F5", u"Search for TVs"},
    Line{u"Ctrl+O", u"Upload to the TV"},
    Line{u"Space", u"Pause or go on"},
    Line{u"Arrows, Home, End, Page Up, Page Down", u"Go to another title"},
    Line{u"Letters", u"Go to the title that begins so"},
    Line{u"Left, Right", u"Go through the buttons of a title"},
    Line{u"Enter", u"Play or pause a title"},
    Line{u"Delete", u"Delete the selected titles"},
    Line{u"Menu or Shift+F10", u"Everything that can be done with a title"},
    Line{u"Shift+Up, Shift+Down", u"Select several titles"},
    Line{u"Ctrl+Space", u"Select a title in addition"},
    Line{u"Ctrl+A", u"Select all titles"},
    Line{u"Ctrl+?", u"Show this page"},
    Line{u"Ctrl+Q", u"Quit"},
};

QKeyCombination combination(int key, int modifiers) {
    return QKeyCombination(Qt::KeyboardModifiers::fromInt(modifiers), static_cast<Qt::Key>(key));
}

} // namespace

ShortcutsPresenter::ShortcutsPresenter(std::function<bool()> isBlocked, QObject* parent)
    : QObject(parent), m_isBlocked(std::move(isBlocked)) {}

QStringList ShortcutsPresenter::keys() const {
    QStringList keys;
    for (const Line& line : Lines)
        keys.append(QString::fromUtf16(line.keys));
    return keys;
}

QStringList ShortcutsPresenter::meanings() const {
    QStringList meanings;
    for (const Line& line : Lines)
        meanings.append(QString::fromUtf16(line.meaning));
    return meanings;
}

KeyboardCommand::InWindow ShortcutsPresenter::commandFor(int key, int modifiers) const {
    if (m_isBlocked())
        return KeyboardCommand::InWindow::None;
    return windowCommand(combination(key, modifiers));
}

KeyboardCommand::InList ShortcutsPresenter::listCommandFor(int key, int modifiers,
                                                           const QString& text,
                                                           bool isTyping) const {
    if (m_isBlocked())
        return KeyboardCommand::InList::None;
    return listCommand(combination(key, modifiers), text, isTyping);
}

int ShortcutsPresenter::rowAfter(int key, int current, int count, int perPage) const {
    return rowAfterKey(static_cast<Qt::Key>(key), current, count, perPage);
}

void ShortcutsPresenter::present() {
    publish(this, m_isShown, true, &ShortcutsPresenter::isShownChanged);
}

void ShortcutsPresenter::dismiss() {
    publish(this, m_isShown, false, &ShortcutsPresenter::isShownChanged);
}

} // namespace quiv

#include "ui/presenters/keyboard_commands.h"

#include <algorithm>

namespace quiv {

namespace {

using InList = KeyboardCommand::InList;
using InWindow = KeyboardCommand::InWindow;

InList commandWithControl(Qt::Key key) {
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return InList::GoOnly;
    case Qt::Key_A:
        return InList::SelectAll;
    case Qt::Key_Space:
        return InList::ToggleSelected;
    default:
        return InList::None;
    }
}

} // namespace

KeyboardCommand::InList listCommand(QKeyCombination keys, const QString& text, bool isTyping) {
    const Qt::KeyboardModifiers modifiers = keys.keyboardModifiers() & ~Qt::KeypadModifier;
    const bool hasShift = modifiers.testFlag(Qt::ShiftModifier);
    if (modifiers.testFlag(Qt::ControlModifier) && !hasShift)
        return commandWithControl(keys.key());
    switch (keys.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return InList::Go;
    case Qt::Key_Right:
        return InList::NextButton;
    case Qt::Key_Left:
        return InList::PreviousButton;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return InList::Primary;
    case Qt::Key_Delete:
        return hasShift ? InList::None : InList::Delete;
    case Qt::Key_Menu:
        return InList::OpenMenu;
    case Qt::Key_F10:
        return hasShift ? InList::OpenMenu : InList::None;
    case Qt::Key_Escape:
        return InList::ClearSelection;
    default:
        break;
    }
    const bool types = !text.isEmpty() && text.front().isPrint() &&
                       (modifiers & ~Qt::ShiftModifier) == Qt::NoModifier;
    const bool isCommand = keys.key() == Qt::Key_Space || keys.key() == Qt::Key_Slash;
    return types && (isTyping || !isCommand) ? InList::Type : InList::None;
}

KeyboardCommand::InWindow windowCommand(QKeyCombination keys) {
    const Qt::KeyboardModifiers modifiers = keys.keyboardModifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::NoModifier || keys.key() == Qt::Key_Slash) {
        switch (keys.key()) {
        case Qt::Key_Slash: // typed with Shift on some keyboards
            return modifiers.testFlag(Qt::ControlModifier) ? InWindow::None : InWindow::Search;
        case Qt::Key_F5:
            return InWindow::Refresh;
        case Qt::Key_Space:
            return InWindow::Pause;
        default:
            return InWindow::None;
        }
    }
    if ((modifiers & ~Qt::ShiftModifier) != Qt::ControlModifier)
        return InWindow::None;
    if (keys.key() == Qt::Key_Question)
        return InWindow::ShowShortcuts;
    if (modifiers != Qt::ControlModifier)
        return InWindow::None;
    switch (keys.key()) {
    case Qt::Key_F:
        return InWindow::Search;
    case Qt::Key_O:
        return InWindow::Upload;
    case Qt::Key_Q:
        return InWindow::Quit;
    default:
        return InWindow::None;
    }
}

int rowAfterKey(Qt::Key key, int current, int count, int perPage) {
    const auto target = [&] {
        switch (key) {
        case Qt::Key_Up:
            return current - 1;
        case Qt::Key_Down:
            return current + 1;
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return count - 1;
        case Qt::Key_PageUp:
            return current - perPage;
        case Qt::Key_PageDown:
            return current + perPage;
        default:
            return current;
        }
    };
    return std::max(0, std::min(count - 1, target()));
}

} // namespace quiv

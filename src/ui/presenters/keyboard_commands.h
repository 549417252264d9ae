#pragma once

#include <QKeyCombination>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// What keys mean: pure functions on values.
namespace quiv {

namespace KeyboardCommand {
Q_NAMESPACE
QML_ELEMENT

// In the library's list.
enum class InList {
    None,
    Go,         // to another row, selecting as the modifiers say
    GoOnly,     // to another row, leaving the selection as it is
    NextButton, // of the row
    PreviousButton,
    Primary, // what Enter does with the row
    Delete,
    OpenMenu,
    SelectAll,
    ToggleSelected,
    ClearSelection,
    Type, // the beginning of a title
};
Q_ENUM_NS(InList)

// Anywhere in the window, unless what has the focus takes the key itself.
enum class InWindow { None, Search, Refresh, Upload, Pause, ShowShortcuts, Quit };
Q_ENUM_NS(InWindow)
} // namespace KeyboardCommand

// `text` is what the key types; `isTyping` says whether the beginning of a title was typed just
// now, which a blank or a slash then belongs to.
KeyboardCommand::InList listCommand(QKeyCombination keys, const QString& text, bool isTyping);

KeyboardCommand::InWindow windowCommand(QKeyCombination keys);

// The row that a key leads to from the current one, as `perPage` rows fit the view; the current one
// for other keys.
int rowAfterKey(Qt::Key key, int current, int count, int perPage);

} // namespace quiv

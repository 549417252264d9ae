#pragma once

#include <QString>

namespace quiv {

// A text from outside on one line, for views and logs: line breaks become blanks, other control
// characters, those that steer the writing direction and halves of surrogate pairs become U+FFFD,
// and what is too long for any line is cut.
QString displayText(const QString& text);

} // namespace quiv

#include "platform/display_text.h"

#include <algorithm>

namespace quiv {

namespace {

// Beyond any line that fits a screen; keeps laying out a hostile text cheap.
constexpr qsizetype LongestDisplayText = 1000;

bool steersDirection(char16_t character) {
    return character == 0x061c || character == 0x200e || character == 0x200f ||
           (character >= 0x202a && character <= 0x202e) ||
           (character >= 0x2066 && character <= 0x2069);
}

QChar displayCharacter(QChar character) {
    switch (character.unicode()) {
    case u'\t':
    case u'\n':
    case u'\v':
    case u'\f':
    case u'\r':
    case 0x0085: // next line
    case 0x2028: // line separator
    case 0x2029: // paragraph separator
        return u' ';
    default:
        break;
    }
    const bool replaced =
        character.category() == QChar::Other_Control || steersDirection(character.unicode());
    return replaced ? QChar(QChar::ReplacementCharacter) : character;
}

void replaceHalfPairs(QString& text) {
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (!text[place].isSurrogate())
            continue;
        const bool isPair = text[place].isHighSurrogate() && place + 1 < text.size() &&
                            text[place + 1].isLowSurrogate();
        if (isPair)
            ++place;
        else
            text[place] = QChar::ReplacementCharacter;
    }
}

} // namespace

QString displayText(const QString& text) {
    QString shown = text.left(LongestDisplayText);
    if (shown.size() < text.size() && shown.back().isHighSurrogate())
        shown.chop(1);
    std::transform(shown.cbegin(), shown.cend(), shown.begin(), displayCharacter);
    replaceHalfPairs(shown);
    return shown.size() < text.size() ? shown + QChar(0x2026) : shown;
}

} // namespace quiv

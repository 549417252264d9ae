#include "transfer/download_names.h"

#include <QChar>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MostBytes = 255; // of a file name on the file systems in use
constexpr qsizetype LongestExtension = 16;

QString lastComponent(const QString& name) {
    return name.mid(std::max(name.lastIndexOf(u'/'), name.lastIndexOf(u'\\')) + 1);
}

// Also those that reorder what surrounds them, by which a name can pose as another.
bool isControl(QChar character) {
    return character.category() == QChar::Other_Control ||
           character.category() == QChar::Other_Format ||
           character.category() == QChar::Separator_Line ||
           character.category() == QChar::Separator_Paragraph;
}

void trimEnds(QString& name) {
    const auto isDropped = [](QChar character) {
        return character == u'.' || character.isSpace();
    };
    while (!name.isEmpty() && isDropped(name.back()))
        name.chop(1);
    const auto first = std::find_if_not(name.cbegin(), name.cend(), isDropped);
    name.remove(0, first - name.cbegin());
}

// Shortens the part before the extension, which `suffix` follows; never within a character.
void shorten(QString& name, const QString& suffix = {}) {
    const qsizetype dot = name.lastIndexOf(u'.');
    const bool hasExtension = dot > 0 && name.size() - dot <= LongestExtension;
    const QString extension = suffix + (hasExtension ? name.mid(dot) : QString());
    QString base = hasExtension ? name.left(dot) : name;
    const qsizetype room = MostBytes - extension.toUtf8().size();
    while (base.toUtf8().size() > room)
        base.chop(base.back().isLowSurrogate() ? 2 : 1);
    name = base + extension;
}

} // namespace

QString proposedDownloadName(const QString& remoteName) {
    QString name = lastComponent(remoteName);
    name.removeIf(isControl);
    trimEnds(name);
    shorten(name);
    return name.isEmpty() ? u"Download"_s : name;
}

QString numberedDownloadName(const QString& name, int number) {
    QString numbered = name;
    if (number > 0)
        shorten(numbered, u" (%1)"_s.arg(number));
    return numbered;
}

} // namespace quiv

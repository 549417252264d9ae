#include "ui/window/interface_font.h"

#include <QStringList>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr double UnchosenPixelSize = 13;
constexpr double PointsPerInch = 72;

bool isClassOfFonts(const QString& family) {
    const QString name = family.toLower().remove(u' ').remove(u'-');
    return name.isEmpty() || name == u"sans"_s || name == u"sansserif"_s;
}

// What the toolkit answers where no desktop has named a font.
bool isUnchosen(const QFont& toolkit) {
    return toolkit.family() == u"Sans Serif"_s && toolkit.pointSizeF() == 9;
}

} // namespace

InterfaceFont interfaceFont(const DesktopLook& look, const QFont& toolkit, double pixelsPerInch) {
    const bool isStated = look.fontPoints > 0;
    const QString family = isStated ? look.fontFamily : toolkit.family();
    const double points = isStated ? look.fontPoints : toolkit.pointSizeF();
    InterfaceFont font;
    if (!isClassOfFonts(family))
        font.family = family;
    if (!isStated && isUnchosen(toolkit))
        font.pixelSize = UnchosenPixelSize;
    else
        font.pixelSize = points > 0 ? points * pixelsPerInch / PointsPerInch : toolkit.pixelSize();
    font.pixelSize *= look.textScale;
    return font;
}

} // namespace quiv

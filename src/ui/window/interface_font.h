#pragma once

#include "platform/appearance/desktop_look.h"

#include <QFont>
#include <QString>

namespace quiv {

struct InterfaceFont {
    QString family; // empty if nobody chose one
    double pixelSize = 0;

    bool operator==(const InterfaceFont&) const = default;
};

// The desktop's interface font: as its portal states it, else as the toolkit found it. Its size
// holds even where its family is only a class of fonts, such as "Sans".
InterfaceFont interfaceFont(const DesktopLook& look, const QFont& toolkit, double pixelsPerInch);

} // namespace quiv

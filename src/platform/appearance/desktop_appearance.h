#pragma once

#include "platform/appearance/desktop_look.h"

#include <QObject>

namespace quiv {

// The desktop's look as far as it is known, kept current. Main thread only.
class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    const DesktopLook& look() const { return m_look; }

Q_SIGNALS:
    void lookChanged();

protected:
    void setLook(const DesktopLook& look);

private:
    DesktopLook m_look;
};

} // namespace quiv

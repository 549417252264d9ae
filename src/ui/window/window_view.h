#pragma once

#include <QQmlApplicationEngine>

class QQuickWindow;

namespace quiv {

class DesktopAppearance;
class WindowPresenter;

// The window's views, loaded from the program's resources and bound to a presenter in the look of
// the desktop, which must both outlive them. Not shown yet.
class WindowView {
public:
    WindowView(WindowPresenter& presenter, const DesktopAppearance& appearance);

    // Returns nullptr if the views could not be loaded; the engine has then told why.
    QQuickWindow* window() const;

private:
    QQmlApplicationEngine m_engine;
};

} // namespace quiv

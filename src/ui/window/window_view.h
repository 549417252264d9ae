#pragma once

#include <QQmlApplicationEngine>

class QQuickWindow;

namespace quiv {

class WindowPresenter;

// The window's views, loaded from the program's resources and bound to a presenter, which must
// outlive them. Not shown yet.
class WindowView {
public:
    explicit WindowView(WindowPresenter& presenter);

    // Returns nullptr if the views could not be loaded; the engine has then told why.
    QQuickWindow* window() const;

private:
    QQmlApplicationEngine m_engine;
};

} // namespace quiv

#pragma once

#include "ui/desktop/desktop_ports.h"
#include "ui/window/window_ports.h"

#include <QList>
#include <QUrl>

#include <memory>

class QQuickWindow;

namespace quiv {

class OmbraMacModel;

// The application's one window.
//
// Made before any other window, because it decides how windows are drawn. The model must outlive
// it: it is told when the window appears and goes, and what the user asks for. Main thread only.
//
//     QGuiApplication application(argc, argv);
//     OmbraMacModel model(...);
//     MainWindow window(model, composition.windowPorts(), composition.desktopPorts());
//     if (!window.show())
//         return 1;
//     return application.exec(); // ends when the user closes the window
class MainWindow {
public:
    MainWindow(OmbraMacModel& model, const WindowPorts& ports, const DesktopPorts& desktop);
    ~MainWindow();

    // Returns false if the views could not be loaded, which the log explains.
    bool show();

    // Uploads files that come from outside to the selected TV, or to the first one that is.
    void open(const QList<QUrl>& files);

    // Brings the window to the front, with the desktop's leave if that gives tokens for it.
    void raise(const QString& activationToken);

    // Returns nullptr if the views could not be loaded.
    QQuickWindow* window() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace quiv

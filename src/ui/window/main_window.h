#pragma once

#include "ui/window/window_ports.h"

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
//     MainWindow window(model, {fileDialogs, http, pictures, clock});
//     if (!window.show())
//         return 1;
//     return application.exec(); // ends when the user closes the window
class MainWindow {
public:
    MainWindow(OmbraMacModel& model, const WindowPorts& ports);
    ~MainWindow();

    // Returns false if the views could not be loaded, which the log explains.
    bool show();

    // Returns nullptr if the views could not be loaded.
    QQuickWindow* window() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace quiv

#pragma once

#include <memory>

class QQuickWindow;

namespace quiv {

class OmbraMacModel;
class PreferredFileDialogs;

// The application's one window.
//
// Made before any other window, because it decides how windows are drawn. The model must outlive
// it: it is told when the window appears and goes, and what the user asks for. So must the file
// dialogs, which ask in the window where the desktop cannot. Main thread only.
//
//     QGuiApplication application(argc, argv);
//     OmbraMacModel model(...);
//     MainWindow window(model, fileDialogs);
//     if (!window.show())
//         return 1;
//     return application.exec(); // ends when the user closes the window
class MainWindow {
public:
    MainWindow(OmbraMacModel& model, PreferredFileDialogs& fileDialogs);
    ~MainWindow();

    // False when the views could not be loaded, which the log explains.
    bool show();

    // Null then.
    QQuickWindow* window() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace quiv

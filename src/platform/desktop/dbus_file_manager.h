#pragma once

#include "platform/desktop/file_manager.h"

#include <QObject>

namespace quiv {

// The file manager that answers on the session bus (org.freedesktop.FileManager1), else the program
// that opens folders (xdg-open). Main thread only; destroying it abandons what has no answer.
class DBusFileManager final : public QObject, public FileManager {
    Q_OBJECT

public:
    using QObject::QObject;

    void show(const QUrl& file) override;
};

} // namespace quiv

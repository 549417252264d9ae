#pragma once

#include <QUrl>

namespace quiv {

// The desktop's file manager.
class FileManager {
public:
    virtual ~FileManager() = default;
    // Opens the folder of a local file with the file selected, where the desktop can do that; else
    // the folder alone. Nothing comes back: the desktop tells the user what it cannot do.
    virtual void show(const QUrl& file) = 0;
};

} // namespace quiv

#pragma once

#include "platform/desktop/file_manager.h"

namespace quiv {

class FakeFileManager final : public FileManager {
public:
    void show(const QUrl& file) override { shown = file; }

    QUrl shown;
};

} // namespace quiv

#pragma once

#include "platform/async/promise.h"
#include "platform/dialogs/file_dialogs.h"
#include "support/memory_settings.h"

#include <QCoreApplication>

namespace quiv {

// A desktop's file dialogs that the test answers; there are none unless `isOffered`.
class FakeFileDialogs final : public FileDialogs {
public:
    Task<FileDialogAnswer> ask(FileDialogRequest request) override {
        if (!isOffered)
            co_return std::nullopt;
        requests.append(request);
        isAsked = true;
        m_answer = {};
        const std::function<void()> onDropped = [this] {
            ++dropped;
        };
        co_return co_await m_answer.wait(onDropped);
    }
    void answer(const FileDialogAnswer& files) {
        isAsked = false;
        m_answer.resolve(files);
        QCoreApplication::processEvents();
    }

    bool isOffered = false;
    bool isAsked = false; // and not answered yet
    int dropped = 0;
    QList<FileDialogRequest> requests;

private:
    Promise<FileDialogAnswer> m_answer;
};

// As if the desktop had none, until the test says otherwise.
struct FakeDesktopDialogs {
    FakeFileDialogs desktop;
    MemorySettings settings;
    PreferredFileDialogs preferred{desktop, settings};
};

} // namespace quiv

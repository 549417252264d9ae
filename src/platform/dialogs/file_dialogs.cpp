#include "platform/dialogs/file_dialogs.h"

namespace quiv {

Task<FileDialogAnswer> PreferredFileDialogs::ask(FileDialogRequest request) {
    FileDialogAnswer answer = co_await m_desktop.ask(request);
    if (answer || !m_fallback)
        co_return answer;
    co_return co_await m_fallback->ask(request);
}

} // namespace quiv

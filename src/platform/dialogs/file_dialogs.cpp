#include "platform/dialogs/file_dialogs.h"

namespace quiv {

Task<FileDialogAnswer> PreferredFileDialogs::ask(FileDialogRequest request) {
    auto asking = m_desktop.ask(request);
    FileDialogAnswer answer = co_await std::move(asking);
    if (answer || !m_fallback)
        co_return answer;
    auto askingAgain = m_fallback->ask(request);
    co_return co_await std::move(askingAgain);
}

} // namespace quiv

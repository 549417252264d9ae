#include "platform/dialogs/file_dialogs.h"

#include "platform/async/background.h"
#include "platform/dialogs/folder_listing.h"
#include "platform/settings_store.h"

#include <QFileInfo>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

bool isSaving(const FileDialogRequest& request) {
    return request.purpose != FileDialogRequest::Purpose::OpenOne &&
           request.purpose != FileDialogRequest::Purpose::OpenSeveral;
}

} // namespace

bool passes(const FileFilter& filter, const QString& fileName) {
    const auto isEnd = [&](const QString& extension) {
        return fileName.endsWith(u'.' + extension, Qt::CaseInsensitive);
    };
    return filter.extensions.isEmpty() || std::ranges::any_of(filter.extensions, isEnd);
}

Task<FileDialogAnswer> PreferredFileDialogs::ask(FileDialogRequest request) {
    const bool saves = isSaving(request);
    const QString key = saves ? u"FolderToSaveTo"_s : u"FolderToOpenFrom"_s;
    const auto looking = [last = m_settings.text(key).value_or(QString()), saves] {
        return startFolder(last, saves);
    };
    request.folder = co_await onDisk(looking);
    FileDialogAnswer answer = co_await askIn(request);
    if (answer && !answer->isEmpty() && answer->constFirst().isLocalFile()) {
        const QString path = answer->constFirst().toLocalFile();
        const bool isFolder = request.purpose == FileDialogRequest::Purpose::Folder;
        m_settings.setText(key, isFolder ? path : QFileInfo(path).path());
    }
    co_return answer;
}

Task<FileDialogAnswer> PreferredFileDialogs::askIn(FileDialogRequest request) {
    FileDialogAnswer answer = co_await m_desktop.ask(request);
    if (answer || !m_fallback)
        co_return answer;
    co_return co_await m_fallback->ask(request);
}

} // namespace quiv

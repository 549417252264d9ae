#include "platform/dialogs/file_dialogs.h"

#include "platform/async/background.h"
#include "platform/async/promise.h"
#include "platform/dialogs/folder_listing.h"
#include "platform/settings_store.h"

#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds LongestLook{1};

bool isSaving(const FileDialogRequest& request) {
    return request.purpose != FileDialogRequest::Purpose::OpenOne &&
           request.purpose != FileDialogRequest::Purpose::OpenSeveral;
}

Task<> look(QString last, bool saves, Promise<QString> found) {
    const auto looking = [last, saves] {
        return startFolder(last, saves);
    };
    found.resolve(co_await onDisk(looking));
}

// A disk that does not answer keeps no dialog away.
Task<QString> folderToBeginIn(QString last, bool saves) {
    const Promise<QString> found;
    QTimer patience;
    patience.callOnTimeout(&patience, [found] { found.resolve(QDir::homePath()); });
    patience.start(LongestLook);
    const Task<> looking = look(last, saves, found);
    co_return co_await found.wait();
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
    request.folder = co_await folderToBeginIn(m_settings.text(key).value_or(QString()), saves);
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

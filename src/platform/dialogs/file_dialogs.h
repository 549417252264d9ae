#pragma once

#include "platform/async/task.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <utility>

namespace quiv {

struct FileDialogRequest {
    enum class Purpose { OpenOne, OpenSeveral, Save, Folder };

    FileDialogRequest() = default;
    FileDialogRequest(Purpose itsPurpose, QString itsTitle, QString itsAcceptLabel,
                      QString itsProposedName = {})
        : purpose(itsPurpose),
          title(std::move(itsTitle)),
          acceptLabel(std::move(itsAcceptLabel)),
          proposedName(std::move(itsProposedName)) {}

    Purpose purpose = Purpose::OpenOne;
    QString title;
    QString acceptLabel;  // of the button that ends the dialog
    QString proposedName; // for Save only

    bool operator==(const FileDialogRequest&) const = default;
};

// The files of this computer that were chosen: an empty list if the user cancelled, nullopt if
// these dialogs cannot be shown here.
using FileDialogAnswer = std::optional<QList<QUrl>>;

// Asks the user for files. A place to save to is asked for once more before it is answered when a
// file is there already.
//
// Every request completes once; dropping the task closes the dialog.
class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    virtual Task<FileDialogAnswer> ask(FileDialogRequest request) = 0;
};

// The desktop's dialogs, or others where the desktop has none.
class PreferredFileDialogs final : public FileDialogs {
public:
    explicit PreferredFileDialogs(FileDialogs& desktop) : m_desktop(desktop) {}

    // The fallback has to be taken back with nullptr before it is destroyed.
    void setFallback(FileDialogs* fallback) { m_fallback = fallback; }

    Task<FileDialogAnswer> ask(FileDialogRequest request) override;

private:
    FileDialogs& m_desktop;
    FileDialogs* m_fallback = nullptr;
};

} // namespace quiv

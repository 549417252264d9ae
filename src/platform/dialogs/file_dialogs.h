#pragma once

#include "platform/async/task.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>
#include <utility>

namespace quiv {

class SettingsStore;

// Files whose names end in a dot and one of these, in letters of either case; all if there is none.
struct FileFilter {
    QString name;
    QStringList extensions;

    bool operator==(const FileFilter&) const = default;
};

bool passes(const FileFilter& filter, const QString& fileName);

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
    QString folder;       // where to begin; empty if it does not matter
    // Which files to show, for the user to choose from; the first at the beginning.
    QList<FileFilter> filters;

    bool operator==(const FileDialogRequest&) const = default;
};

// The files of this computer that were chosen: an empty list if the user cancelled, nullopt if
// these dialogs cannot be shown here. Some desktops offer places that are no files of this
// computer.
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

// The desktop's dialogs, or others where the desktop has none. They begin in the folder that the
// user chose last, one for each purpose, while there is such a folder.
class PreferredFileDialogs final : public FileDialogs {
public:
    PreferredFileDialogs(FileDialogs& desktop, SettingsStore& settings)
        : m_desktop(desktop), m_settings(settings) {}

    // The fallback has to be taken back with nullptr before it is destroyed.
    void setFallback(FileDialogs* fallback) { m_fallback = fallback; }

    Task<FileDialogAnswer> ask(FileDialogRequest request) override;

private:
    Task<FileDialogAnswer> askIn(FileDialogRequest request);

    FileDialogs& m_desktop;
    SettingsStore& m_settings;
    FileDialogs* m_fallback = nullptr;
};

} // namespace quiv

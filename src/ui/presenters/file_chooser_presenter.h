#pragma once

#include "platform/async/promise.h"
#include "platform/dialogs/file_dialogs.h"
#include "platform/dialogs/folder_listing.h"
#include "ui/presenters/record_list_model.h"

#include <QAbstractItemModel>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace quiv {

// One entry of the folder that is shown.
struct FileChooserRow {
    FolderEntry entry;
    bool isChosen = false;

    bool operator==(const FileChooserRow&) const = default;
};

const QString& fileChooserRowKey(const FileChooserRow& row);

// The window's own file dialog, for desktops that offer none. One request at a time: another one
// cancels it.
class FileChooserPresenter : public QObject, public FileDialogs {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(bool isSaving READ isSaving NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString acceptLabel READ acceptLabel NOTIFY changed)
    Q_PROPERTY(QString folder READ folder NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString note READ note NOTIFY changed)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY changed)
    Q_PROPERTY(bool canAccept READ canAccept NOTIFY changed)
    Q_PROPERTY(QStringList filters READ filters NOTIFY changed)
    Q_PROPERTY(int filterIndex READ filterIndex NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)

public:
    explicit FileChooserPresenter(QObject* parent = nullptr);
    ~FileChooserPresenter() override;

    bool isShown() const { return m_isShown; }
    bool isSaving() const { return m_request.purpose == FileDialogRequest::Purpose::Save; }
    const QString& title() const { return m_request.title; }
    QString acceptLabel() const;
    const QString& folder() const { return m_folder; }
    const QString& name() const { return m_name; } // of the file to save
    const QString& note() const { return m_note; } // what the user should know
    bool canGoUp() const;
    bool canAccept() const;
    QStringList filters() const; // names, to choose from
    int filterIndex() const { return m_filterIndex; }
    QAbstractItemModel* rows() { return &m_rows; }

    Task<FileDialogAnswer> ask(FileDialogRequest request) override;

    Q_INVOKABLE void goUp();
    // Enters the folder that the user typed, or takes the file.
    Q_INVOKABLE void goTo(const QString& typed);
    Q_INVOKABLE void chooseFilter(int index);
    // Enters a folder. Chooses a file or gives it up again; where only one is wanted, it replaces
    // the one before. A place to save to takes the file's name.
    Q_INVOKABLE void select(const QString& name);
    // Does as select(), and takes a file for the answer.
    Q_INVOKABLE void activate(const QString& name);
    Q_INVOKABLE void setName(const QString& name);
    // Makes a folder in the one that is shown, and enters it.
    Q_INVOKABLE void createFolder(const QString& name);
    Q_INVOKABLE void accept();
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void changed();

private:
    Task<> goToTyped(QString path);
    Task<> enter(QString folder);
    Task<> makeAndEnter(QString name);
    Task<> acceptPlace();
    void filterEntries();
    void update();
    void answer(const QList<QUrl>& files);
    const FolderEntry* entryNamed(const QString& name) const;
    QUrl urlOf(const QString& name) const;

    FileDialogRequest m_request;
    Promise<FileDialogAnswer> m_answer;
    bool m_isShown = false;
    QString m_folder;
    QList<FolderEntry> m_entries; // that pass the filter
    QList<FolderEntry> m_allEntries;
    int m_filterIndex = 0;
    QSet<QString> m_chosen;
    QString m_name;
    QString m_note;
    bool m_mayReplace = false;
    RecordListModel<FileChooserRow, &fileChooserRowKey> m_rows;
    Task<> m_listing;
    Task<> m_decision; // what the disk has to say to the user's last wish
};

} // namespace quiv

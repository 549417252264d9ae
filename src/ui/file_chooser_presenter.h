#pragma once

#include "platform/folder_listing.h"
#include "ui/record_list_model.h"

#include <QAbstractItemModel>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace quiv {

// One entry of the folder that is shown.
struct FileChooserRow {
    FolderEntry entry;
    bool isChosen = false;

    bool operator==(const FileChooserRow&) const = default;
};

const QString& fileChooserRowKey(const FileChooserRow& row);

// Lets the user choose files on this computer. Remembers the folder while the window lives.
class FileChooserPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString folder READ folder NOTIFY changed)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY changed)
    Q_PROPERTY(bool canOpen READ canOpen NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)

public:
    struct Request {
        QString title;
        bool allowsSeveral = false;
        std::function<bool(const QString& name)> accepts; // which files are listed
        std::function<void(const QList<QUrl>& files)> chosen;
    };

    explicit FileChooserPresenter(QObject* parent = nullptr);

    bool isShown() const { return m_isShown; }
    const QString& title() const { return m_request.title; }
    const QString& folder() const { return m_folder; }
    bool canGoUp() const;
    bool canOpen() const { return !m_chosen.isEmpty(); }
    QAbstractItemModel* rows() { return &m_rows; }

    void ask(Request request);

    Q_INVOKABLE void goUp();
    // A folder is entered; a file becomes chosen, or no longer, beside the others or instead.
    Q_INVOKABLE void select(const QString& name);
    // As select(), and a file is the answer.
    Q_INVOKABLE void activate(const QString& name);
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void changed();

private:
    void enter(const QString& folder);
    void update();
    const FolderEntry* entryNamed(const QString& name) const;

    Request m_request;
    bool m_isShown = false;
    QString m_folder;
    QList<FolderEntry> m_entries;
    QSet<QString> m_chosen;
    RecordListModel<FileChooserRow, &fileChooserRowKey> m_rows;
};

} // namespace quiv

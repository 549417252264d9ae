#pragma once

#include "model/window_state.h"
#include "ui/presenters/record_list_model.h"

#include <QAbstractItemModel>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace quiv {

class ActionMenuPresenter;
class WindowActions;

// A row of the queue: a file on its way to a TV, or from one that is not shown.
struct QueueRow {
    Q_GADGET
    QML_VALUE_TYPE(queueRow)
    Q_PROPERTY(QString fileName MEMBER fileName)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString statusText MEMBER statusText)
    Q_PROPERTY(double progress MEMBER progress)
    Q_PROPERTY(bool isMoving MEMBER isMoving)
    Q_PROPERTY(bool isFailed MEMBER isFailed)
    Q_PROPERTY(QString endLabel MEMBER endLabel)

public:
    QString key;
    QString fileName;
    QString symbol;
    // "Queued", "Uploading 37% 48.2 MB/s", or why the file waits or has failed; and which TV it is
    // about, if that is not the selected one.
    QString statusText;
    double progress = 0; // 0 to 1
    bool isMoving = false;
    bool isFailed = false;
    QString endLabel; // of the button that takes it off the queue

    bool operator==(const QueueRow&) const = default;
};

const QString& queueRowKey(const QueueRow& row);

// The download comes first.
QList<QueueRow> queueRows(const WindowState& state);

// The files on their way, and the drop that adds more.
class UploadsPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool isUploadDropTargeted READ isUploadDropTargeted NOTIFY dropChanged)
    Q_PROPERTY(QString dropHint READ dropHint NOTIFY dropChanged)

public:
    explicit UploadsPresenter(WindowActions& actions, QObject* parent = nullptr);

    // With the roles "key" and "upload".
    QAbstractItemModel* rows() { return &m_rows; }
    int count() const { return m_rows.rowCount(); }
    bool isUploadDropTargeted() const { return m_isUploadDropTargeted; }
    QString dropHint() const;

    void show(const WindowState& state);

    Q_INVOKABLE void cancel(const QString& key);
    Q_INVOKABLE void retry(const QString& key);
    // Fills a menu with what the row's buttons do. Returns false without such a row.
    bool offerActions(const QString& key, ActionMenuPresenter& menu);
    // Something is held over the window. Returns whether it is files, which may be let go there.
    Q_INVOKABLE bool dragEntered(const QList<QUrl>& urls);
    Q_INVOKABLE void dragLeft();
    // Returns whether the drop is taken.
    Q_INVOKABLE bool drop(const QList<QUrl>& urls);

Q_SIGNALS:
    void countChanged();
    void dropChanged();

private:
    void setDropTargeted(bool isTargeted);

    WindowActions& m_actions;
    QString m_selectedTvKey; // empty without a TV
    RecordListModel<QueueRow, &queueRowKey> m_rows;
    bool m_isUploadDropTargeted = false;
};

} // namespace quiv

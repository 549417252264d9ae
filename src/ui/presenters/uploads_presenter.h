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

class WindowActions;

// The key of an upload's row.
const QString& uploadItemKey(const UploadListItem& item);

// "Queued", "Uploading 37% 48.2 MB/s", or why the file waits or has failed; and for which TV it is,
// if that is not the selected one.
QString uploadStatusText(const UploadListItem& item, const QString& selectedTvKey);

// The files on their way to the TV, and the drop that adds more.
class UploadsPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool isUploadDropTargeted READ isUploadDropTargeted NOTIFY dropChanged)
    Q_PROPERTY(QString dropHint READ dropHint NOTIFY dropChanged)

public:
    explicit UploadsPresenter(WindowActions& actions, QObject* parent = nullptr);

    QAbstractItemModel* rows() { return &m_rows; }
    int count() const { return m_rows.rowCount(); }
    bool isUploadDropTargeted() const { return m_isUploadDropTargeted; }
    QString dropHint() const;

    void show(const WindowState& state);

    Q_INVOKABLE void cancel(const QString& id);
    Q_INVOKABLE void retry(const QString& id);
    // Tells whether files are held over the window.
    Q_INVOKABLE void setDropTargeted(bool isTargeted);
    // Returns whether the drop is taken.
    Q_INVOKABLE bool drop(const QList<QUrl>& urls);

Q_SIGNALS:
    void countChanged();
    void dropChanged();

private:
    WindowActions& m_actions;
    QString m_selectedTvKey; // empty without a TV
    RecordListModel<UploadListItem, &uploadItemKey> m_rows;
    bool m_isUploadDropTargeted = false;
};

} // namespace quiv

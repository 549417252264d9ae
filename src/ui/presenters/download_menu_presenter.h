#pragma once

#include "net/wire_records.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quiv {

class WindowActions;

// The files of one row to choose from for a download.
class DownloadMenuPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(QStringList names READ names NOTIFY changed)
    Q_PROPERTY(QStringList symbols READ symbols NOTIFY changed)

public:
    explicit DownloadMenuPresenter(WindowActions& actions, QObject* parent = nullptr)
        : QObject(parent), m_actions(actions) {}

    QStringList names() const;
    QStringList symbols() const;

    // Offers these files, sorted by name as people sort.
    void setFiles(const QList<RemoteFile>& files);
    // Downloads the file at this place, if there is one.
    Q_INVOKABLE void choose(int index);

Q_SIGNALS:
    void changed();

private:
    WindowActions& m_actions;
    QList<RemoteFile> m_files;
};

} // namespace quiv

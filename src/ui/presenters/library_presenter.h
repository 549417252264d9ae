#pragma once

#include "model/window_state.h"
#include "ui/presenters/download_menu_presenter.h"
#include "ui/presenters/file_group_row_state.h"
#include "ui/presenters/record_list_model.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QSet>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quiv {

class WindowActions;

// The key of a library row.
const QString& libraryRowKey(const LibraryRow& row);

// The selected TV's library as the search field narrows it. The search text is forgotten when
// another TV is selected.
class LibraryPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(QString searchText READ searchText NOTIFY searchTextChanged)
    Q_PROPERTY(QString loadingText READ loadingText NOTIFY selectedDeviceChanged)
    Q_PROPERTY(QString noResultsText READ noResultsText NOTIFY searchTextChanged)
    Q_PROPERTY(QString failureText READ failureText NOTIFY failureTextChanged)
    Q_PROPERTY(quiv::DownloadMenuPresenter* downloadMenu READ downloadMenu CONSTANT)

public:
    // What the detail area shows.
    enum class Phase { NoTv, Loading, Failed, NoResults, Empty, List };
    Q_ENUM(Phase)

    explicit LibraryPresenter(WindowActions& actions, QObject* parent = nullptr);

    QAbstractItemModel* rows() { return &m_rows; }
    Phase phase() const { return m_phase; }
    const QString& searchText() const { return m_searchText; }
    DownloadMenuPresenter* downloadMenu() { return &m_downloadMenu; }
    QString loadingText() const;
    QString noResultsText() const;
    // Why the library could not be loaded.
    QString failureText() const;

    void show(const WindowState& state);

    Q_INVOKABLE void search(const QString& text);
    // These act on the row with this key, and do nothing if it has no video.
    Q_INVOKABLE void playOrPause(const QString& key);
    Q_INVOKABLE void moveStorage(const QString& key);
    // Lets the user choose a subtitle for the row's video.
    Q_INVOKABLE void attachSubtitle(const QString& key);
    // Offers the row's files in the download menu. Returns false if there are none.
    Q_INVOKABLE bool offerDownloads(const QString& key);
    Q_INVOKABLE void cancelDownload();
    // Asks the user first.
    Q_INVOKABLE void requestDelete(const QString& key);

Q_SIGNALS:
    void phaseChanged();
    void searchTextChanged();
    void selectedDeviceChanged();
    void failureTextChanged();
    void deleteRequested(const quiv::FileGroup& group);
    void subtitleRequested(const QString& videoName);

private:
    void filterRows();
    void updatePhase();
    // Returns nullptr if the search leaves no row with this key.
    const LibraryRow* rowOf(const QString& key) const;

    WindowActions& m_actions;
    DownloadMenuPresenter m_downloadMenu;
    WindowState m_state;
    QSet<QString> m_uploadKeys; // of the uploads in m_state
    QString m_searchText;
    Phase m_phase = Phase::NoTv;
    RecordListModel<LibraryRow, &libraryRowKey> m_rows; // those that the search leaves
};

// What decides the phase.
struct LibraryCounts {
    bool hasTv = false;
    bool isLoading = false;
    bool hasFailed = false;
    bool hasQuery = false;
    qsizetype groups = 0;
    qsizetype visibleGroups = 0;
    bool hasUploads = false;
};

LibraryPresenter::Phase libraryPhase(const LibraryCounts& counts);

} // namespace quiv

#pragma once

#include "model/window_state.h"
#include "platform/async/task.h"
#include "ui/presenters/action_menu_presenter.h"
#include "ui/presenters/file_group_row_state.h"
#include "ui/presenters/library_entries.h"
#include "ui/presenters/record_list_model.h"
#include "ui/presenters/row_selection.h"
#include "ui/presenters/shown_rows.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QSet>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quiv {

class UploadsPresenter;
class WindowActions;

// The selected TV's library as the search field narrows it, below the queue in one list; and which
// of its rows are selected. Search and selection are forgotten when another TV is selected. A long
// list follows its TV and its search a moment later, as it is compared in the background.
class LibraryPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(QAbstractItemModel* entries READ entries CONSTANT)
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(QString searchText READ searchText NOTIFY searchTextChanged)
    Q_PROPERTY(QString loadingText READ loadingText NOTIFY selectedDeviceChanged)
    Q_PROPERTY(QString foundText READ foundText NOTIFY foundTextChanged)
    Q_PROPERTY(QString noResultsText READ noResultsText NOTIFY searchTextChanged)
    Q_PROPERTY(QString failureText READ failureText NOTIFY failureTextChanged)
    Q_PROPERTY(quiv::ActionMenuPresenter* menu READ menu CONSTANT)

public:
    // What the detail area shows.
    enum class Phase { NoTv, Loading, Failed, NoResults, Empty, List };
    Q_ENUM(Phase)

    LibraryPresenter(WindowActions& actions, UploadsPresenter& uploads, QObject* parent = nullptr);

    QAbstractItemModel* entries() { return &m_entries; }
    QAbstractItemModel* rows() { return &m_rows; } // those of the library alone
    Phase phase() const { return m_phase; }
    const QString& searchText() const { return m_searchText; }
    ActionMenuPresenter* menu() { return &m_menu; }
    QString loadingText() const;
    // How many rows the search leaves; empty while nothing is searched for.
    const QString& foundText() const { return m_foundText; }
    QString noResultsText() const;
    // Why the library could not be loaded.
    QString failureText() const;

    void show(const WindowState& state);

    Q_INVOKABLE void search(const QString& text);

    // The user picked a row of the library; see selectionAfterPick().
    Q_INVOKABLE void select(const QString& key, int modifiers);
    Q_INVOKABLE void selectAll();
    // Returns whether there was something to clear.
    Q_INVOKABLE bool clearSelection();
    // The entry to go to once the beginning of a title is typed: at or after the current one, or
    // else from the start. Returns the current one if there is no such title.
    Q_INVOKABLE int entryBeginningWith(const QString& typed, int current) const;

    // These act on the row with this key, and do nothing if it has no video.
    Q_INVOKABLE void playOrPause(const QString& key);
    Q_INVOKABLE void moveStorage(const QString& key);
    // Lets the user choose a subtitle for the row's video.
    Q_INVOKABLE void attachSubtitle(const QString& key);
    Q_INVOKABLE void cancelDownload();

    // These act on the whole selection if the row with this key belongs to it.
    //
    // Offers the row's files in the menu; downloads all files of several rows. Returns whether
    // there is a menu to choose from.
    Q_INVOKABLE bool offerDownloads(const QString& key);
    // Asks the user first.
    Q_INVOKABLE void requestDelete(const QString& key);
    // Offers everything in the menu that can be done with the row.
    Q_INVOKABLE bool offerActions(const QString& key);
    // The same for a row of the queue.
    Q_INVOKABLE bool offerUploadActions(const QString& key);

Q_SIGNALS:
    void phaseChanged();
    void searchTextChanged();
    void selectedDeviceChanged();
    void failureTextChanged();
    void foundTextChanged();
    void searched(); // the rows are what the search leaves
    void deleteRequested(const QList<quiv::FileGroup>& groups);
    void subtitleRequested(const QString& videoName);

private:
    void filterRows();
    Task<> filteringRows(RowsRequest request);
    // Returns the former rows.
    QList<LibraryRow> showRows(ShownRows rows, const RowSelection& selectionBefore);
    void updatePhase();
    void setSelection(const RowSelection& selection);
    // What an action on this row is about, but what is still being uploaded or already
    // being deleted.
    QList<FileGroup> groupsActedOn(const QString& key) const;
    // Returns nullptr if the search leaves no row with this key.
    const LibraryRow* rowOf(const QString& key) const;

    WindowActions& m_actions;
    UploadsPresenter& m_uploads;
    ActionMenuPresenter m_menu;
    WindowState m_state;
    QSet<QString> m_uploadKeys; // of the uploads in m_state
    QString m_searchText;
    QString m_foundText;
    RowSelection m_selection;
    Phase m_phase = Phase::NoTv;
    RecordListModel<LibraryRow, &libraryRowKey> m_rows; // those that the search leaves
    LibraryEntries m_entries;
    bool m_isFiltering = false;  // a long list, in the background
    bool m_hasNewSearch = false; // that the rows do not follow yet
    Task<> m_filtering;
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

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quiv

// The rows of the selected TV's library.
ListView {
    id: list

    required property LibraryPresenter presenter
    required property ThumbnailStore thumbnails
    property bool isCompact: false
    readonly property int rowsPerPage: Math.max(1, Math.floor(height / Math.max(1, rowHeight)))
    readonly property real rowHeight: currentItem ? currentItem.height : 86

    function go(row: int) {
        currentIndex = Math.max(0, Math.min(count - 1, row))
    }

    model: presenter.rows
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    activeFocusOnTab: true
    bottomMargin: 10
    highlightMoveDuration: 0
    onActiveFocusChanged: if (activeFocus && currentIndex < 0) currentIndex = 0
    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Home: return go(0)
        case Qt.Key_End: return go(count - 1)
        case Qt.Key_PageUp: return go(currentIndex - rowsPerPage)
        case Qt.Key_PageDown: return go(currentIndex + rowsPerPage)
        }
    }
    Accessible.role: Accessible.List
    Accessible.name: "Library"
    T.ScrollBar.vertical: AppScrollBar {}

    DownloadMenu {
        id: downloads

        presenter: list.presenter.downloadMenu
    }

    delegate: FileGroupRow {
        id: row

        width: list.width - 8 // beside the scroll bar
        presenter: list.presenter
        downloadMenu: downloads
        isCurrent: row.ListView.isCurrentItem && list.activeFocus
        isCompact: list.isCompact
        thumbnails: list.thumbnails
        // A row kept for reuse would still be there for assistive technology.
        ListView.onPooled: visible = false
        ListView.onReused: visible = true
    }
}

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

// The rows of the selected TV's library.
ListView {
    id: list

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    activeFocusOnTab: true
    bottomMargin: 10
    Accessible.role: Accessible.List
    Accessible.name: "Library"
    T.ScrollBar.vertical: AppScrollBar {}

    delegate: FileGroupRow {
        id: row

        width: list.width - 8 // beside the scroll bar
        isCurrent: row.ListView.isCurrentItem && list.activeFocus
        // A row kept for reuse would still be there for assistive technology.
        ListView.onPooled: visible = false
        ListView.onReused: visible = true
    }
}

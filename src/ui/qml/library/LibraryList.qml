pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quiv

// The rows of the queue, then those of the selected TV's library. One row is the current one: what
// has the focus is in it, and keys act on it.
ListView {
    id: list

    required property LibraryPresenter presenter
    required property UploadsPresenter uploads
    required property ShortcutsPresenter shortcuts
    required property ThumbnailStore thumbnails
    readonly property int rowsPerPage: Math.max(1, Math.floor(height / Math.max(1, rowHeight)))
    readonly property real rowHeight: currentItem ? currentItem.height : 86
    readonly property LibraryEntry entry: currentItem as LibraryEntry
    property string typed // of a title's beginning, just now

    function go(row: int) {
        currentIndex = row
        positionViewAtIndex(row, ListView.Contain)
        FocusSteps.enter(entry)
    }

    function select(modifiers: int) {
        if (!entry.isUpload)
            presenter.select(entry.key, modifiers)
    }

    function enterResults() {
        if (count > uploads.count)
            go(uploads.count)
    }

    function openMenu(left: real, top: real) {
        const isOffered = entry.isUpload ? presenter.offerUploadActions(entry.key)
                                         : presenter.offerActions(entry.key)
        if (isOffered)
            menu.openAt(entry, left, top)
    }

    // Returns whether the key was for the list.
    function act(event: KeyEvent): bool {
        switch (shortcuts.listCommandFor(event.key, event.modifiers, event.text, typed !== "")) {
        case KeyboardCommand.Go:
            go(shortcuts.rowAfter(event.key, currentIndex, count, rowsPerPage))
            select(event.modifiers)
            return true
        case KeyboardCommand.GoOnly:
            go(shortcuts.rowAfter(event.key, currentIndex, count, rowsPerPage))
            return true
        case KeyboardCommand.NextButton:
            FocusSteps.step(entry, true)
            return true
        case KeyboardCommand.PreviousButton:
            FocusSteps.step(entry, false)
            return true
        case KeyboardCommand.Primary:
            entry.activated()
            return true
        case KeyboardCommand.Delete:
            if (entry.isUpload)
                uploads.cancel(entry.key)
            else
                presenter.requestDelete(entry.key)
            return true
        case KeyboardCommand.OpenMenu:
            openMenu(Theme.padding, Math.min(entry.height, Theme.scaled(60)))
            return true
        case KeyboardCommand.SelectAll:
            presenter.selectAll()
            return true
        case KeyboardCommand.ToggleSelected:
            select(Qt.ControlModifier)
            return true
        case KeyboardCommand.ClearSelection:
            return presenter.clearSelection()
        case KeyboardCommand.Type:
            typed += event.text
            forget.restart()
            go(presenter.entryBeginningWith(typed, currentIndex))
            return true
        }
        return false
    }

    model: presenter.entries
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    keyNavigationEnabled: false
    topMargin: uploads.count > 0 ? 6 : 0
    bottomMargin: 10
    highlightMoveDuration: 0
    onCountChanged: if (currentIndex < 0 && count > 0) currentIndex = 0
    Keys.onPressed: event => event.accepted = entry !== null && act(event)
    Accessible.role: Accessible.List
    Accessible.name: "Library"
    T.ScrollBar.vertical: AppScrollBar {}

    add: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.gentle }
    }
    remove: Transition {
        enabled: Theme.moves // one that takes no time leaves the row where it was

        NumberAnimation { property: "opacity"; to: 0; duration: Theme.gentle }
    }
    displaced: Transition {
        enabled: Theme.moves

        NumberAnimation { property: "y"; duration: Theme.gentle; easing.type: Easing.OutCubic }
    }

    RowMeasures {
        id: rowMeasures

        rowWidth: list.width - 2 * (Theme.padding - margin)
    }
    ActionMenu {
        id: menu

        presenter: list.presenter.menu
    }
    Timer {
        id: forget

        interval: 1000
        onTriggered: list.typed = ""
    }
    Connections {
        target: list.presenter

        function onSearched() {
            list.positionViewAtBeginning()
            list.currentIndex = Math.min(list.uploads.count, list.count - 1)
        }
    }

    delegate: LibraryEntry {
        id: delegate

        width: list.width
        isCurrent: delegate.ListView.isCurrentItem
        isInView: !isCurrent || (y + height > list.contentY && y < list.contentY + list.height)
        presenter: list.presenter
        uploads: list.uploads
        thumbnails: list.thumbnails
        measures: rowMeasures
        menu: menu
        onActiveFocusChanged: {
            if (!activeFocus)
                return
            list.currentIndex = index
            if (Appearance.isKeyboardInUse)
                list.positionViewAtIndex(index, ListView.Contain)
        }
        onPicked: modifiers => {
            list.currentIndex = index
            FocusSteps.enter(delegate)
            list.select(modifiers)
        }
        onMenuAsked: (x, y) => {
            list.currentIndex = index
            FocusSteps.enter(delegate)
            if (!content.isSelected)
                list.select(Qt.NoModifier)
            list.openMenu(x, y)
        }
        onActivated: {
            if (isUpload)
                list.uploads.retry(key)
            else
                list.presenter.playOrPause(key)
        }
        // A row kept for reuse would still be there for assistive technology.
        ListView.onPooled: visible = false
        ListView.onReused: {
            visible = true
            opacity = 1 // it may have faded
        }
    }
}

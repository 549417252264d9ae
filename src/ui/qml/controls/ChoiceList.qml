pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quiv

// The entries of a choice menu, for pointer and keyboard.
ListView {
    id: list

    required property string label
    required property var choices // texts
    property var symbols: []      // of the choices, if they have any
    property var enabledStates: [] // of the choices, where some cannot be made
    required property int markedIndex
    required property int rowHeight

    property point pointedAt // in the scene

    signal chosen(index: int)
    signal dismissed()

    function choose(index: int) {
        if (enabledStates[index] ?? true)
            chosen(index)
    }

    // What scrolls past a pointer at rest is not pointed at.
    function point(index: int, place: point) {
        if (place !== pointedAt)
            currentIndex = index
        pointedAt = place
    }

    function begin() {
        currentIndex = Math.max(0, markedIndex)
        positionViewAtIndex(currentIndex, ListView.Contain)
        forceActiveFocus()
    }

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: 0
    keyNavigationEnabled: true
    model: TextListModel { texts: list.choices }
    onVisibleChanged: if (visible) begin()
    Keys.onReturnPressed: choose(currentIndex)
    Keys.onEnterPressed: choose(currentIndex)
    Keys.onSpacePressed: choose(currentIndex)
    Keys.onTabPressed: dismissed()
    Keys.onBacktabPressed: dismissed()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            currentIndex = 0
        else if (event.key === Qt.Key_End)
            currentIndex = count - 1
    }
    Accessible.role: Accessible.PopupMenu
    Accessible.name: label
    T.ScrollBar.vertical: AppScrollBar {}

    delegate: ChoiceEntry {
        id: entry

        required property int index
        required property string modelData

        width: list.width
        height: list.rowHeight
        text: modelData
        symbol: list.symbols[index] ?? ""
        isMarked: index === list.markedIndex
        isCurrent: entry.ListView.isCurrentItem
        enabled: list.enabledStates[index] ?? true
        onPointed: place => list.point(index, place)
        onClicked: list.choose(index)
    }
}

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quiv

// What is in the file chooser's folder.
ListView {
    id: list

    required property FileChooserPresenter presenter

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: 0
    model: presenter.rows
    Keys.onSpacePressed: presenter.select((currentItem as FileChooserEntry)?.key ?? "")
    Keys.onReturnPressed: presenter.activate((currentItem as FileChooserEntry)?.key ?? "")
    Accessible.role: Accessible.List
    Accessible.name: "Files"
    T.ScrollBar.vertical: AppScrollBar {}

    delegate: FileChooserEntry {
        id: entry

        width: list.width
        isCurrent: entry.ListView.isCurrentItem && list.activeFocus
        onClicked: list.presenter.select(key)
        onDoubleClicked: list.presenter.activate(key)
    }
}

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Quiv

// The discovered TVs.
Rectangle {
    id: sidebar

    required property SidebarPresenter presenter

    implicitWidth: Theme.sidebarWidth
    color: Theme.sidebar

    ColumnLayout {
        anchors.fill: parent
        anchors.topMargin: Theme.gap
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.rightMargin: 16

            PlainText {
                Layout.fillWidth: true
                text: "TVs"
                font: Theme.title
                Accessible.role: Accessible.Heading
            }
            AppButton {
                text: "Refresh"
                symbol: "arrow.clockwise"
                isWaiting: sidebar.presenter.isSearching
                shortcut: "F5"
                onClicked: sidebar.presenter.refresh()
            }
        }
        PlainText {
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.topMargin: 8
            text: sidebar.presenter.countText
            font: Theme.subheadline
            color: Theme.secondaryText
        }
        ListView {
            id: tiles

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.topMargin: 8
            clip: true
            topMargin: 6
            bottomMargin: Theme.gap
            spacing: 8
            boundsBehavior: Flickable.StopAtBounds
            reuseItems: true
            activeFocusOnTab: true
            model: sidebar.presenter.tiles
            highlightMoveDuration: 0
            onActiveFocusChanged: if (activeFocus && currentIndex < 0) currentIndex = 0
            Accessible.role: Accessible.List
            Accessible.name: "TVs"
            T.ScrollBar.vertical: AppScrollBar {}

            delegate: TVTileButton {
                id: tile

                required property string endpointKey
                required property int index

                x: 12
                width: tiles.width - 24
                onActiveFocusChanged: if (activeFocus) tiles.currentIndex = tile.index
                onClicked: sidebar.presenter.select(tile.endpointKey)
                // A tile kept for reuse would still be there for assistive technology.
                ListView.onPooled: visible = false
                ListView.onReused: visible = true
            }
        }
    }

    Divider {
        anchors.right: parent.right
        height: parent.height
    }
}

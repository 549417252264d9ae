pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Quiv

// The content of the file chooser: a folder, and what is in it.
ColumnLayout {
    id: form

    required property FileChooserPresenter presenter
    required property int contentWidth

    spacing: 12
    onVisibleChanged: if (visible) list.forceActiveFocus()
    Keys.onEscapePressed: presenter.cancel()

    PlainText {
        text: form.presenter.title
        font: Theme.title
        Accessible.role: Accessible.Heading
    }
    RowLayout {
        spacing: 8

        AppButton {
            text: "Up"
            enabled: form.presenter.canGoUp
            onClicked: form.presenter.goUp()
        }
        PlainText {
            Layout.fillWidth: true
            text: form.presenter.folder
            color: Theme.secondaryText
            elide: Text.ElideMiddle
        }
    }
    Rectangle {
        Layout.fillWidth: true
        Layout.preferredWidth: Theme.scaled(form.contentWidth)
        Layout.preferredHeight: Theme.scaled(340)
        radius: Theme.controlRadius
        color: Theme.window
        border.width: 1
        border.color: Theme.controlBorder

        ListView {
            id: list

            anchors.fill: parent
            anchors.margins: 5
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            model: form.presenter.rows
            Keys.onSpacePressed: form.presenter.select((currentItem as FileChooserEntry)?.key ?? "")
            Keys.onReturnPressed: form.presenter.activate(
                                      (currentItem as FileChooserEntry)?.key ?? "")
            Accessible.role: Accessible.List
            Accessible.name: "Files"
            T.ScrollBar.vertical: AppScrollBar {}

            delegate: FileChooserEntry {
                id: entry

                width: list.width
                isCurrent: entry.ListView.isCurrentItem && list.activeFocus
                onClicked: form.presenter.select(key)
                onDoubleClicked: form.presenter.activate(key)
            }
        }
    }
    RowLayout {
        Layout.alignment: Qt.AlignRight
        spacing: 8

        AppButton {
            text: "Cancel"
            onClicked: form.presenter.cancel()
        }
        AppButton {
            kind: AppButton.Prominent
            text: "Open"
            enabled: form.presenter.canOpen
            onClicked: form.presenter.confirm()
        }
    }
}

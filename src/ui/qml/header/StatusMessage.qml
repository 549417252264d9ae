import QtQuick
import QtQuick.Layouts
import Quiv

// What was done last, or failed, in words that can be copied; a stored file can be shown.
RowLayout {
    id: row

    required property HeaderPresenter presenter
    readonly property headerState content: presenter.state

    spacing: 8

    AppIcon {
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: 1
        visible: row.content.isFailure
        name: "exclamationmark.triangle.fill"
        colour: Theme.destructive
        size: Theme.scaled(16)
    }
    SelectableText {
        Layout.fillWidth: true
        Layout.maximumWidth: Math.ceil(implicitWidth) + 1
        text: row.content.statusMessage
        color: row.content.isFailure ? Theme.destructive : Theme.primaryText
    }
    PlainText {
        Layout.fillWidth: true
        Layout.minimumWidth: Math.min(implicitWidth, Theme.scaled(80))
        Layout.maximumWidth: Math.ceil(implicitWidth)
        visible: row.content.filePlace !== ""
        text: "in " + row.content.filePlace
        color: Theme.secondaryText
        elide: Text.ElideMiddle
    }
    TextButton {
        visible: row.content.filePlace !== ""
        text: "Show in folder"
        onClicked: row.presenter.showFile()
    }
    Item { Layout.fillWidth: true }
}

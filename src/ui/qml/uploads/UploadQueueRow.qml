import QtQuick
import QtQuick.Layouts
import Quiv

// One file that is on its way, waits for it or has failed.
Item {
    id: row

    required property UploadsPresenter presenter
    required property string key
    required property string fileName
    required property string symbol
    required property bool isMoving
    required property bool isFailed
    readonly property color markColour: isMoving ? Theme.accent : isFailed ? Theme.destructive : Theme.secondaryText
    required property real progress
    required property string statusText

    implicitHeight: lines.implicitHeight + 22
    Accessible.role: Accessible.ListItem
    Accessible.name: fileName
    Accessible.description: statusText

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 14
        spacing: 14

        AppIcon {
            name: row.symbol
            colour: row.markColour
            size: Theme.scaled(20)
        }
        ColumnLayout {
            id: lines

            Layout.fillWidth: true
            spacing: 5

            PlainText {
                Layout.fillWidth: true
                text: row.fileName
                font: Theme.headline
                elide: Text.ElideMiddle
            }
            ProgressLine {
                Layout.fillWidth: true
                Layout.maximumWidth: 360
                visible: !row.isFailed
                fraction: row.progress
                isIndeterminate: !row.isMoving
                label: row.fileName
            }
            PlainText {
                Layout.fillWidth: true
                text: row.statusText
                font: Theme.caption
                color: row.isFailed ? Theme.destructive : Theme.secondaryText
            }
        }
        AppButton {
            visible: row.isFailed
            text: "Try Again"
            onClicked: row.presenter.retry(row.key)
        }
        AppButton {
            kind: AppButton.Destructive
            text: row.isMoving ? "Cancel" : "Remove"
            onClicked: row.presenter.cancel(row.key)
        }
    }
}

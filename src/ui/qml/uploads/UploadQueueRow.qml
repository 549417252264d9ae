import QtQuick
import QtQuick.Layouts
import Quiv

// One file that is on its way, waits for it or has failed. The rows together look like one card.
Item {
    id: row

    required property UploadsPresenter presenter
    required property string key
    required property queueRow content
    required property bool isFirst
    required property bool isLast
    required property bool isMarked // has the focus itself
    required property int focusPolicy
    readonly property color markColour: content.isMoving ? Theme.accent
                                      : content.isFailed ? Theme.destructive : Theme.secondaryText

    implicitHeight: card.height + (isLast ? Theme.gap : 0)

    Item {
        id: card

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.padding
        anchors.rightMargin: Theme.padding
        height: lines.implicitHeight + 22
        clip: true

        Panel {
            anchors.fill: parent
            anchors.topMargin: row.isFirst ? 0 : -Theme.cardRadius
            anchors.bottomMargin: row.isLast ? 0 : -Theme.cardRadius
            outline: Theme.separator
        }
        Divider {
            anchors.left: parent.left
            anchors.right: parent.right
            visible: !row.isFirst
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: 2
            visible: row.isMarked
            radius: 10
            color: "transparent"
            border.width: 2
            border.color: Theme.accent
        }
        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 16
            anchors.rightMargin: 14
            spacing: 14

            AppIcon {
                name: row.content.symbol
                colour: row.markColour
                size: Theme.scaled(20)
            }
            ColumnLayout {
                id: lines

                Layout.fillWidth: true
                spacing: 5

                PlainText {
                    Layout.fillWidth: true
                    text: row.content.fileName
                    font: Theme.headline
                    elide: Text.ElideMiddle
                }
                ProgressLine {
                    Layout.fillWidth: true
                    Layout.maximumWidth: 360
                    visible: !row.content.isFailed
                    fraction: row.content.progress
                    isIndeterminate: !row.content.isMoving
                    label: row.content.fileName
                }
                PlainText {
                    Layout.fillWidth: true
                    text: row.content.statusText
                    font: Theme.caption
                    color: row.content.isFailed ? Theme.destructive : Theme.secondaryText
                    wrapMode: Text.Wrap
                    maximumLineCount: 4
                }
            }
            AppButton {
                visible: row.content.isFailed
                text: "Try Again"
                focusPolicy: row.focusPolicy
                onClicked: row.presenter.retry(row.key)
            }
            AppButton {
                kind: AppButton.Destructive
                text: row.content.endLabel
                focusPolicy: row.focusPolicy
                onClicked: row.presenter.cancel(row.key)
            }
        }
    }
}

import QtQuick
import QtQuick.Layouts

// Says that the TV wants pairing before it takes orders.
Strip {
    id: strip

    required property string validUntilText // may be empty

    signal pairRequested()
    signal cancelRequested()

    implicitHeight: row.implicitHeight + 20
    color: Theme.stripFill

    GridLayout {
        id: row

        anchors.fill: parent
        anchors.margins: 10
        anchors.leftMargin: Theme.gap
        columns: strip.width < Theme.scaled(480) ? 2 : 3 // the buttons below the words
        columnSpacing: 10
        rowSpacing: 10

        AppIcon {
            name: "lock.shield"
            colour: Theme.stripLabel
            size: Theme.scaled(17)
        }
        Flow {
            id: words

            Layout.fillWidth: true
            Layout.alignment: Qt.AlignVCenter
            spacing: 10

            PlainText {
                width: Math.min(implicitWidth, words.width)
                text: "Pairing required for control actions"
                font: Theme.subheadlineSemibold
                color: Theme.stripLabel
                wrapMode: Text.Wrap
            }
            PlainText {
                width: Math.min(implicitWidth, words.width)
                visible: text !== ""
                text: strip.validUntilText
                font: Theme.subheadline
                color: Theme.secondaryText
                wrapMode: Text.Wrap
            }
        }
        RowLayout {
            Layout.columnSpan: row.columns === 2 ? 2 : 1
            spacing: 10

            AppButton {
                text: "Enter pairing code"
                kind: AppButton.Prominent
                onClicked: strip.pairRequested()
            }
            AppButton {
                text: "Cancel pairing"
                onClicked: strip.cancelRequested()
            }
        }
    }
}

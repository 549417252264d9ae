import QtQuick

// What a button shows: an optional symbol and its label, in the middle.
Item {
    id: label

    required property string symbol
    required property string text // empty: the symbol alone
    required property string widestText
    required property font font
    required property color ink
    property bool isWaiting: false // the symbol makes way for a sign of it
    property bool hasArrow: false // down, after the text
    readonly property bool reservesRoom: widestText !== text

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 7

        WaitingIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: label.symbol !== ""
            symbol: label.symbol
            isWaiting: label.isWaiting
            colour: label.ink
            size: Theme.scaled(15)
        }
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            width: label.reservesRoom ? Math.max(implicitWidth, widest.advanceWidth)
                                      : implicitWidth
            visible: label.text !== ""
            text: label.text
            font: label.font
            color: label.ink
            Accessible.ignored: true
        }
        AppIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: label.hasArrow
            name: "chevron.down"
            colour: label.ink
            size: Theme.scaled(10)
        }
    }

    TextMetrics {
        id: widest

        text: label.reservesRoom ? label.widestText : ""
        font: label.font
    }
}

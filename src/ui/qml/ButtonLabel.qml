import QtQuick

// What a button shows: an optional symbol and its label, in the middle.
Item {
    id: label

    required property string symbol
    required property string text
    required property font font
    required property color ink

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 7

        AppIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: label.symbol !== ""
            name: label.symbol
            colour: label.ink
            size: Theme.scaled(15)
        }
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: label.text
            font: label.font
            color: label.ink
            Accessible.ignored: true
        }
    }
}

import QtQuick

// Says that the TV shows this video.
Rectangle {
    id: badge

    required property string symbol
    required property string text

    implicitWidth: row.implicitWidth + 20
    implicitHeight: row.implicitHeight + 10
    radius: height / 2
    color: Theme.accentFill

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 6

        AppIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: badge.symbol
            colour: Theme.accentText
            size: Theme.scaled(13)
        }
        PlainText {
            text: badge.text
            font: Theme.captionSemibold
            color: Theme.accentText
        }
    }
}

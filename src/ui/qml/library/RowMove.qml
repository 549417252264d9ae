import QtQuick
import Quiv

// How far the move of a row's video has come.
Row {
    id: move

    required property fileGroupRowState content

    spacing: 10
    topPadding: 10
    bottomPadding: 10

    ProgressLine {
        anchors.verticalCenter: parent.verticalCenter
        width: 220
        fraction: move.content.moveFraction
        label: "Move"
    }
    PlainText {
        anchors.verticalCenter: parent.verticalCenter
        text: move.content.movePercentText
        font: Theme.caption
    }
}

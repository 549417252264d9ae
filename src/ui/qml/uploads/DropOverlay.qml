import QtQuick
import QtQuick.Layouts

// Shows that files may be let go here.
Item {
    id: overlay

    required property string hint

    Rectangle {
        anchors.fill: parent
        anchors.margins: 14
        radius: Theme.overlayRadius
        color: Theme.dropFill
    }
    Canvas {
        id: outline

        readonly property color ink: Theme.dropOutline

        anchors.fill: parent
        anchors.margins: 14
        onInkChanged: requestPaint()
        onPaint: {
            const context = getContext("2d")
            context.reset()
            context.strokeStyle = ink
            context.lineWidth = 2
            context.setLineDash([4, 3])
            context.beginPath()
            context.roundedRect(1, 1, width - 2, height - 2, Theme.overlayRadius,
                                Theme.overlayRadius)
            context.stroke()
        }
    }
    Rectangle {
        anchors.centerIn: parent
        width: words.implicitWidth + 56
        height: words.implicitHeight + 40
        radius: Theme.cardRadius
        color: Theme.surface

        ColumnLayout {
            id: words

            anchors.centerIn: parent
            spacing: 6

            AppIcon {
                Layout.alignment: Qt.AlignHCenter
                name: "square.and.arrow.up.on.square"
                colour: Theme.accent
                size: Theme.scaled(26)
            }
            PlainText {
                Layout.alignment: Qt.AlignHCenter
                text: "Drop video files to upload"
                font: Theme.headline
            }
            PlainText {
                Layout.alignment: Qt.AlignHCenter
                text: overlay.hint
                font: Theme.subheadline
                color: Theme.secondaryText
            }
        }
    }
}

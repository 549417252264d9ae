import QtQuick
import Quiv

// A rounded area whose outline is as thin as the screen can draw it sharply.
PixelGrid {
    id: panel

    property real radius: Theme.cardRadius
    property color color: Theme.surface
    property color outline: "transparent"
    property real outlineWidth: Theme.hairline

    Rectangle {
        x: panel.snapped.x
        y: panel.snapped.y
        width: panel.snapped.width
        height: panel.snapped.height
        radius: panel.radius
        color: panel.color
        border.width: panel.outline.a > 0 ? panel.outlineWidth : 0
        border.color: panel.outline
        border.pixelAligned: false

        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }
    }
}

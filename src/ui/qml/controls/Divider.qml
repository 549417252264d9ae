import QtQuick
import Quiv

// A hairline between areas, as thin as the screen can draw it sharply.
PixelGrid {
    id: divider

    implicitWidth: 1
    implicitHeight: 1

    Rectangle {
        x: divider.snapped.x
        y: divider.snapped.y
        width: divider.width > 1 ? divider.snapped.width : Theme.hairline
        height: divider.height > 1 ? divider.snapped.height : Theme.hairline
        color: Theme.separator
    }
}

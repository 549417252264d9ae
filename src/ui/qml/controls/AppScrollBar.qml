import QtQuick
import QtQuick.Templates as T

// A slim bar that shows itself when there is something to scroll and grows under the pointer.
T.ScrollBar {
    id: bar

    implicitWidth: 10
    padding: 2
    minimumSize: 0.06
    visible: size < 1

    contentItem: Rectangle {
        implicitWidth: 6
        radius: width / 2
        color: bar.pressed || bar.hovered ? Theme.scrollThumbActive : Theme.scrollThumb
        opacity: bar.active || bar.hovered ? 1 : 0.6

        Behavior on opacity {
            NumberAnimation { duration: Theme.gentle }
        }
    }
}

import QtQuick

// A coloured strip that fades in and out.
Rectangle {
    required property bool isShown

    radius: 10
    visible: isShown || opacity > 0
    opacity: isShown ? 1 : 0

    Behavior on opacity {
        NumberAnimation { duration: Theme.gentle }
    }
}

import QtQuick

// The place of a video's picture.
Rectangle {
    implicitWidth: 120
    implicitHeight: 68
    radius: Theme.controlRadius
    color: Theme.placeholderFill

    AppIcon {
        anchors.centerIn: parent
        name: "film.fill"
        colour: Theme.secondaryText
        size: 22
    }
}

import QtQuick

// How far something has come.
Rectangle {
    id: line

    required property real fraction // 0 to 1
    required property string label  // what is under way, for assistive technology
    readonly property real value: fraction
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1

    implicitHeight: 5
    radius: height / 2
    color: Theme.track
    Accessible.role: Accessible.ProgressBar
    Accessible.name: label

    Rectangle {
        width: parent.width * Math.max(0, Math.min(1, line.fraction))
        height: parent.height
        radius: parent.radius
        color: Theme.accent

        Behavior on width {
            NumberAnimation { duration: Theme.gentle }
        }
    }
}

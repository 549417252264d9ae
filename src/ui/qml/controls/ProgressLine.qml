import QtQuick

// How far something has come.
Rectangle {
    id: line

    required property real fraction // 0 to 1
    required property string label  // what is under way, for assistive technology
    property bool isIndeterminate: false    // nothing has begun yet
    readonly property real value: fraction
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1

    implicitHeight: 5
    radius: height / 2
    color: Theme.track
    Accessible.role: Accessible.ProgressBar
    Accessible.name: label

    Rectangle {
        visible: !line.isIndeterminate
        width: parent.width * Math.max(0, Math.min(1, line.fraction))
        height: parent.height
        radius: parent.radius
        color: Theme.accent

        Behavior on width {
            NumberAnimation { duration: Theme.gentle }
        }
    }
    Item {
        anchors.fill: parent
        visible: line.isIndeterminate
        clip: true

        Rectangle {
            id: segment
            objectName: "segment"

            // A share of the way: the line may get its width only while this runs.
            property real progress
            readonly property real place: Theme.moves ? progress : 0.5

            x: place * (line.width + width) - width
            width: parent.width * 0.28
            height: parent.height
            radius: line.radius
            color: Theme.accent
            opacity: 0.55

            SequentialAnimation on progress {
                running: segment.visible && Theme.moves
                loops: Animation.Infinite

                NumberAnimation {
                    from: 0
                    to: 1
                    duration: 1800
                    easing.type: Easing.InOutSine
                }
                PauseAnimation { duration: 300 }
            }
        }
    }
}

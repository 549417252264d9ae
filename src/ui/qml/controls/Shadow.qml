pragma ComponentBehavior: Bound

import QtQuick

// A soft shadow under what floats, of layers that any renderer can draw.
Item {
    id: shadow

    required property int cornerRadius
    property int layers: 14

    Repeater {
        model: shadow.layers

        Rectangle {
            required property int index
            readonly property real reach: 0.2 * index * index // dense near the edge, thin outside

            anchors.fill: parent
            anchors.margins: -reach
            anchors.topMargin: 8 - reach
            anchors.bottomMargin: -8 - reach
            radius: shadow.cornerRadius + reach
            color: Theme.shadow
        }
    }
}

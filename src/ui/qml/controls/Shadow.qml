import QtQuick

// A soft shadow under what floats.
BorderImage {
    required property int cornerRadius
    property int reach: 24
    readonly property int corner: cornerRadius + 2 * reach
    readonly property string colour: Theme.shadow.toString().substring(1)

    anchors {
        fill: parent
        topMargin: Math.round(reach / 3) - reach // falls a little down
        bottomMargin: -Math.round(reach / 3) - reach
        leftMargin: -reach
        rightMargin: -reach
    }
    border {
        left: corner
        top: corner
        right: corner
        bottom: corner
    }
    source: "image://shadow/" + cornerRadius + "/" + reach + "/" + colour
    Accessible.ignored: true
}

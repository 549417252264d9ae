import QtQuick

// A symbol that makes way for a sign of waiting.
AppIcon {
    id: icon

    required property string symbol
    required property bool isWaiting

    width: size // also while there is no picture
    height: size
    name: spinner.visible ? "" : symbol

    PatientSpinner {
        id: spinner

        anchors.centerIn: parent
        isWanted: icon.isWaiting
        colour: icon.colour
        size: icon.size
    }
}

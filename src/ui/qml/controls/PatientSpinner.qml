import QtQuick

// Turns while something is awaited; a wait that is over at once is not worth a word.
Spinner {
    id: spinner

    required property bool isWanted
    property int patience: 150 // ms

    visible: isWanted && timer.hasPassed

    Timer {
        id: timer

        property bool hasPassed: false

        interval: spinner.patience
        running: spinner.isWanted
        onRunningChanged: if (running) hasPassed = false
        onTriggered: hasPassed = true
    }
}

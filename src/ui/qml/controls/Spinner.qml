import QtQuick

// Turns while something is under way.
AppIcon {
    id: spinner

    name: "progress.arc"
    colour: Theme.secondaryText
    smooth: true
    Accessible.ignored: false
    Accessible.role: Accessible.Animation
    Accessible.name: "In progress"

    RotationAnimation on rotation {
        running: spinner.visible && Theme.moves
        loops: Animation.Infinite
        from: 0
        to: 360
        duration: 900
    }
}

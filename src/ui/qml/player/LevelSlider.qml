import QtQuick
import QtQuick.Templates as T

// A small slider for a level from 0 to 1.
T.Slider {
    id: slider

    required property string label
    required property real level
    readonly property int knobSize: Theme.scaled(12)

    signal moved(level: real)

    implicitWidth: Theme.scaled(72)
    implicitHeight: Theme.scaled(22)
    stepSize: 0.05
    value: level
    Accessible.name: label
    onPositionChanged: if (pressed) moved(position)
    onValueChanged: if (!pressed && value !== level) moved(value) // set by assistive technology
    Keys.onLeftPressed: moved(Math.max(0, level - stepSize))
    Keys.onRightPressed: moved(Math.min(1, level + stepSize))

    // The user's hand breaks the binding of a slider's value.
    Binding on value {
        value: slider.level
        when: !slider.pressed
    }

    background: Rectangle {
        x: slider.knobSize / 2
        y: (slider.height - height) / 2
        width: slider.width - slider.knobSize
        height: 4
        radius: 2
        color: Theme.track

        Rectangle {
            width: parent.width * slider.position
            height: parent.height
            radius: parent.radius
            color: Theme.accent
        }
    }

    handle: Rectangle {
        x: slider.position * (slider.width - width)
        y: (slider.height - height) / 2
        width: slider.knobSize
        height: width
        radius: width / 2
        color: Theme.knob
        border.width: Theme.hairline
        border.color: Theme.knobBorder
    }

    FocusRing {
        target: slider
        cornerRadius: 4
        anchors.margins: 0
    }
}

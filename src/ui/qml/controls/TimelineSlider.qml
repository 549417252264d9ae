import QtQuick
import Quiv

// The place in the video: moves with the TV, can be dragged to another place.
Item {
    id: slider

    required property dockTimeline timeline
    property string label: "Position"
    property bool isWaiting: false // for the place that was asked for
    property string pointedText    // the time at the place that is pointed at
    readonly property real pointedAt: area.pressed ? shown : area.fractionAt(area.mouseX)
    readonly property bool isHeld: area.pressed
    property real shown: 0 // the knob's place, 0 to 1
    property bool glides: false
    // As assistive technology reads and sets it.
    property real value: timeline.fraction
    property bool isTelling: false // that it was set
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1

    signal dragBegun(fraction: real)
    signal dragged(fraction: real)
    signal dropped()
    signal dragCancelled()
    signal steppedBack()
    signal steppedForward()

    // A glide that nobody would see is not animated.
    function follow() {
        glides = timeline.glideMs > 0 && timeline.glideShare * groove.width > 1
        shown = timeline.fraction
    }

    implicitHeight: Theme.scaled(22)
    activeFocusOnTab: enabled
    onTimelineChanged: follow()
    Component.onCompleted: follow()
    onValueChanged: {
        if (isTelling || value === timeline.fraction)
            return
        isTelling = true
        const wanted = value
        value = Qt.binding(() => timeline.fraction)
        if (enabled) {
            dragBegun(wanted)
            dropped()
        }
        isTelling = false
    }
    // A held key is one step: each asks the TV.
    Keys.onLeftPressed: event => { if (!event.isAutoRepeat) steppedBack() }
    Keys.onRightPressed: event => { if (!event.isAutoRepeat) steppedForward() }
    Accessible.role: Accessible.Slider
    Accessible.name: label
    Accessible.description: timeline.positionText
    Accessible.focusable: true
    Accessible.onDecreaseAction: if (enabled) steppedBack()
    Accessible.onIncreaseAction: if (enabled) steppedForward()

    Behavior on shown {
        enabled: slider.glides

        NumberAnimation { duration: slider.timeline.glideMs }
    }

    Rectangle {
        id: groove

        anchors.verticalCenter: parent.verticalCenter
        x: knob.width / 2
        width: parent.width - knob.width
        height: 5
        radius: height / 2
        color: Theme.track

        Rectangle {
            width: parent.width * slider.timeline.bufferedFraction
            height: parent.height
            radius: parent.radius
            color: Theme.track
        }
        Rectangle {
            width: parent.width * slider.shown
            height: parent.height
            radius: parent.radius
            color: Theme.accent
        }
    }
    Rectangle {
        id: knob

        anchors.verticalCenter: parent.verticalCenter
        x: groove.width * slider.shown
        width: Theme.scaled(15)
        height: width
        radius: width / 2
        visible: slider.enabled
        color: Theme.knob
        border.width: Theme.hairline
        border.color: Theme.knobBorder
        scale: area.pressed ? 1.15 : 1

        PatientSpinner {
            anchors.centerIn: parent
            isWanted: slider.isWaiting
            size: parent.width - 2
        }

        Behavior on scale {
            NumberAnimation { duration: Theme.quick }
        }
    }
    FocusRing {
        target: slider
        cornerRadius: 4
        anchors.margins: 0
    }
    MouseArea {
        id: area

        property real grip: 0 // where the knob was grabbed, from its centre

        function fractionAt(x: real): real {
            return Math.max(0, Math.min(1, (x - groove.x) / Math.max(1, groove.width)))
        }

        anchors.fill: parent
        preventStealing: true
        hoverEnabled: true
        onPressed: event => {
            const off = event.x - (knob.x + knob.width / 2)
            grip = Math.abs(off) <= knob.width / 2 ? off : 0
            slider.dragBegun(fractionAt(event.x - grip))
        }
        onPositionChanged: event => {
            if (pressed)
                slider.dragged(fractionAt(event.x - grip))
        }
        onReleased: slider.dropped()
        onCanceled: slider.dragCancelled()
    }
    TimelineTip {
        visible: slider.enabled && (area.containsMouse || area.pressed)
        anchorX: groove.x + groove.width * slider.pointedAt
        text: slider.pointedText
    }
}

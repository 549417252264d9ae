import QtQuick
import QtQuick.Layouts
import Quiv

// The controls over a video that plays here.
Panel {
    id: bar

    required property LocalPanelPresenter presenter
    readonly property localControls content: presenter.controls
    readonly property dockTimeline timeline: presenter.timeline
    readonly property bool isInUse: hover.hovered || slider.isHeld || volume.pressed
                                    || (hasFocus && Appearance.isKeyboardInUse)
    readonly property alias hasFocus: scope.activeFocus

    implicitHeight: Theme.scaled(30) + 12
    radius: 10
    outline: Theme.separator

    HoverHandler { id: hover }
    MouseArea { anchors.fill: parent } // what is under the bar is not meant
    FocusScope {
        id: scope

        anchors.fill: parent
        anchors.margins: 6

        RowLayout {
            anchors.fill: parent
            spacing: 6

            PlaybackIconButton {
                systemName: bar.content.playSymbol
                tint: Theme.accent
                accessibilityLabel: "Play or pause here"
                onClicked: bar.presenter.playOrPause()
            }
            PlainText {
                Layout.leftMargin: 4
                Layout.minimumWidth: Math.max(implicitWidth, duration.implicitWidth)
                visible: bar.width > Theme.scaled(240)
                horizontalAlignment: Text.AlignRight
                text: bar.timeline.positionText
                font: Theme.subheadline
            }
            TimelineSlider {
                id: slider

                Layout.fillWidth: true
                enabled: bar.timeline.canSeek
                label: "Position here"
                pointedText: bar.presenter.timeAt(slider.pointedAt)
                timeline: bar.timeline
                onDragBegun: fraction => bar.presenter.beginDrag(fraction)
                onDragged: fraction => bar.presenter.drag(fraction)
                onDropped: bar.presenter.drop()
                onDragCancelled: bar.presenter.cancelDrag()
                onSteppedBack: bar.presenter.seekBack()
                onSteppedForward: bar.presenter.seekForward()
            }
            PlainText {
                id: duration

                Layout.rightMargin: 4
                visible: bar.width > Theme.scaled(300)
                text: bar.timeline.durationText
                font: Theme.subheadline
            }
            PlaybackIconButton {
                systemName: bar.content.volumeSymbol
                accessibilityLabel: "Mute"
                onClicked: bar.presenter.toggleMuted()
            }
            LevelSlider {
                id: volume

                visible: bar.width > Theme.scaled(380)
                label: "Volume"
                level: bar.content.volume
                onMoved: level => bar.presenter.setVolume(level)
            }
            PlaybackIconButton {
                systemName: bar.presenter.isFullScreen ? "arrow.down.right.and.arrow.up.left"
                                                       : "arrow.up.left.and.arrow.down.right"
                accessibilityLabel: "Full screen"
                onClicked: bar.presenter.toggleFullScreen()
            }
        }
    }
}

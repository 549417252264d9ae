import QtQuick
import QtQuick.Layouts
import Quiv

// Where the video is, between its beginning and its end.
RowLayout {
    id: row

    required property DockPresenter presenter
    readonly property dockTimeline timeline: presenter.timeline

    spacing: 6

    PlainText {
        // As wide as the longest it can become, so that the slider does not move.
        Layout.minimumWidth: Math.max(implicitWidth, duration.implicitWidth)
        text: row.timeline.positionText
        font: Theme.subheadline
    }
    TimelineSlider {
        id: slider

        Layout.fillWidth: true
        enabled: row.timeline.canSeek
        isWaiting: row.presenter.waiting.position
        pointedText: row.presenter.timeAt(slider.pointedAt)
        timeline: row.timeline
        onDragBegun: fraction => row.presenter.beginDrag(fraction)
        onDragged: fraction => row.presenter.drag(fraction)
        onDropped: row.presenter.drop()
        onDragCancelled: row.presenter.cancelDrag()
        onSteppedBack: row.presenter.seekBack()
        onSteppedForward: row.presenter.seekForward()
    }
    PlainText {
        id: duration

        text: row.timeline.durationText
        font: Theme.subheadline
    }
}

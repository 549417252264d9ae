import QtQuick
import QtQuick.Templates as T

// The time at a place of a timeline, above it.
T.ToolTip {
    id: tip

    required property real anchorX // of the timeline

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    x: Math.round(anchorX - width / 2)
    y: -height - 2
    margins: 2
    horizontalPadding: 7
    verticalPadding: 3
    closePolicy: T.Popup.NoAutoClose

    contentItem: PlainText {
        text: tip.text
        font: Theme.caption
        Accessible.ignored: true
    }
    background: Panel {
        radius: 6
        outline: Theme.controlBorder
    }
}

import QtQuick
import QtQuick.Templates as T

// A few words beside what the pointer rests on.
T.ToolTip {
    id: tip

    required property Item target
    readonly property real widest: Theme.scaled(420)

    parent: target
    visible: true
    implicitWidth: Math.min(implicitContentWidth, widest) + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    x: Math.round((target.width - width) / 2)
    y: -height - 6
    margins: 6
    horizontalPadding: 9
    verticalPadding: 5
    delay: 500
    closePolicy: T.Popup.NoAutoClose

    contentItem: PlainText {
        text: tip.text
        font: Theme.caption
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        showsCutText: false
    }
    background: Item {
        Shadow {
            cornerRadius: 6
            reach: 10
        }
        Panel {
            anchors.fill: parent
            radius: 6
            color: Theme.surface
            outline: Theme.controlBorder
        }
    }
}

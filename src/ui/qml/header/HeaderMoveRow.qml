import QtQuick
import QtQuick.Layouts
import Quiv

// The move that the TV is carrying out.
RowLayout {
    id: row

    required property headerMove move

    spacing: 8

    AppIcon {
        name: "arrow.left.arrow.right"
        colour: Theme.primaryText
        size: Theme.scaled(15)
    }
    PlainText {
        Layout.fillWidth: true
        Layout.minimumWidth: Math.min(implicitWidth, Theme.scaled(80))
        Layout.maximumWidth: Math.ceil(implicitWidth)
        text: row.move.label
        font: Theme.subheadline
        elide: Text.ElideMiddle
    }
    ProgressLine {
        Layout.fillWidth: true
        Layout.minimumWidth: 40
        Layout.preferredWidth: 180
        Layout.maximumWidth: 180
        fraction: row.move.fraction
        label: row.move.label
    }
    PlainText {
        text: row.move.percentText
        font: Theme.subheadline
    }
    PlainText {
        text: row.move.speedText
        font: Theme.subheadline
        color: Theme.secondaryText
    }
}

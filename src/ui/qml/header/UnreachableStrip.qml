import QtQuick
import QtQuick.Layouts

// Says that the TV does not answer.
Strip {
    id: strip

    required property string text // empty while the TV answers
    property string lastText      // still to be read while the strip goes

    isShown: text !== ""
    onTextChanged: if (text !== "") lastText = text
    implicitHeight: row.implicitHeight + 20
    color: Theme.badgeFill(BadgeTone.Amber)

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.margins: 10
        anchors.leftMargin: Theme.gap
        spacing: 10

        AppIcon {
            name: "exclamationmark.triangle.fill"
            colour: Theme.badgeText(BadgeTone.Amber)
            size: Theme.scaled(17)
        }
        PlainText {
            text: "Not reachable"
            font: Theme.subheadlineSemibold
            color: Theme.badgeText(BadgeTone.Amber)
        }
        PlainText {
            Layout.fillWidth: true
            text: strip.lastText
            font: Theme.subheadline
            color: Theme.badgeText(BadgeTone.Amber)
            wrapMode: Text.Wrap
        }
    }
}

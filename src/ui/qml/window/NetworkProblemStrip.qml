import QtQuick
import QtQuick.Layouts
import Quiv

// Says what keeps this computer from finding a TV.
Strip {
    id: strip

    required property string title // empty while nothing does
    required property string advice

    visible: isShown // what is below moves up at once
    isShown: title !== ""
    implicitHeight: row.implicitHeight + 24
    color: Theme.badgeFill(BadgeTone.Amber)

    Announcement { text: strip.title }
    RowLayout {
        id: row

        anchors.fill: parent
        anchors.margins: Theme.gap
        spacing: Theme.gap

        AppIcon {
            Layout.alignment: Qt.AlignTop
            name: "exclamationmark.triangle.fill"
            colour: Theme.badgeText(BadgeTone.Amber)
            size: Theme.scaled(17)
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 4

            PlainText {
                Layout.fillWidth: true
                text: strip.title
                font: Theme.subheadlineSemibold
                color: Theme.badgeText(BadgeTone.Amber)
                wrapMode: Text.Wrap
            }
            PlainText {
                Layout.fillWidth: true
                text: strip.advice
                font: Theme.subheadline
                color: Theme.badgeText(BadgeTone.Amber)
                wrapMode: Text.Wrap
            }
        }
    }
}

import QtQuick

// A coloured capsule with a few words, on several lines where there is little room.
Rectangle {
    id: badge

    required property string text
    required property int tone

    implicitWidth: label.implicitWidth + 20
    implicitHeight: label.implicitHeight + 10
    radius: Math.min(height / 2, Theme.scaled(13))
    color: Theme.badgeFill(tone)

    PlainText {
        id: label

        anchors.centerIn: parent
        width: Math.min(implicitWidth, badge.width - 20)
        text: badge.text
        wrapMode: Text.Wrap
        font: Theme.captionSemibold
        color: Theme.badgeText(badge.tone)
    }
}

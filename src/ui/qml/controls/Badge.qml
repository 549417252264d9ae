import QtQuick

// A coloured capsule with a few words.
Rectangle {
    id: badge

    required property string text
    required property int tone

    implicitWidth: label.implicitWidth + 20
    implicitHeight: label.implicitHeight + 10
    radius: height / 2
    color: Theme.badgeFill(tone)

    PlainText {
        id: label

        anchors.centerIn: parent
        width: Math.min(implicitWidth, badge.width - 20)
        text: badge.text
        font: Theme.captionSemibold
        color: Theme.badgeText(badge.tone)
    }
}

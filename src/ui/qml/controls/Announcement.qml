import QtQuick
import Quiv

// What a screen reader says by itself once it is there; nothing to see.
Item {
    id: announcement

    required property string text // empty while there is nothing to say

    implicitWidth: 1
    implicitHeight: 1
    Accessible.role: Accessible.Notification
    Accessible.name: text
    onTextChanged: if (text !== "") Announcer.announce(announcement)
}

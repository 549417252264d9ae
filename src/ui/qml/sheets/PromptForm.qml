import QtQuick
import QtQuick.Layouts

// The content of a prompt.
ColumnLayout {
    id: form

    required property string title
    required property string message
    required property string confirmText
    required property bool isDestructive
    required property int messageWidth

    signal confirmed()
    signal cancelled()

    spacing: 8
    onVisibleChanged: if (visible) cancel.forceActiveFocus()
    Keys.onEscapePressed: cancelled()

    PlainText {
        Layout.fillWidth: true
        text: form.title
        font: Theme.title
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    PlainText {
        Layout.fillWidth: true
        Layout.preferredWidth: Theme.scaled(form.messageWidth)
        text: form.message
        color: Theme.secondaryText
        wrapMode: Text.Wrap
        maximumLineCount: 12
    }
    RowLayout {
        Layout.topMargin: 12
        Layout.alignment: Qt.AlignRight
        spacing: 8

        AppButton {
            id: cancel

            text: "Cancel"
            onClicked: form.cancelled()
        }
        AppButton {
            text: form.confirmText
            kind: form.isDestructive ? AppButton.Destructive : AppButton.Prominent
            onClicked: form.confirmed()
        }
    }
}

import QtQuick
import QtQuick.Layouts
import Quiv

// The content of the pairing sheet.
ColumnLayout {
    id: form

    required property PairingSheetPresenter presenter
    readonly property pairingSheetState content: presenter.state
    readonly property int refusals: content.refusals

    spacing: Theme.gap
    onVisibleChanged: if (visible) code.forceActiveFocus()
    onRefusalsChanged: {
        code.selectAll()
        code.forceActiveFocus()
    }
    Keys.onEscapePressed: form.presenter.dismiss()

    AppIcon {
        Layout.alignment: Qt.AlignHCenter
        name: "lock.shield.fill"
        colour: Theme.accent
        size: Theme.scaled(36)
    }
    PlainText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: "Pair Quiv Controller"
        font: Theme.title
        Accessible.role: Accessible.Heading
    }
    PlainText {
        Layout.fillWidth: true
        Layout.topMargin: -8
        horizontalAlignment: Text.AlignHCenter
        text: form.content.tvName
        font: Theme.headline
        elide: Text.ElideMiddle
    }
    PlainText {
        Layout.fillWidth: true
        Layout.preferredWidth: Theme.scaled(340)
        horizontalAlignment: Text.AlignHCenter
        text: "Enter the 3-digit code shown on TV to continue controlling this device."
        color: Theme.secondaryText
        wrapMode: Text.Wrap
    }
    CodeField {
        id: code

        Layout.alignment: Qt.AlignHCenter
        placeholderText: "3-digit code"
        text: form.content.code
        // What is kept may be less than what was typed; the user's hand breaks the binding.
        onTextEdited: {
            form.presenter.type(text)
            text = Qt.binding(() => form.content.code)
        }
        Keys.onReturnPressed: form.presenter.verify()
        Keys.onEnterPressed: form.presenter.verify()
    }
    SelectableText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        visible: text !== ""
        text: form.content.refusal
        color: Theme.destructive
        Accessible.role: Accessible.AlertMessage
    }
    PlainText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        visible: text !== ""
        text: form.content.codeValidUntilText
        font: Theme.caption
        color: Theme.secondaryText
    }
    AppButton {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 4
        implicitWidth: code.implicitWidth
        text: "Verify code"
        kind: AppButton.Prominent
        enabled: form.content.canVerify
        isWaiting: form.content.isVerifying
        onClicked: form.presenter.verify()
    }
    AppButton {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: -4
        implicitWidth: code.implicitWidth
        text: "Cancel pairing"
        onClicked: form.presenter.cancelPairing()
    }
}

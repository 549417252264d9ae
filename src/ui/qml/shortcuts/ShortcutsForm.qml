pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quiv

// The content of the page that tells of all keys.
ColumnLayout {
    id: form

    required property ShortcutsPresenter presenter
    required property string title

    spacing: 8
    onVisibleChanged: if (visible) close.forceActiveFocus()
    Keys.onEscapePressed: presenter.dismiss()

    PlainText {
        Layout.fillWidth: true
        Layout.bottomMargin: 6
        text: form.title
        font: Theme.title
        Accessible.role: Accessible.Heading
    }
    Repeater {
        model: form.presenter.keys

        RowLayout {
            id: line

            required property int index
            required property string modelData

            Layout.fillWidth: true
            spacing: Theme.gap

            PlainText {
                Layout.preferredWidth: Theme.scaled(250)
                text: line.modelData
                font: Theme.captionSemibold
                wrapMode: Text.Wrap
            }
            PlainText {
                Layout.fillWidth: true
                Layout.minimumWidth: Theme.scaled(160)
                text: form.presenter.meanings[line.index]
                font: Theme.caption
                color: Theme.secondaryText
                wrapMode: Text.Wrap
            }
        }
    }
    AppButton {
        id: close

        Layout.topMargin: 10
        Layout.alignment: Qt.AlignRight
        kind: AppButton.Prominent
        text: "Close"
        onClicked: form.presenter.dismiss()
    }
}

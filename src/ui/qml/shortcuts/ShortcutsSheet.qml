pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quiv

// The page that tells of all keys.
Sheet {
    id: sheet

    required property ShortcutsPresenter presenter

    preferredWidth: 560
    name: "Keyboard shortcuts"
    visible: presenter.isShown

    contentItem: ColumnLayout {
        spacing: 8
        onVisibleChanged: if (visible) close.forceActiveFocus()
        Keys.onEscapePressed: sheet.presenter.dismiss()

        PlainText {
            Layout.fillWidth: true
            Layout.bottomMargin: 6
            text: sheet.name
            font: Theme.title
            Accessible.role: Accessible.Heading
        }
        Repeater {
            model: sheet.presenter.keys

            RowLayout {
                id: line

                required property int index
                required property string modelData

                Layout.fillWidth: true
                spacing: Theme.gap

                PlainText {
                    Layout.preferredWidth: Theme.scaled(230)
                    text: line.modelData
                    font: Theme.captionSemibold
                    wrapMode: Text.Wrap
                }
                PlainText {
                    Layout.fillWidth: true
                    text: sheet.presenter.meanings[line.index]
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
            onClicked: sheet.presenter.dismiss()
        }
    }
}

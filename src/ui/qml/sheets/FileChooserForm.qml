pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quiv

// The content of the file chooser: a folder, what is in it, and where to save the name.
ColumnLayout {
    id: form

    required property FileChooserPresenter presenter
    required property int contentWidth
    required property int listHeight

    spacing: 12
    onVisibleChanged: if (visible) presenter.isSaving ? name.forceActiveFocus()
                                                      : list.forceActiveFocus()
    Keys.onEscapePressed: presenter.cancel()

    PlainText {
        Layout.fillWidth: true
        text: form.presenter.title
        font: Theme.title
        Accessible.role: Accessible.Heading
    }
    TextEntry {
        id: name

        Layout.fillWidth: true
        visible: form.presenter.isSaving
        placeholderText: "Save as"
        text: form.presenter.name
        onTextEdited: form.presenter.setName(text)
        onAccepted: form.presenter.accept()
    }
    FileChooserPlace {
        Layout.fillWidth: true
        presenter: form.presenter
    }
    Panel {
        Layout.fillWidth: true
        Layout.preferredWidth: Theme.scaled(form.contentWidth)
        Layout.preferredHeight: form.listHeight
        radius: Theme.controlRadius
        color: Theme.window
        outline: Theme.controlBorder

        FileChooserList {
            id: list

            anchors.fill: parent
            anchors.margins: 5
            presenter: form.presenter
        }
    }
    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        PlainText {
            Layout.fillWidth: true
            text: form.presenter.note
            color: Theme.secondaryText
            wrapMode: Text.Wrap
            maximumLineCount: 3
        }
        ChoiceMenu {
            visible: form.presenter.filters.length > 1
            label: "Show"
            choices: form.presenter.filters
            currentIndex: form.presenter.filterIndex
            onChosen: index => form.presenter.chooseFilter(index)
        }
        AppButton {
            text: "Cancel"
            onClicked: form.presenter.cancel()
        }
        AppButton {
            kind: AppButton.Prominent
            text: form.presenter.acceptLabel
            enabled: form.presenter.canAccept
            onClicked: form.presenter.accept()
        }
    }
}

import QtQuick
import QtQuick.Layouts
import Quiv

// The file chooser's folder, the way up, and a new folder to save to.
ColumnLayout {
    id: place

    required property FileChooserPresenter presenter
    property bool isNaming: false

    function create() {
        presenter.createFolder(folderName.text)
        close()
    }
    function close() {
        isNaming = false
        folderName.clear()
    }

    spacing: 8
    onVisibleChanged: close()

    RowLayout {
        spacing: 8

        AppButton {
            text: "Up"
            enabled: place.presenter.canGoUp
            onClicked: place.presenter.goUp()
        }
        TextEntry {
            Layout.fillWidth: true
            placeholderText: "Folder or file"
            text: place.presenter.folder
            onAccepted: place.presenter.goTo(text)
        }
        AppButton {
            visible: place.presenter.isSaving
            text: "New Folder"
            enabled: !place.isNaming
            onClicked: {
                place.isNaming = true
                folderName.forceActiveFocus()
            }
        }
    }
    RowLayout {
        visible: place.isNaming
        spacing: 8

        TextEntry {
            id: folderName

            Layout.fillWidth: true
            placeholderText: "Name of the new folder"
            onAccepted: place.create()
            Keys.onEscapePressed: place.close()
        }
        AppButton {
            text: "Create"
            enabled: folderName.text !== ""
            onClicked: place.create()
        }
    }
}

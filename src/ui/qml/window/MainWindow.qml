import QtQuick
import QtQuick.Layouts
import Quiv

// The application's one window.
Window {
    id: window

    required property WindowPresenter presenter
    property int visibilityBefore: Window.Windowed // full screen

    title: presenter.title
    width: 1280
    height: 820
    minimumWidth: 960
    minimumHeight: 600
    color: Theme.window
    // A closing sheet leaves the focus nowhere; what had it before gets it back.
    onActiveFocusItemChanged: if (activeFocusItem === contentItem) keyboard.forceActiveFocus()
    onClosing: close => close.accepted = presenter.mayClose()
    onVisibilityChanged: shown => {
        if (shown === Window.Windowed || shown === Window.Maximized)
            presenter.localPanel.leaveFullScreen()
    }

    Connections {
        target: window.presenter.localPanel

        function onIsFullScreenChanged() {
            if (window.presenter.localPanel.isFullScreen) {
                window.visibilityBefore = window.visibility
                window.visibility = Window.FullScreen
            } else {
                window.visibility = window.visibilityBefore
            }
        }
    }

    Connections {
        target: window.presenter

        function onCloseConfirmed() {
            window.close()
        }
    }

    // Sheets and menus are not in it, so that none of its keys acts while one is open.
    KeyboardScope {
        id: keyboard

        anchors.fill: parent
        focus: true
        presenter: window.presenter
        onSearchWanted: toolbar.enterSearch()

        RowLayout {
            anchors.fill: parent
            visible: !fullScreenArea.visible
            spacing: 0

            Sidebar {
                Layout.fillHeight: true
                presenter: window.presenter.sidebar
            }
            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                spacing: 0

                Toolbar {
                    id: toolbar

                    Layout.fillWidth: true
                    library: window.presenter.library
                    onSearchLeft: detail.enterResults()
                }
                DetailArea {
                    id: detail

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    presenter: window.presenter
                    fullScreenArea: fullScreenArea
                }
            }
        }
        Item {
            id: fullScreenArea

            anchors.fill: parent
            visible: window.presenter.localPanel.isFullScreen
        }
    }

    Prompt {
        title: "Delete media from TV?"
        message: window.presenter.deletePrompt.message
        confirmText: "Delete"
        isDestructive: true
        visible: window.presenter.deletePrompt.isShown
        onConfirmed: window.presenter.deletePrompt.confirm()
        onCancelled: window.presenter.deletePrompt.cancel()
    }
    Prompt {
        title: "Subtitle name mismatch"
        message: window.presenter.subtitleRename.message
        confirmText: "Attach & Rename"
        visible: window.presenter.subtitleRename.isShown
        onConfirmed: window.presenter.subtitleRename.confirm()
        onCancelled: window.presenter.subtitleRename.cancel()
    }
    Prompt {
        title: "Quit while files are being transferred?"
        message: window.presenter.quitPrompt.message
        confirmText: "Quit"
        isDestructive: true
        visible: window.presenter.quitPrompt.isShown
        onConfirmed: window.presenter.quitPrompt.confirm()
        onCancelled: window.presenter.quitPrompt.cancel()
    }
    ShortcutsSheet { presenter: window.presenter.shortcuts }
    FileChooserSheet { presenter: window.presenter.fileChooser }
    PairingSheet { presenter: window.presenter.pairingSheet }
}

import QtQuick
import QtQuick.Layouts
import Quiv

// The application's one window.
Window {
    id: window

    required property WindowPresenter presenter
    property int visibilityBefore: Window.Windowed // full screen

    title: "Quiv Controller"
    width: 1280
    height: 820
    minimumWidth: 960
    minimumHeight: 600
    color: Theme.window
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
                Layout.fillWidth: true
                library: window.presenter.library
            }
            DetailArea {
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
    FileChooserSheet { presenter: window.presenter.fileChooser }
    PairingSheet { presenter: window.presenter.pairingSheet }
}

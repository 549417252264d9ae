import QtQuick
import Quiv

// The picture of a video that plays here, with its controls, which go while nobody needs them.
Rectangle {
    id: stage

    required property LocalPanelPresenter presenter
    readonly property localControls content: presenter.controls
    readonly property bool hasError: presenter.state.errorText !== ""
    readonly property bool isAtRest: content.isPlaying && !awake.running && !controls.isInUse
    readonly property bool showsControls: !hasError && !isAtRest

    color: "black"
    focus: true
    activeFocusOnTab: true
    Accessible.role: Accessible.Graphic
    Accessible.name: presenter.state.title
    Component.onCompleted: forceActiveFocus()
    onParentChanged: Qt.callLater(stage.forceActiveFocus) // lost with what was hidden meanwhile
    Keys.onPressed: event => {
        awake.restart()
        event.accepted = true
        switch (event.key) {
        case Qt.Key_Space:
            presenter.playOrPause()
            break
        case Qt.Key_Left:
            presenter.seekBack()
            break
        case Qt.Key_Right:
            presenter.seekForward()
            break
        case Qt.Key_Up:
            presenter.changeVolume(0.05)
            break
        case Qt.Key_Down:
            presenter.changeVolume(-0.05)
            break
        case Qt.Key_M:
            presenter.toggleMuted()
            break
        case Qt.Key_F:
            presenter.toggleFullScreen()
            break
        case Qt.Key_Escape:
            event.accepted = presenter.isFullScreen
            presenter.leaveFullScreen()
            break
        default:
            event.accepted = false
        }
    }

    AVPlayerContainerView {
        anchors.fill: parent
        player: stage.presenter.player
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: stage.isAtRest ? Qt.BlankCursor : Qt.ArrowCursor
        onPositionChanged: awake.restart()
        onPressed: stage.forceActiveFocus()
        onDoubleClicked: stage.presenter.toggleFullScreen()
    }
    Timer {
        id: awake

        interval: 2500
        running: true
    }
    PatientSpinner {
        anchors.centerIn: parent
        isWanted: !stage.hasError && stage.content.isBuffering
        patience: 400
        colour: "#ffffff"
        size: Theme.scaled(28)
    }
    LocalPlayerError {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.padding, Theme.scaled(420))
        visible: stage.hasError
        presenter: stage.presenter
    }
    LocalPlayerControls {
        id: controls

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 10
        visible: opacity > 0
        opacity: stage.showsControls ? 1 : 0
        presenter: stage.presenter
        onVisibleChanged: {
            if (!visible && hasFocus)
                stage.forceActiveFocus() // what is hidden must not keep the keys
        }

        Behavior on opacity {
            NumberAnimation { duration: Theme.gentle }
        }
    }
    FocusRing {
        target: stage
        cornerRadius: 0
        anchors.margins: 0
        visible: stage.activeFocus && Appearance.isKeyboardInUse && !stage.presenter.isFullScreen
    }
}

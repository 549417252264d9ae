import QtQuick
import Quiv

// Where the local player's panel is, made once something plays here.
Loader {
    required property LocalPanelPresenter presenter
    required property Item fullScreenArea
    readonly property bool isWanted: presenter.state.isShown

    function follow() {
        if (isWanted)
            setSource("LocalPlaybackPanel.qml", { presenter: presenter, fullScreenArea: fullScreenArea })
        else
            source = ""
    }

    visible: isWanted
    onIsWantedChanged: follow()
    Component.onCompleted: follow()
}

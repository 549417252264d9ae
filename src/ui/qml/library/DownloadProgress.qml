import QtQuick
import QtQuick.Templates as T

// How far a download has come; under the pointer, with the keyboard on it or after a first tap, the
// button to end it.
T.Button {
    id: button

    required property real fraction
    required property string percentText
    property bool isTight: false // no room for words
    property bool wasTapped: false
    readonly property bool offersCancel: hover.hovered || visualFocus || wasTapped

    signal ended()

    // A finger comes without a warning: its first tap shows what the next one does.
    function tap() {
        if (offersCancel)
            return ended()
        wasTapped = true
        untap.restart()
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    horizontalPadding: 9
    text: "Cancel download"
    font: Theme.button
    onVisibleChanged: wasTapped = false
    onClicked: tap()
    Accessible.name: text
    Accessible.description: percentText
    Accessible.onPressAction: ended()
    Keys.onReturnPressed: ended()
    Keys.onEnterPressed: ended()

    contentItem: DownloadProgressLabel {
        fraction: button.fraction
        percentText: button.percentText
        offersCancel: button.offersCancel
        isTight: button.isTight
        cancelText: button.text
        font: button.font
    }

    background: Panel {
        readonly property color offered: button.down ? Theme.surfacePressed : Theme.surfaceHovered

        radius: Theme.controlRadius
        color: button.offersCancel ? offered : Theme.progressFill
        outline: button.offersCancel ? Theme.controlBorder : "transparent"
    }

    HoverHandler {
        id: hover

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    }
    Timer {
        id: untap

        interval: 4000
        onTriggered: button.wasTapped = false
    }

    FocusRing { target: button }
}

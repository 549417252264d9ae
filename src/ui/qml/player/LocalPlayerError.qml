import QtQuick
import QtQuick.Layouts
import Quiv

// Why there is no picture, and what else can play the video.
Panel {
    id: box

    required property LocalPanelPresenter presenter
    readonly property localPanelState content: presenter.state

    implicitHeight: lines.implicitHeight + 32
    outline: Theme.separator

    ColumnLayout {
        id: lines

        anchors.fill: parent
        anchors.margins: 16
        spacing: 10

        AppIcon {
            Layout.alignment: Qt.AlignHCenter
            name: "exclamationmark.triangle.fill"
            colour: Theme.notReady
            size: Theme.scaled(24)
        }
        PlainText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: box.content.errorText
            wrapMode: Text.Wrap
            maximumLineCount: 6
        }
        AppButton {
            Layout.alignment: Qt.AlignHCenter
            visible: box.content.canOpenInVlc
            kind: AppButton.Prominent
            symbol: "arrow.up.forward.app"
            text: "Open in VLC"
            onClicked: box.presenter.openInVlc()
        }
        PlainText {
            Layout.fillWidth: true
            visible: box.content.lacksVlc
            horizontalAlignment: Text.AlignHCenter
            text: "Install VLC to play this format on Mac."
            font: Theme.caption
            color: Theme.secondaryText
        }
    }
}

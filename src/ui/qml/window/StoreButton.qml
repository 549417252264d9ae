import QtQuick
import QtQuick.Templates as T

// Opens the store's page of the TV app.
T.Button {
    id: store

    required property string address

    implicitWidth: 240
    implicitHeight: 92
    text: "Open Google Play"
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    onClicked: Qt.openUrlExternally(address)

    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: 14

            AppIcon {
                anchors.verticalCenter: parent.verticalCenter
                name: "play.fill"
                colour: "#7ee2a8"
                size: 34
            }
            Column {
                anchors.verticalCenter: parent.verticalCenter

                PlainText {
                    text: "Get the TV app on"
                    font: Theme.textFont(12 / Theme.scale, Font.Normal) // the picture keeps its size
                    color: "#d5d9e2"
                    Accessible.ignored: true
                }
                PlainText {
                    text: "Google Play"
                    font: Theme.textFont(22 / Theme.scale, Font.DemiBold)
                    color: "#ffffff"
                    Accessible.ignored: true
                }
            }
        }
    }
    background: Panel {
        radius: 10
        color: store.down ? "#3d4251" : store.hovered ? "#2c303c" : "#141821"
        outline: Qt.alpha(Theme.primaryText, 0.08)
    }

    HoverHandler { cursorShape: Qt.PointingHandCursor }
    FocusRing {
        target: store
        cornerRadius: 10
    }
}

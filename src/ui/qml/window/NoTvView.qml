import QtQuick
import QtQuick.Layouts

// Helps the user to a first TV.
ColumnLayout {
    id: view

    readonly property string supportedTvs: "https://quiv.example/supported-tvs"

    spacing: Theme.gap

    AppIcon {
        Layout.alignment: Qt.AlignHCenter
        name: "tv"
        colour: Theme.secondaryText
        size: Theme.scaled(28)
    }
    PlainText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: "No TV Selected"
        font: Theme.titleSemibold
    }
    Rectangle {
        Layout.fillWidth: true
        Layout.topMargin: 4
        implicitHeight: card.implicitHeight + 32
        radius: Theme.cardRadius
        color: Theme.surface
        border.width: 1
        border.color: Theme.separator

        ColumnLayout {
            id: card

            anchors.fill: parent
            anchors.margins: 16
            spacing: 6

            PlainText {
                Layout.fillWidth: true
                text: "Quiv TV app is required to connect."
                font: Theme.headline
                wrapMode: Text.Wrap
            }
            PlainText {
                Layout.fillWidth: true
                text: "Install Quiv on your TV using one of these options, then select the discovered TV from the sidebar."
                font: Theme.subheadline
                color: Theme.secondaryText
                wrapMode: Text.Wrap
            }
            RowLayout {
                Layout.fillWidth: true
                Layout.topMargin: 6
                spacing: 0

                NoTvOption {
                    label: "Option 1"

                    Image {
                        source: "image://icon/application"
                        sourceSize.width: 92
                        sourceSize.height: 92
                        Accessible.role: Accessible.Graphic
                        Accessible.name: "Quiv Controller"

                        Rectangle {
                            anchors.fill: parent
                            radius: 20
                            color: "transparent"
                            border.width: 1
                            border.color: Qt.alpha(Theme.primaryText, 0.1)
                        }
                    }
                    PlainText {
                        Layout.fillWidth: true
                        text: "Search for \"Quiv\" on your TV and install it. "
                        font: Theme.subheadlineSemibold
                        wrapMode: Text.Wrap
                    }
                    LinkButton {
                        Layout.fillWidth: true
                        Layout.topMargin: -6
                        text: "[Click here to see the supported platforms.]"
                        font: Theme.subheadlineSemibold
                        address: view.supportedTvs
                    }
                }
                Divider { Layout.fillHeight: true }
                NoTvOption {
                    label: "Option 2"

                    PlainText {
                        Layout.fillWidth: true
                        text: "Google Play link unavailable"
                        font: Theme.subheadline
                        color: Theme.secondaryText
                        wrapMode: Text.Wrap
                    }
                    PlainText {
                        Layout.fillWidth: true
                        text: "Open Google Play, choose your TV, and install Quiv."
                        font: Theme.subheadlineSemibold
                        wrapMode: Text.Wrap
                    }
                }
            }
        }
    }
    PlainText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: "Your Mac and TV must be connected to the same local network."
        font: Theme.captionSemibold
        wrapMode: Text.Wrap
    }
}

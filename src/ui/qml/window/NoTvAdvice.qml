import QtQuick
import QtQuick.Layouts
import Quiv

// The two ways to the TV app.
Panel {
    id: advice

    required property NoTvPresenter presenter

    implicitHeight: card.implicitHeight + 32
    outline: Theme.separator

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

                    Panel {
                        anchors.fill: parent
                        radius: 20
                        color: "transparent"
                        outline: Qt.alpha(Theme.primaryText, 0.1)
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
                    visible: address !== ""
                    text: "[Click here to see the supported platforms.]"
                    font: Theme.subheadlineSemibold
                    address: advice.presenter.supportedTvsAddress
                }
            }
            Divider { Layout.fillHeight: true }
            NoTvOption {
                label: "Option 2"

                StoreButton {
                    visible: address !== ""
                    address: advice.presenter.storeAddress
                }
                PlainText {
                    Layout.fillWidth: true
                    visible: advice.presenter.storeAddress === ""
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

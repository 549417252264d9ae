import QtQuick
import QtQuick.Templates as T
import QtQuick.Layouts
import Quiv

// Helps the user to a first TV.
Flickable {
    id: view

    objectName: "noTv"
    required property NoTvPresenter presenter
    readonly property real room: Math.min(width, Math.max(690, Theme.scaled(690))) - 2 * Theme.padding

    contentHeight: Math.max(height, page.implicitHeight + 2 * Theme.padding)
    boundsBehavior: Flickable.StopAtBounds
    clip: contentHeight > height
    T.ScrollBar.vertical: AppScrollBar {}

    ColumnLayout {
        id: page

        anchors.centerIn: parent
        width: view.room
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
        NetworkProblemStrip {
            Layout.fillWidth: true
            title: view.presenter.problemTitle
            advice: view.presenter.problemAdvice
        }
        EmptyState {
            Layout.fillWidth: true
            visible: view.presenter.isSearching
            isBusy: true
            title: "Searching for TVs in your network..."
        }
        NoTvAdvice {
            Layout.fillWidth: true
            Layout.topMargin: 4
            visible: !view.presenter.isSearching
            presenter: view.presenter
        }
        PlainText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: "Your Mac and TV must be connected to the same local network."
            font: Theme.captionSemibold
            wrapMode: Text.Wrap
        }
    }
}

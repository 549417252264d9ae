import QtQuick
import QtQuick.Layouts
import Quiv

// The selected TV's status above its library.
ColumnLayout {
    id: header

    required property HeaderPresenter presenter

    signal pairRequested()
    signal uploadRequested()

    spacing: Theme.gap

    RowLayout {
        spacing: Theme.gap

        StatusRow {
            Layout.fillWidth: true
            presenter: header.presenter
        }
        AppButton {
            kind: AppButton.Prominent
            symbol: "square.and.arrow.up"
            text: "Upload to the TV"
            onClicked: header.uploadRequested()
        }
    }
    PlainText {
        Layout.fillWidth: true
        visible: text !== ""
        text: header.presenter.state.statusMessage
        wrapMode: Text.Wrap
        maximumLineCount: 3
    }
    RowLayout {
        visible: header.presenter.state.isSyncing
        spacing: 8

        Spinner { size: Theme.scaled(14) }
        PlainText {
            text: "Syncing library..."
            font: Theme.caption
            color: Theme.secondaryText
        }
    }
    PairingStrip {
        Layout.fillWidth: true
        visible: header.presenter.state.requiresPairing
        validUntilText: header.presenter.state.codeValidUntilText
        onPairRequested: header.pairRequested()
        onCancelRequested: header.presenter.cancelPairing()
    }
}

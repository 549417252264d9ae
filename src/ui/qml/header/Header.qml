import QtQuick
import QtQuick.Layouts
import Quiv

// The selected TV's status above its library.
ColumnLayout {
    id: header

    required property WindowPresenter presenter
    readonly property headerState content: presenter.header.state

    spacing: Theme.gap

    RowLayout {
        spacing: Theme.gap

        StatusRow {
            Layout.fillWidth: true
            presenter: header.presenter.header
        }
        AppButton {
            kind: AppButton.Prominent
            symbol: "square.and.arrow.up"
            text: "Upload to the TV"
            shortcut: "Ctrl+O"
            onClicked: header.presenter.pickUploads()
        }
    }
    UnreachableStrip {
        Layout.fillWidth: true
        text: header.content.unreachableText
    }
    StatusMessage {
        Layout.fillWidth: true
        visible: header.content.statusMessage !== ""
        presenter: header.presenter.header
    }
    Announcement { text: header.content.announcement }
    RowLayout {
        visible: header.content.isSyncing
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
        isShown: header.content.requiresPairing
        validUntilText: header.content.codeValidUntilText
        onPairRequested: header.presenter.pairingSheet.present()
        onCancelRequested: header.presenter.header.cancelPairing()
    }
}

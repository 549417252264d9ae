import Quiv

// Asks for the code that the TV shows.
Sheet {
    id: sheet

    required property PairingSheetPresenter presenter

    name: "Pair Quiv Controller"
    visible: presenter.state.isShown

    form: PairingForm { presenter: sheet.presenter }
}

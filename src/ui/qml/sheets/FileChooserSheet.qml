import Quiv

// Chooses files on this computer where the desktop offers nothing for it.
Sheet {
    id: sheet

    required property FileChooserPresenter presenter

    preferredWidth: 620
    padding: 20
    visible: presenter.isShown

    form: FileChooserForm {
        presenter: sheet.presenter
        contentWidth: sheet.preferredWidth
        // What is around the list takes about as much as it.
        listHeight: Math.max(Theme.scaled(90), Math.min(Theme.scaled(340),
                                                        sheet.mostHeight - Theme.scaled(210)))
    }
}

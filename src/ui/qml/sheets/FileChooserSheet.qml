import Quiv

// Chooses files on this computer where the desktop offers nothing for it.
Sheet {
    id: sheet

    required property FileChooserPresenter presenter

    preferredWidth: 620
    padding: 20
    visible: presenter.isShown

    contentItem: FileChooserForm {
        presenter: sheet.presenter
        contentWidth: sheet.preferredWidth
    }
}

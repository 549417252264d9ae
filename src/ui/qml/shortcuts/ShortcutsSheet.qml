import Quiv

// The page that tells of all keys.
Sheet {
    id: sheet

    required property ShortcutsPresenter presenter

    preferredWidth: 560
    name: "Keyboard shortcuts"
    visible: presenter.isShown

    form: ShortcutsForm {
        presenter: sheet.presenter
        title: sheet.name
    }
}

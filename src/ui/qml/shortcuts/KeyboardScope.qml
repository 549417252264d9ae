import QtQuick
import Quiv

// Takes the keys that work anywhere in the window, once what has the focus has let them pass.
FocusScope {
    id: scope

    required property WindowPresenter presenter

    signal searchWanted()

    // Returns whether the key was for the window.
    function act(event: KeyEvent): bool {
        switch (presenter.shortcuts.commandFor(event.key, event.modifiers)) {
        case KeyboardCommand.Search:
            searchWanted()
            return true
        case KeyboardCommand.Refresh:
            presenter.sidebar.refresh()
            return true
        case KeyboardCommand.Upload:
            presenter.pickUploads()
            return true
        case KeyboardCommand.Pause:
            if (!event.isAutoRepeat)
                presenter.pauseOrResume()
            return true
        case KeyboardCommand.ShowShortcuts:
            presenter.shortcuts.present()
            return true
        case KeyboardCommand.Quit:
            Window.window.close()
            return true
        }
        return false
    }

    Keys.onPressed: event => event.accepted = act(event)
}

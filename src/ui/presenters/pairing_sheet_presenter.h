#pragma once

#include "model/window_state.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quiv {

class WindowActions;

// What the pairing sheet shows, and whether it is there at all.
struct PairingSheetState {
    Q_GADGET
    QML_VALUE_TYPE(pairingSheetState)
    Q_PROPERTY(bool isShown MEMBER isShown)
    Q_PROPERTY(QString tvName MEMBER tvName)
    Q_PROPERTY(QString code MEMBER code)
    Q_PROPERTY(bool canVerify MEMBER canVerify)
    Q_PROPERTY(bool isVerifying MEMBER isVerifying)
    Q_PROPERTY(QString refusal MEMBER refusal)
    Q_PROPERTY(int refusals MEMBER refusals)
    Q_PROPERTY(QString codeValidUntilText MEMBER codeValidUntilText)

public:
    bool isShown = false;
    QString tvName;
    QString code; // as typed
    bool canVerify = false;
    bool isVerifying = false;
    QString refusal; // why the last code was not accepted; may be empty
    int refusals = 0;
    QString codeValidUntilText; // a sentence, or empty while the end is not known

    bool operator==(const PairingSheetState&) const = default;
};

// Whether the code has three characters, as people count them.
bool isCompletePairingCode(const QString& code);

// What of a typed text is kept: no blanks around it, at most three characters.
QString typedPairingCode(const QString& text);

// The sheet in which the user types the code that the TV shows.
//
// It comes by itself when the selected TV begins to require pairing and goes when it no longer
// does. Once the user has put it away, it stays away until it is asked for, a control action needs
// it, or the TV was paired in between. The typed code is forgotten with its TV.
class PairingSheetPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(quiv::PairingSheetState state READ state NOTIFY stateChanged)

public:
    explicit PairingSheetPresenter(WindowActions& actions, QObject* parent = nullptr);

    const PairingSheetState& state() const { return m_state; }

    void show(const WindowState& state);

    Q_INVOKABLE void present();
    Q_INVOKABLE void dismiss();
    Q_INVOKABLE void type(const QString& code);
    // The sheet stays until the TV accepts the code.
    Q_INVOKABLE void verify();
    Q_INVOKABLE void cancelPairing();

Q_SIGNALS:
    void stateChanged();

private:
    void close();
    void update();

    WindowActions& m_actions;
    WindowState m_shown;
    bool m_isPresented = false; // wanted; shown while a TV requires pairing
    bool m_isClosed = false;    // by the user
    QString m_code;
    PairingSheetState m_state;
};

} // namespace quiv

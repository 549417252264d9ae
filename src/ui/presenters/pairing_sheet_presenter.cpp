#include "ui/presenters/pairing_sheet_presenter.h"

#include "platform/publish.h"
#include "ui/presenters/header_presenter.h"
#include "ui/presenters/window_actions.h"

#include <QTextBoundaryFinder>

#include <utility>

namespace quiv {

bool isCompletePairingCode(const QString& code) {
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, code);
    for (int count = 0; count < 3; ++count) {
        if (characters.toNextBoundary() < 0)
            return false;
    }
    return characters.position() == code.size();
}

PairingSheetPresenter::PairingSheetPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions) {}

void PairingSheetPresenter::setSelectedDevice(const std::optional<TVEndpoint>& device) {
    const auto key = device ? std::optional(endpointKey(*device)) : std::nullopt;
    if (key == m_selectedKey)
        return;
    m_selectedKey = key;
    m_code.clear();
    m_isPresented = m_selectedKey && m_pairing.requiresControlPairing;
    update();
}

void PairingSheetPresenter::setPairing(const PairingState& pairing) {
    const PairingState before = std::exchange(m_pairing, pairing);
    if (before.requiresControlPairing != pairing.requiresControlPairing) {
        m_isPresented = pairing.requiresControlPairing && m_selectedKey;
        if (!pairing.requiresControlPairing)
            m_code.clear();
    }
    update();
}

void PairingSheetPresenter::present() {
    m_isPresented = true;
    update();
}

void PairingSheetPresenter::dismiss() {
    m_isPresented = false;
    update();
}

void PairingSheetPresenter::type(const QString& code) {
    m_code = code;
    update();
}

void PairingSheetPresenter::verify() {
    if (m_state.canVerify)
        m_actions.verifyPairingCode(m_code);
}

void PairingSheetPresenter::cancelPairing() {
    m_actions.cancelPairing();
    m_code.clear();
    dismiss();
}

void PairingSheetPresenter::update() {
    const bool isShown = m_isPresented && m_selectedKey && m_pairing.requiresControlPairing;
    publish(this, m_state,
            PairingSheetState{isShown, m_code, isCompletePairingCode(m_code),
                              codeValidUntilText(m_pairing)},
            &PairingSheetPresenter::stateChanged);
}

} // namespace quiv

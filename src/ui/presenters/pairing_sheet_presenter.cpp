#include "ui/presenters/pairing_sheet_presenter.h"

#include "platform/publish.h"
#include "ui/presenters/header_presenter.h"
#include "ui/presenters/window_actions.h"

#include <QTextBoundaryFinder>

#include <utility>

namespace quiv {

namespace {

bool requiresPairing(const WindowState& state) {
    return state.selectedDevice && state.pairing.requiresControlPairing;
}

} // namespace

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

void PairingSheetPresenter::show(const WindowState& state) {
    const WindowState before = std::exchange(m_shown, state);
    const bool isAnotherTv = !isSameTv(before, state);
    if (isAnotherTv || requiresPairing(before) != requiresPairing(state))
        m_isPresented = requiresPairing(state);
    if (isAnotherTv || !requiresPairing(state))
        m_code.clear();
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
    publish(this, m_state,
            PairingSheetState{m_isPresented && requiresPairing(m_shown), m_code,
                              isCompletePairingCode(m_code), codeValidUntilText(m_shown.pairing)},
            &PairingSheetPresenter::stateChanged);
}

} // namespace quiv

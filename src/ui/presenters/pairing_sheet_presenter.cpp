#include "ui/presenters/pairing_sheet_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/header_presenter.h"
#include "ui/presenters/window_actions.h"

#include <QTextBoundaryFinder>

#include <utility>

namespace quiv {

namespace {

bool requiresPairing(const WindowState& state) {
    return state.selectedDevice && state.pairing.requiresControlPairing;
}

// Where the third character ends; -1 if there are fewer.
qsizetype endOfThird(const QString& text) {
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    for (int count = 0; count < 3; ++count) {
        if (characters.toNextBoundary() < 0)
            return -1;
    }
    return characters.position();
}

} // namespace

bool isCompletePairingCode(const QString& code) {
    return endOfThird(code) == code.size();
}

QString typedPairingCode(const QString& text) {
    const QString code = text.trimmed();
    const qsizetype end = endOfThird(code);
    return end < 0 ? code : code.first(end);
}

PairingSheetPresenter::PairingSheetPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions) {}

void PairingSheetPresenter::show(const WindowState& state) {
    const WindowState before = std::exchange(m_shown, state);
    const bool isAnotherTv = !isSameTv(before, state);
    const bool isRequested = state.pairing.requests > before.pairing.requests;
    if (isAnotherTv || isRequested || state.pairing.isControlPaired)
        m_isClosed = false;
    if (isAnotherTv || isRequested || requiresPairing(before) != requiresPairing(state))
        m_isPresented = requiresPairing(state) && !m_isClosed;
    if (isAnotherTv || !requiresPairing(state))
        m_code.clear();
    update();
}

void PairingSheetPresenter::present() {
    m_isPresented = true;
    update();
}

void PairingSheetPresenter::dismiss() {
    close();
    update();
}

void PairingSheetPresenter::close() {
    m_isPresented = false;
    m_isClosed = true;
}

void PairingSheetPresenter::type(const QString& code) {
    m_code = typedPairingCode(code);
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
    const PairingState& pairing = m_shown.pairing;
    PairingSheetState state;
    state.isShown = m_isPresented && requiresPairing(m_shown);
    if (m_shown.selectedDevice)
        state.tvName = displayText(m_shown.selectedDevice->name);
    state.code = m_code;
    state.isVerifying = pairing.isVerifying;
    state.canVerify = isCompletePairingCode(m_code) && !pairing.isVerifying && !pairing.isLockedOut;
    state.refusal = displayText(pairing.refusal);
    state.refusals = pairing.refusals;
    state.codeValidUntilText = codeValidUntilText(pairing);
    publish(this, m_state, std::move(state), &PairingSheetPresenter::stateChanged);
}

} // namespace quiv

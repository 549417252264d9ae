#include "net/pairing.h"

#include "net/status_line.h"
#include "platform/publish.h"

#include <QLocale>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 SameValidityMs = 5000;

QString trimmedOr(const std::optional<QString>& text, const QString& otherwise) {
    const QString trimmed = text.value_or(QString()).trimmed();
    return trimmed.isEmpty() ? otherwise : trimmed;
}

} // namespace

std::optional<QString> pairingCodeValidUntilText(const std::optional<QDateTime>& validUntil) {
    if (!validUntil)
        return std::nullopt;
    const QLocale locale;
    const QString format = locale.timeFormat(QLocale::ShortFormat).remove(":ss"_L1);
    return locale.toString(validUntil->toLocalTime().time(), format);
}

bool isPairingCode(const QString& code) {
    const auto characters = code.trimmed().toUcs4();
    return characters.size() == 3 &&
           std::ranges::all_of(characters, [](char32_t each) { return QChar::isNumber(each); });
}

std::optional<QDateTime> pairingValidity(const std::optional<QDateTime>& known,
                                         std::optional<std::int64_t> lifetimeSec, QDateTime now) {
    if (lifetimeSec.value_or(0) < 1)
        return std::nullopt;
    const QDateTime validUntil = now.addSecs(clampedLifetime(*lifetimeSec));
    if (known && std::abs(known->msecsTo(validUntil)) <= SameValidityMs)
        return known;
    return validUntil;
}

Pairing::Pairing(RequestLayer& requests, AuthTokens& tokens, const SelectedDevice& selected,
                 const Clock& clock, StatusLine& status, QObject* parent)
    : QObject(parent),
      m_requests(requests),
      m_tokens(tokens),
      m_selected(selected),
      m_clock(clock),
      m_status(status) {
    m_requests.setAuthListener(this);
}

Pairing::~Pairing() {
    m_requests.setAuthListener(nullptr);
}

Task<> Pairing::refreshPairingStatus(Announce announce, Errors errors) {
    const bool announces = announce == Announce::Yes;
    return checkStatus({announces ? 5000ms : 2000ms, announces, errors == Errors::Reported});
}

Task<> Pairing::checkStatus(Check check) {
    const auto base = m_selected.baseURL();
    if (!base)
        co_return;
    const SelectedDevice::Guard guard(m_selected);
    try {
        auto fetching = m_requests.fetchJSON<PairingStatusResponse>(*base, u"api/mac/auth/status"_s,
                                                                    check.timeout, guard);
        const PairingStatusResponse response = co_await std::move(fetching);
        if (guard.isCurrent())
            applyStatus(response, check.announces);
    } catch (const Error& error) {
        if (guard.isCurrent() && check.reportsErrors)
            m_status.post(u"Could not check pairing status: "_s + error.description());
    }
}

void Pairing::applyStatus(const PairingStatusResponse& response, bool announces) {
    PairingState state = m_state;
    state.isControlPaired = response.authorized;
    state.requiresControlPairing = !response.authorized;
    state.pairingCodeValidUntil = validity(response.expiresInSec);
    state.pairingClientLabel = trimmedOr(response.clientLabel, PairingState().pairingClientLabel);
    publishState(state);
    if (!response.authorized && announces) {
        m_status.post(trimmedOr(response.message,
                                u"Pairing required. Enter the 3-digit code shown on TV."_s));
    }
}

Task<bool> Pairing::ensureControlPairing(QString action) {
    const SelectedDevice::Guard guard(m_selected);
    if (m_state.isControlPaired) {
        const auto base = m_selected.baseURL();
        if (!base || !m_tokens.authTokenExpiresSoon(*base))
            co_return true;
        auto quietCheck = refreshPairingStatus(Announce::No, Errors::Quiet);
        co_await std::move(quietCheck);
        if (guard.isCurrent() && m_state.isControlPaired)
            co_return true;
    }
    auto check = refreshPairingStatus(Announce::Yes, Errors::Reported);
    co_await std::move(check);
    if (!guard.isCurrent())
        co_return false;
    if (m_state.isControlPaired)
        co_return true;

    PairingState state = m_state;
    state.requiresControlPairing = true;
    publishState(state);
    QString message = u"Pairing required for %1. Enter the 3-digit code shown on TV."_s.arg(action);
    if (const auto time = pairingCodeValidUntilText(m_state.pairingCodeValidUntil))
        message += u" This code is valid until %1."_s.arg(*time);
    m_status.post(message);
    co_return false;
}

void Pairing::reset() {
    publishState({});
}

void Pairing::authTokenStored(const QString& deviceKey, std::int64_t lifetimeSec) {
    const auto base = m_selected.baseURL();
    if (!base || tokenDeviceKey(*base) != deviceKey)
        return;
    PairingState state = m_state;
    state.pairingCodeValidUntil = validity(lifetimeSec);
    publishState(state);
}

void Pairing::handleAuthFailure(int status, const QString& message) {
    if (status != 401 && status != 429)
        return;
    if (const auto base = m_selected.baseURL())
        m_tokens.removeAuthToken(*base);
    PairingState state = m_state;
    state.isControlPaired = false;
    state.requiresControlPairing = true;
    state.pairingCodeValidUntil = std::nullopt;
    publishState(state);
    if (status == 429) {
        m_status.post(trimmedOr(message, u"Too many auth attempts. Wait before trying again."_s));
    } else if (message.contains("pair"_L1, Qt::CaseInsensitive) ||
               message.contains("token"_L1, Qt::CaseInsensitive)) {
        m_status.post(message);
    }
}

void Pairing::verifyPairingCode(const QString& code) {
    m_tasks.add(verify(code));
}

Task<> Pairing::verify(QString code) {
    const auto base = m_selected.baseURL();
    if (!base)
        co_return;
    if (!isPairingCode(code)) {
        m_status.post(u"Enter a valid 3-digit pairing code."_s);
        co_return;
    }
    const SelectedDevice::Guard guard(m_selected);
    m_status.post(u"Verifying pairing code..."_s);
    HttpRequest request =
        tvRequest("POST", *base, u"api/mac/auth/verify"_s, {{u"code"_s, code.trimmed()}});
    request.timeouts.total = 10s;
    try {
        auto sending = m_requests.send(std::move(request), *base);
        const HttpReply reply = co_await std::move(sending);
        if (!guard.isCurrent())
            co_return;
        if (reply.isSuccess()) {
            PairingState state = m_state;
            state.isControlPaired = true;
            state.requiresControlPairing = false;
            publishState(state);
            m_status.post(m_state.pairingClientLabel + u" paired successfully."_s);
            co_return;
        }
        m_status.post(serverErrorMessage(reply.status, reply.body));
    } catch (const Error& error) {
        if (guard.isCurrent())
            m_status.post(u"Pairing failed: "_s + error.description());
        co_return;
    }
    // The TV's own words on the refused code stay in the status line.
    auto check = checkStatus({.timeout = 5s});
    co_await std::move(check);
}

void Pairing::cancelPairing() {
    m_tasks.add(cancel());
}

Task<> Pairing::cancel() {
    const auto base = m_selected.baseURL();
    if (!base)
        co_return;
    const SelectedDevice::Guard guard(m_selected);
    HttpRequest request = tvRequest("POST", *base, u"api/mac/auth/cancel"_s);
    request.timeouts.total = 5s;
    try {
        auto sending = m_requests.send(std::move(request), *base);
        co_await std::move(sending);
        m_tokens.removeAuthToken(*base);
        if (!guard.isCurrent())
            co_return;
        PairingState state = m_state;
        state.isControlPaired = false;
        state.requiresControlPairing = false;
        state.pairingCodeValidUntil = std::nullopt;
        publishState(state);
        m_status.post(u"Pairing canceled."_s);
    } catch (const Error& error) {
        if (guard.isCurrent())
            m_status.post(u"Could not cancel pairing: "_s + error.description());
    }
}

void Pairing::publishState(const PairingState& state) {
    publish(this, m_state, state, &Pairing::stateChanged);
}

std::optional<QDateTime> Pairing::validity(std::optional<std::int64_t> lifetimeSec) const {
    const auto now = QDateTime::fromMSecsSinceEpoch(m_clock.wallTime().time_since_epoch().count());
    return pairingValidity(m_state.pairingCodeValidUntil, lifetimeSec, now);
}

} // namespace quiv

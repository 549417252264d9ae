#include "net/pairing.h"

#include "platform/publish.h"

#include <QLocale>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 SameValidityMs = 5000;
constexpr std::chrono::seconds UsualLockOut = 10s;
constexpr std::chrono::seconds LongestLockOut = 10min;

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

std::chrono::seconds lockOutTime(const HttpReply& reply) {
    bool isNumber = false;
    const int told = reply.header("Retry-After").value_or(QByteArray()).toInt(&isNumber);
    if (!isNumber || told < 1)
        return UsualLockOut;
    return std::min(std::chrono::seconds(told), LongestLockOut);
}

bool isPairingCode(const QString& code) {
    const auto characters = code.trimmed().toUcs4();
    return characters.size() == 3 &&
           std::ranges::all_of(characters, [](char32_t each) { return QChar::isDigit(each); });
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

Pairing::Pairing(const TvAccess& tvs, RequestLayer& requests, AuthTokens& tokens, Clock& clock,
                 QObject* parent)
    : QObject(parent), m_tvs(tvs), m_requests(requests), m_tokens(tokens), m_clock(clock) {
    m_requests.setAuthListener(this);
}

Pairing::~Pairing() {
    m_requests.setAuthListener(nullptr);
}

Task<> Pairing::refreshPairingStatus(Announce announce, Errors errors) {
    return checkStatus(announce == Announce::Yes ? 5000ms : 2000ms, announce, errors);
}

Task<> Pairing::checkStatus(std::chrono::milliseconds timeout, Announce announce, Errors errors) {
    const auto tv = m_tvs.current();
    if (!tv)
        co_return;
    const int verification = m_verifications;
    try {
        const auto response =
            co_await tv->get<PairingStatusResponse>(u"api/mac/auth/status"_s, timeout);
        if (verification == m_verifications) // else it is older than what the code has brought
            applyStatus(response, announce);
    } catch (const Error& error) {
        if (errors == Errors::Reported)
            tv->say(failureMessage(u"Could not check pairing status: "_s, error));
    }
}

void Pairing::applyStatus(const PairingStatusResponse& response, Announce announce) {
    PairingState state = m_state;
    state.isControlPaired = response.authorized;
    state.requiresControlPairing = !response.authorized;
    state.pairingCodeValidUntil = validity(response.expiresInSec);
    state.pairingClientLabel = trimmedOr(response.clientLabel, PairingState().pairingClientLabel);
    publishState(state);
    if (!response.authorized && announce == Announce::Yes) {
        m_tvs.say(trimmedOr(response.message,
                            u"Pairing required. Enter the 3-digit code shown on TV."_s));
    }
}

Task<bool> Pairing::ensureControlPairing(QString action) {
    if (isKnownPaired())
        co_return true;
    if (m_state.isControlPaired) {
        co_await refreshPairingStatus(Announce::No, Errors::Quiet);
        if (m_state.isControlPaired)
            co_return true;
    }
    co_await refreshPairingStatus(Announce::Yes, Errors::Reported);
    if (!m_state.isControlPaired)
        sayPairingIsRequired(action);
    co_return m_state.isControlPaired;
}

bool Pairing::isKnownPaired() const {
    const auto tv = m_tvs.current();
    return m_state.isControlPaired && (!tv || !m_tokens.authTokenExpiresSoon(tv->base()));
}

void Pairing::requirePairing(const QString& action, bool isNewAction) {
    if (isNewAction || !m_state.requiresControlPairing)
        sayPairingIsRequired(action);
}

void Pairing::sayPairingIsRequired(const QString& action) {
    PairingState state = m_state;
    state.isControlPaired = false;
    state.requiresControlPairing = true;
    ++state.requests;
    publishState(state);
    QString message = u"Pairing required for %1. Enter the 3-digit code shown on TV."_s.arg(action);
    if (const auto time = pairingCodeValidUntilText(m_state.pairingCodeValidUntil))
        message += u" This code is valid until %1."_s.arg(*time);
    m_tvs.say(message);
}

void Pairing::reset() {
    m_lockOut.reset();
    publishState({});
}

void Pairing::authTokenStored(const QString& deviceKey, std::int64_t lifetimeSec) {
    const auto tv = m_tvs.current();
    if (!tv || tokenDeviceKey(tv->base()) != deviceKey)
        return;
    PairingState state = m_state;
    state.pairingCodeValidUntil = validity(lifetimeSec);
    publishState(state);
}

void Pairing::handleAuthFailure(int status, const QString& message, const QString& sentToken) {
    if (status != 401 && status != 429)
        return;
    if (const auto tv = m_tvs.current()) {
        const QString stored = m_tokens.storedAuthToken(tv->base()).value_or(QString());
        if (status == 401 && !stored.isEmpty() && stored != sentToken)
            return; // the TV has given a newer token since
        m_tokens.removeAuthToken(tv->base());
    }
    PairingState state = m_state;
    state.isControlPaired = false;
    state.requiresControlPairing = true;
    state.pairingCodeValidUntil = std::nullopt;
    publishState(state);
    if (status == 429) {
        m_tvs.say(failureMessage(
            trimmedOr(message, u"Too many auth attempts. Wait before trying again."_s)));
    } else if (message.contains("pair"_L1, Qt::CaseInsensitive) ||
               message.contains("token"_L1, Qt::CaseInsensitive)) {
        m_tvs.say(message);
    }
}

void Pairing::verifyPairingCode(const QString& code) {
    m_tasks.add(verify(code));
}

Task<> Pairing::verify(QString code) {
    const auto tv = m_tvs.current();
    if (!tv)
        co_return;
    if (!isPairingCode(code)) {
        refuse(*tv, failureMessage(u"Enter a valid 3-digit pairing code."_s));
        co_return;
    }
    tv->say(u"Verifying pairing code..."_s);
    PairingState verifying = m_state;
    verifying.isVerifying = true;
    verifying.refusal.clear();
    publishState(verifying);
    const QueryItems query{{u"code"_s, code.trimmed()}};
    HttpRequest request = tv->request("POST", u"api/mac/auth/verify"_s, query);
    request.timeouts.total = 10s;
    try {
        const TvReply reply = co_await tv->send(std::move(request));
        if (reply.isSuccess()) {
            ++m_verifications;
            PairingState state = m_state;
            state.isControlPaired = true;
            state.requiresControlPairing = false;
            state.isVerifying = false;
            publishState(state);
            tv->say(m_state.pairingClientLabel + u" paired successfully."_s);
            co_return;
        }
        if (reply.status == 429)
            lockOut(lockOutTime(reply));
        refuse(*tv, failureMessage(serverErrorMessage(reply.status, reply.body)));
    } catch (const Error& error) {
        refuse(*tv, failureMessage(u"Pairing failed: "_s, error));
        co_return;
    }
    // The TV's own words on the refused code stay in the status line.
    co_await checkStatus(5s, Announce::No, Errors::Quiet);
}

void Pairing::refuse(const Tv& tv, const StatusMessage& message) {
    PairingState state = m_state;
    state.isVerifying = false;
    state.refusal = message.text;
    ++state.refusals;
    publishState(state);
    tv.say(message);
}

void Pairing::lockOut(std::chrono::seconds time) {
    PairingState state = m_state;
    state.isLockedOut = true;
    publishState(state);
    m_lockOut = m_clock.after(time, [this] {
        PairingState open = m_state;
        open.isLockedOut = false;
        publishState(open);
    });
}

void Pairing::cancelPairing() {
    m_tasks.add(cancel());
}

Task<> Pairing::cancel() {
    const auto tv = m_tvs.current();
    if (!tv)
        co_return;
    HttpRequest request = tv->request("POST", u"api/mac/auth/cancel"_s);
    request.timeouts.total = 5s;
    try {
        // The TV has forgotten this client also if another one is selected by now.
        co_await tv->whicheverIsSelected().send(std::move(request));
        m_tokens.removeAuthToken(tv->base());
        tv->requireSelected();
        PairingState state = m_state;
        state.isControlPaired = false;
        state.requiresControlPairing = false;
        state.pairingCodeValidUntil = std::nullopt;
        publishState(state);
        tv->say(u"Pairing canceled."_s);
    } catch (const Error& error) {
        tv->say(failureMessage(u"Could not cancel pairing: "_s, error));
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

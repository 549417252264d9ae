#include "net/auth_tokens.h"

#include "net/selected_device.h"
#include "net/token_order.h"
#include "platform/uuid.h"

#include <algorithm>
#include <cmath>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t LongestLifetimeSec = 100ll * 365 * 24 * 3600;
constexpr std::int64_t ExpiresSoonMs = 60'000;
constexpr double LeastGainMs = 30'000;
constexpr qsizetype LongestToken = 4096;             // bytes
constexpr double Int64Bound = 9223372036854775808.0; // 2^63

const QString ClientIdKey = u"ombra.controlClientId.v1"_s;
const QString OrderKey = u"ombra.authTokenOrder.v1"_s;
const QString TokenPrefix = u"ombra.authToken.v1."_s;
const QString ExpiryPrefix = u"ombra.authTokenExpiryMs.v1."_s;

QString tokenKey(const QUrl& url) {
    return TokenPrefix + tokenDeviceKey(url);
}

QString expiryKey(const QUrl& url) {
    return ExpiryPrefix + tokenDeviceKey(url);
}

bool hasControlCharacter(const QByteArray& text) {
    return std::any_of(text.begin(), text.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte < 0x20 || byte == 0x7f;
    });
}

std::optional<std::int64_t> lifetimeOf(const QByteArray& text) {
    bool isNumber = false;
    const qint64 lifetime = text.trimmed().toLongLong(&isNumber);
    return isNumber ? std::optional<std::int64_t>(lifetime) : std::nullopt;
}

} // namespace

std::optional<AuthGrant> authGrant(const HttpReply& reply) {
    AuthGrant grant;
    if (const auto token = reply.header("X-Quiv-Auth-Token")) {
        if (token->size() > LongestToken || hasControlCharacter(*token))
            return std::nullopt;
        grant.token = QString::fromUtf8(*token);
    }
    if (const auto lifetime = reply.header("X-Quiv-Auth-Expires-In"))
        grant.lifetimeSec = lifetimeOf(*lifetime);
    if (!grant.token && !grant.lifetimeSec)
        return std::nullopt;
    return grant;
}

std::int64_t clampedLifetime(std::int64_t lifetimeSec) {
    return std::min(lifetimeSec, LongestLifetimeSec);
}

AuthTokens::AuthTokens(SettingsStore& settings, const Clock& clock)
    : m_settings(settings), m_clock(clock) {}

QString AuthTokens::controlClientId() {
    if (m_cachedControlClientId.isEmpty()) {
        m_cachedControlClientId = m_settings.text(ClientIdKey).value_or(QString()).trimmed();
        if (m_cachedControlClientId.isEmpty()) {
            m_cachedControlClientId = u"mac-"_s + randomUuid();
            m_settings.setText(ClientIdKey, m_cachedControlClientId);
        }
    }
    return m_cachedControlClientId;
}

std::optional<QString> AuthTokens::storedAuthToken(const QUrl& url) const {
    const QString token = m_settings.text(tokenKey(url)).value_or(QString()).trimmed();
    return token.isEmpty() ? std::nullopt : std::optional(token);
}

bool AuthTokens::authTokenExpiresSoon(const QUrl& url) const {
    const double expiry = m_settings.real(expiryKey(url)).value_or(0);
    if (!std::isfinite(expiry) || expiry < 1 || expiry >= Int64Bound)
        return false;
    return static_cast<std::int64_t>(expiry) - nowMs() <= ExpiresSoonMs;
}

void AuthTokens::applyControlHeaders(HttpRequest& request, const QUrl& url) {
    request.headers.append({"X-Quiv-Client-Id", controlClientId().toUtf8()});
    if (const auto token = storedAuthToken(url)) {
        request.headers.append({"X-Quiv-Auth-Token", token->toUtf8()});
        noteUse(tokenDeviceKey(url));
    }
}

QueryItems AuthTokens::authQueryItems(const QUrl& url) {
    QueryItems items{{u"clientId"_s, controlClientId()}};
    if (const auto token = storedAuthToken(url))
        items.append({u"authToken"_s, *token});
    return items;
}

bool AuthTokens::storeAuthToken(const AuthGrant& grant, const QUrl& url) {
    const QString token = grant.token.value_or(QString()).trimmed();
    const std::int64_t lifetimeSec = clampedLifetime(grant.lifetimeSec.value_or(0));
    if (token.isEmpty() || lifetimeSec < 1) {
        removeAuthToken(url);
        return false;
    }
    const bool isKnown = storedAuthToken(url) == token;
    const auto expiryMs = static_cast<double>(nowMs() + lifetimeSec * 1000);
    // A TV renews the lifetime with every reply: not each of them is worth writing to the disk.
    const double gainMs = expiryMs - m_settings.real(expiryKey(url)).value_or(0);
    if (isKnown && gainMs >= 0 && gainMs < LeastGainMs)
        return true;
    m_settings.setText(tokenKey(url), token);
    m_settings.setReal(expiryKey(url), expiryMs);
    noteUse(tokenDeviceKey(url));
    if (!isKnown && tokenDeviceKey(url) == keyOfSelected())
        Q_EMIT tokenChanged();
    return true;
}

void AuthTokens::noteUse(const QString& key) {
    const QString selected = keyOfSelected();
    const TokenOrder before = tokenOrder(m_settings.text(OrderKey).value_or(QString()));
    TokenOrder order = key == selected ? afterUse(before, key) : afterGift(before, key);
    if (order == before)
        return;
    while (true) {
        const QString surplus = surplusKey(order, MostTokens, selected);
        if (surplus.isEmpty())
            break;
        order = without(std::move(order), surplus);
        forget(surplus);
    }
    m_settings.setText(OrderKey, textOf(order));
}

void AuthTokens::forget(const QString& key) {
    m_settings.remove(TokenPrefix + key);
    m_settings.remove(ExpiryPrefix + key);
}

QString AuthTokens::keyOfSelected() const {
    const auto endpoint = m_settings.text(QString::fromUtf16(SelectedDeviceKey));
    return tokenDeviceKey(QUrl(u"http://"_s + endpoint.value_or(QString()).trimmed()));
}

void AuthTokens::removeAuthToken(const QUrl& url) {
    const bool isKnown = storedAuthToken(url).has_value();
    forget(tokenDeviceKey(url));
    if (const auto order = m_settings.text(OrderKey))
        m_settings.setText(OrderKey, textOf(without(tokenOrder(*order), tokenDeviceKey(url))));
    if (isKnown && tokenDeviceKey(url) == keyOfSelected())
        Q_EMIT tokenChanged();
}

std::int64_t AuthTokens::nowMs() const {
    return m_clock.wallTime().time_since_epoch().count();
}

} // namespace quiv

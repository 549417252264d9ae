#pragma once

#include "net/tv_request.h"
#include "platform/clock.h"
#include "platform/http/http_session.h"
#include "platform/settings_store.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace quiv {

// What a reply says about the access token: a new one with its lifetime, or that the TV wants the
// old one forgotten.
struct AuthGrant {
    std::optional<QString> token;
    std::optional<std::int64_t> lifetimeSec;
};

// What a reply's "X-Quiv-Auth-Token" and "X-Quiv-Auth-Expires-In" headers say. Returns nullopt
// if it has neither, or a token that could not be sent back as it is or is longer than 4 KiB.
std::optional<AuthGrant> authGrant(const HttpReply& reply);

// A lifetime in seconds within what dates can hold (a hundred years).
std::int64_t clampedLifetime(std::int64_t lifetimeSec);

// Who this client is to the TVs: its client id, and one access token with its expiry per TV, kept
// in the settings. "URL" is any URL of the TV. Tokens of a limited number of TVs are kept: the one
// that was selected last always, of the others those that were used last.
class AuthTokens : public QObject {
    Q_OBJECT

public:
    static constexpr qsizetype MostTokens = 64;

    AuthTokens(SettingsStore& settings, const Clock& clock);

    // "mac-" and a UUID; made on first use, never changes after that.
    QString controlClientId();
    std::optional<QString> storedAuthToken(const QUrl& url) const;
    // The token runs out within 60 s, or has run out.
    bool authTokenExpiresSoon(const QUrl& url) const;

    // Adds the client id and the TV's token, if there is one.
    void applyControlHeaders(HttpRequest& request, const QUrl& url);
    // This client's identity as query items, for URLs handed to components that send no headers.
    QueryItems authQueryItems(const QUrl& url);

    // Stores a token that comes with a lifetime of at least a second, else forgets the TV's token.
    // Returns whether it was stored.
    bool storeAuthToken(const AuthGrant& grant, const QUrl& url);
    void removeAuthToken(const QUrl& url);

Q_SIGNALS:
    void tokenChanged(); // of the TV that was selected last

private:
    std::int64_t nowMs() const;
    QString keyOfSelected() const;
    void noteUse(const QString& key);
    void forget(const QString& key);

    SettingsStore& m_settings;
    const Clock& m_clock;
    QString m_cachedControlClientId;
};

} // namespace quiv

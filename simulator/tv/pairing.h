#pragma once

#include <QHash>
#include <QString>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace quiv::simulator {

// What a request says about its sender; both may be empty.
struct Credentials {
    QString clientId;
    QString token;
};

// Who may control the TV: the code on its screen, the tokens it handed out, wrong attempts.
// Thread-safe. A new code is announced through `codeShown`, called without the lock.
class Pairing {
public:
    using Instant = std::chrono::steady_clock::time_point;
    using Seconds = std::chrono::seconds;

    struct Settings {
        QString code; // is chosen at random if empty
        Seconds codeLifetime{300};
        Seconds tokenLifetime{86400};
        Seconds lockout{30};
    };
    struct Grant {
        QString token;
        qint64 expiresInSec = 0;
    };
    struct Status {
        bool authorized = false;
        qint64 expiresInSec = 0; // of the token when authorized, else of the code
    };
    struct Verdict {
        enum class Kind { Paired, WrongCode, LockedOut };
        Kind kind = Kind::WrongCode;
        Grant grant{};           // Paired
        int attemptsLeft = 0;    // WrongCode
        qint64 lockedForSec = 0; // LockedOut
    };

    Pairing(Settings settings, std::function<void(QString)> codeShown,
            std::function<Instant()> now = std::chrono::steady_clock::now);

    // Whether the text is three digits.
    static bool isCode(const QString& text);

    Verdict verify(const QString& clientId, const QString& code);
    Status status(const Credentials& sender);
    bool isPaired(const Credentials& sender);
    // Returns the token to use from now on if the sender's is not the newest or has less than half
    // of its life left. The old one stays valid until it expires: requests overtake each other.
    std::optional<Grant> renewal(const Credentials& sender);
    // Takes back every token of the sender, provided that its own is valid.
    void cancel(const Credentials& sender);

    QString code() const;
    // What the TV's screen tells: the code, for how long it is valid, and whether a computer that
    // is not paired has asked about pairing in the last seconds.
    struct Shown {
        QString code;
        qint64 expiresInSec = 0;
        bool isWanted = false;
    };
    Shown shown();
    // Shows a new code when the present one has expired; to be called now and then.
    void renewExpiredCode();
    // Shows this code from now on, or a random one if it is empty.
    void setCode(const QString& code);
    void expireCode();
    void expireTokens();
    // Applies to tokens that are handed out from now on.
    void setTokenLifetime(Seconds lifetime);

private:
    struct Token {
        QString text;
        Instant expires;
    };

    void showNewCode();
    const Token* validToken(const Credentials& sender);
    Grant issue(const QString& clientId);
    Verdict refuse();
    qint64 secondsUntil(Instant instant) const;

    mutable std::mutex m_mutex;
    Settings m_settings;
    const std::function<void(QString)> m_codeShown;
    const std::function<Instant()> m_now;
    QString m_code;
    Instant m_codeExpires;
    Instant m_lockedUntil;
    int m_wrongAttempts = 0;
    QHash<QString, std::vector<Token>> m_tokens; // by client, oldest first
    QHash<QString, Instant> m_unpairedAskedAt;   // by client, the last time
};

} // namespace quiv::simulator

#pragma once

#include "net/tv.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"
#include "platform/clock.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>

using namespace Qt::StringLiterals;

namespace quiv {

// What is known of this client's right to control the selected TV.
struct PairingState {
    bool isControlPaired = false;
    bool requiresControlPairing = false;
    std::optional<QDateTime> pairingCodeValidUntil; // or the end of the pairing, once paired
    QString pairingClientLabel = u"Quiv Controller"_s;

    bool operator==(const PairingState&) const = default;
};

// The clock time of a date in the user's locale.
std::optional<QString> pairingCodeValidUntilText(const std::optional<QDateTime>& validUntil);

// Exactly three digits of any script, blanks around them aside.
bool isPairingCode(const QString& code);

// When a code or pairing with this lifetime runs out; `known` where that is within five seconds of
// it, so that a lifetime told every two seconds does not make the time flicker.
std::optional<QDateTime> pairingValidity(const std::optional<QDateTime>& known,
                                         std::optional<std::int64_t> lifetimeSec, QDateTime now);

// Pairs this client with the selected TV by the three-digit code the TV shows.
//
// Owns the pairing state and the tasks that the user starts; they go with it. A reply for a TV that
// is no longer selected changes nothing here.
class Pairing : public QObject, public RequestLayer::AuthListener {
    Q_OBJECT

public:
    enum class Announce { Yes, No }; // tell the user when the TV wants pairing

    Pairing(const TvAccess& tvs, RequestLayer& requests, AuthTokens& tokens, const Clock& clock,
            QObject* parent = nullptr);
    ~Pairing() override;

    const PairingState& state() const { return m_state; }

    Task<> refreshPairingStatus(Announce announce, Errors errors);
    // Returns whether a control action ("upload", "delete", ...) may go ahead; if not, says what is
    // needed.
    Task<bool> ensureControlPairing(QString action);
    // Whether this client is paired as far as is known, and will be for a while.
    bool isKnownPaired() const;
    // The TV wants this client paired before that action: shows it, and says so once.
    void requirePairing(const QString& action);

    // Forgets what is known, because another TV was selected.
    void reset();

    void authTokenStored(const QString& deviceKey, std::int64_t lifetimeSec) override;
    void handleAuthFailure(int status, const QString& message, const QString& sentToken) override;

    void verifyPairingCode(const QString& code);
    void cancelPairing();

Q_SIGNALS:
    void stateChanged();

private:
    Task<> checkStatus(std::chrono::milliseconds timeout, Announce announce, Errors errors);
    void sayPairingIsRequired(const QString& action);
    Task<> verify(QString code);
    Task<> cancel();
    void applyStatus(const PairingStatusResponse& response, Announce announce);
    void publishState(const PairingState& state);
    std::optional<QDateTime> validity(std::optional<std::int64_t> lifetimeSec) const;

    const TvAccess m_tvs;
    RequestLayer& m_requests; // listened to
    AuthTokens& m_tokens;
    const Clock& m_clock;
    PairingState m_state;
    int m_verifications = 0; // codes that the TV accepted
    TaskSet m_tasks;
};

} // namespace quiv

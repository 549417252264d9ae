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
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace quiv {

// What is known of this client's right to control the selected TV.
struct PairingState {
    bool isControlPaired = false;
    bool requiresControlPairing = false;
    std::optional<QDateTime> pairingCodeValidUntil; // or the end of the pairing, once paired
    QString pairingClientLabel = u"Quiv Controller"_s;
    bool isVerifying = false; // a code
    bool isLockedOut = false; // after too many wrong codes the TV takes none for a while
    QString refusal;          // why the last code was not accepted; empty if none was refused
    int refusals = 0;
    int requests = 0; // control actions that could not go ahead without pairing

    bool operator==(const PairingState&) const = default;
};

// How long a TV that locks clients out wants to be left alone: as it says, within reason.
std::chrono::seconds lockOutTime(const HttpReply& reply);

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

    Pairing(const TvAccess& tvs, RequestLayer& requests, AuthTokens& tokens, Clock& clock,
            QObject* parent = nullptr);
    ~Pairing() override;

    const PairingState& state() const { return m_state; }

    Task<> refreshPairingStatus(Announce announce, Errors errors);
    // Returns whether a control action ("upload", "delete", ...) may go ahead; if not, says what is
    // needed.
    Task<bool> ensureControlPairing(QString action);
    // Whether this client is paired as far as is known, and will be for a while.
    bool isKnownPaired() const;
    // The TV wants this client paired before that action: shows it, and says so if the action is
    // new or the demand is.
    void requirePairing(const QString& action, bool isNewAction);

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
    void refuse(const Tv& tv, const StatusMessage& message);
    void lockOut(std::chrono::seconds time);
    Task<> cancel();
    void applyStatus(const PairingStatusResponse& response, Announce announce);
    void publishState(const PairingState& state);
    std::optional<QDateTime> validity(std::optional<std::int64_t> lifetimeSec) const;

    const TvAccess m_tvs;
    RequestLayer& m_requests; // listened to
    AuthTokens& m_tokens;
    Clock& m_clock;
    PairingState m_state;
    int m_verifications = 0; // codes that the TV accepted
    std::unique_ptr<Clock::Timer> m_lockOut;
    TaskSet m_tasks;
};

} // namespace quiv

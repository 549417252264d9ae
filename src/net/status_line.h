#pragma once

#include "platform/clock.h"
#include "platform/error.h"

#include <QObject>
#include <QString>
#include <QUrl>

namespace quiv {

using namespace Qt::StringLiterals;

// A message of the status line.
struct StatusMessage {
    enum class Kind { Information, Failure };

    QString text;
    Kind kind = Kind::Information;
    bool isOfSilence = false; // a failure because the TV did not answer
    QUrl file{};              // of this computer, that the message tells of; else empty

    bool operator==(const StatusMessage&) const = default;
};

// The message of something that failed: `what` and the error's own sentence.
StatusMessage failureMessage(const QString& what, const Error& error);
StatusMessage failureMessage(const QString& text);

// The window's one-line status text; every operation ends in it.
class StatusLine : public QObject {
    Q_OBJECT

public:
    explicit StatusLine(const Clock& clock, QObject* parent = nullptr)
        : QObject(parent), m_clock(clock) {}

    const StatusMessage& message() const { return m_message; }
    const QString& statusMessage() const { return m_message.text; }
    void post(const StatusMessage& message);
    void post(const QString& text) { post(StatusMessage{text}); }
    // Something has begun whose progress follows.
    void beginProgress(const QString& text);
    // How far it has come; leaves other messages of the last seconds to be read.
    void postProgress(const QString& text);
    // Replaces the message if it is a failure because the TV did not answer.
    void retractSilence(const QString& text);

Q_SIGNALS:
    void statusMessageChanged();

private:
    void show(const StatusMessage& message);

    const Clock& m_clock;
    Clock::Instant m_readableUntil{};
    StatusMessage m_message{u"Searching for TVs on local network..."_s};
};

} // namespace quiv

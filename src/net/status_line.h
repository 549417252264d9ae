#pragma once

#include "platform/clock.h"

#include <QObject>
#include <QString>

namespace quiv {

using namespace Qt::StringLiterals;

// The window's one-line status text; every operation ends in it.
class StatusLine : public QObject {
    Q_OBJECT

public:
    explicit StatusLine(const Clock& clock, QObject* parent = nullptr)
        : QObject(parent), m_clock(clock) {}

    const QString& statusMessage() const { return m_statusMessage; }
    void post(const QString& message);
    // Something has begun whose progress follows.
    void beginProgress(const QString& message);
    // How far it has come; leaves other messages of the last seconds to be read.
    void postProgress(const QString& message);

Q_SIGNALS:
    void statusMessageChanged();

private:
    void show(const QString& message);

    const Clock& m_clock;
    Clock::Instant m_readableUntil{};
    QString m_statusMessage = u"Searching for TVs on local network..."_s;
};

} // namespace quiv

#pragma once

#include <QObject>
#include <QString>

namespace quiv {

using namespace Qt::StringLiterals;

// The window's one-line status text; every operation ends in it.
class StatusLine : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    const QString& statusMessage() const { return m_statusMessage; }
    void post(const QString& message);

Q_SIGNALS:
    void statusMessageChanged();

private:
    QString m_statusMessage = u"Searching for TVs on local network..."_s;
};

} // namespace quiv

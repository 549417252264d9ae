#pragma once

#include <QJsonObject>
#include <QString>

#include <mutex>

namespace quiv::simulator {

// Who the TV says it is. Its name can change while it runs. Thread-safe.
class Identity {
public:
    Identity(QString name, QString storageRoot);

    QString name() const;
    void setName(const QString& name);
    // The reply of "api/info".
    QJsonObject toJson() const;

private:
    mutable std::mutex m_mutex;
    QString m_name;
    const QString m_storageRoot;
    const QString m_serverInstanceId;
    const QString m_installationId;
};

} // namespace quiv::simulator

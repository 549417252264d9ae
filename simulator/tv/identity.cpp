#include "simulator/tv/identity.h"

#include <QUuid>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

// One name and media folder make one installation, run after run.
QString installationIdFor(const QString& name, const QString& storageRoot) {
    static constexpr QUuid space(0x7c1d0f7e, 0x54d2, 0x4d0b, 0x9d, 0x0a, 0x3f, 0x55, 0x86, 0x21,
                                 0x6e, 0x4b);
    const QString seed = name + u'\n' + storageRoot;
    return QUuid::createUuidV5(space, seed).toString(QUuid::WithoutBraces);
}

} // namespace

Identity::Identity(QString name, QString storageRoot)
    : m_name(std::move(name)),
      m_storageRoot(std::move(storageRoot)),
      m_serverInstanceId(QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_installationId(installationIdFor(m_name, m_storageRoot)) {}

QString Identity::name() const {
    const std::scoped_lock lock(m_mutex);
    return m_name;
}

void Identity::setName(const QString& name) {
    const std::scoped_lock lock(m_mutex);
    m_name = name;
}

QJsonObject Identity::toJson() const {
    return {
        {u"name"_s, name()},
        {u"apiVersion"_s, 1},
        {u"storageRoot"_s, m_storageRoot},
        {u"packageName"_s, u"tv.quiv.simulator"_s},
        {u"versionName"_s, u"1.0"_s},
        {u"serverInstanceId"_s, m_serverInstanceId},
        {u"installationId"_s, m_installationId},
        {u"appInForeground"_s, true},
        {u"deviceBrand"_s, u"Quiv"_s},
        {u"deviceManufacturer"_s, u"Quiv"_s},
        {u"deviceModel"_s, u"Simulated TV"_s},
    };
}

} // namespace quiv::simulator

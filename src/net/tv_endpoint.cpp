#include "net/tv_endpoint.h"

#include "net/text_order.h"

namespace quiv {

QString endpointKey(const TVEndpoint& endpoint) {
    return endpoint.host + u':' + QString::number(endpoint.port);
}

bool comesBefore(const TVEndpoint& a, const TVEndpoint& b) {
    const QString nameOfA = a.name.toLower();
    const QString nameOfB = b.name.toLower();
    if (nameOfA != nameOfB)
        return comesBeforeByCodePoints(nameOfA, nameOfB);
    const QString hostOfA = a.host.trimmed().toLower();
    const QString hostOfB = b.host.trimmed().toLower();
    if (hostOfA != hostOfB)
        return comesBeforeByCodePoints(hostOfA, hostOfB);
    return a.port < b.port;
}

TVEndpoint enriched(const TVEndpoint& endpoint, const RemoteDeviceInfo& info) {
    const QString name = info.name.value_or(QString()).trimmed();
    return {
        .name = name.isEmpty() ? endpoint.name : name,
        .host = endpoint.host,
        .port = endpoint.port,
        .installationId = info.installationId,
        .packageName = info.packageName,
        .versionName = info.versionName,
        .serverInstanceId = info.serverInstanceId,
        .appInForeground = info.appInForeground,
        .deviceBrand = info.deviceBrand,
        .deviceManufacturer = info.deviceManufacturer,
        .deviceModel = info.deviceModel,
    };
}

} // namespace quiv

#pragma once

#include "net/wire_records.h"

#include <QString>

#include <optional>

namespace quiv {

// One discovered TV.
struct TVEndpoint {
    QString name;
    QString host; // IPv4 address text or host name, exactly as resolved
    int port = 0;
    std::optional<QString> installationId;
    std::optional<QString> packageName;
    std::optional<QString> versionName;
    std::optional<QString> serverInstanceId;
    std::optional<bool> appInForeground;
    std::optional<QString> deviceBrand;
    std::optional<QString> deviceManufacturer;
    std::optional<QString> deviceModel;

    bool operator==(const TVEndpoint&) const = default;
};

// host + ":" + port, no folding or trimming: identifies a TV in the list and in the selection.
QString endpointKey(const TVEndpoint& endpoint);

// The order of the device list: lower-cased name, then trimmed lower-cased host, then port.
bool comesBefore(const TVEndpoint& a, const TVEndpoint& b);

// The endpoint with what the TV tells of itself; a blank name keeps the announced one.
TVEndpoint enriched(const TVEndpoint& endpoint, const RemoteDeviceInfo& info);

} // namespace quiv

#include "ui/storage_badges.h"

#include "ui/display_format.h"

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

StorageStatusBadge driveBadge(const RemoteUsbStorage& drive) {
    const QString name = displayText(drive.driveName);
    if (drive.isConnected) {
        return {name + u' ' + formatByteCount(drive.freeBytes) + u" free"_s,
                BadgeTone::Tone::Green};
    }
    return {name + u' ' + QString::number(drive.cachedVideoCount) + u" videos/"_s +
                formatByteCount(drive.cachedVideoBytes) + u" unplugged"_s,
            BadgeTone::Tone::Amber};
}

} // namespace

QVariantList badgeValues(const QList<StorageStatusBadge>& badges) {
    QVariantList values;
    for (const StorageStatusBadge& badge : badges)
        values.append(QVariant::fromValue(badge));
    return values;
}

QList<StorageStatusBadge> storageStatusBadges(const std::optional<RemoteStorage>& storage,
                                              const std::optional<RemoteUsbStorage>& usbStorage) {
    QList<StorageStatusBadge> badges;
    if (storage) {
        badges.append({u"Internal "_s + formatByteCount(storage->freeBytes) + u" free"_s,
                       BadgeTone::Tone::Green});
    }
    if (usbStorage)
        badges.append(driveBadge(*usbStorage));
    return badges;
}

QList<StorageStatusBadge> tvBadges(const WindowState& state) {
    if (state.selectedDevice && !state.isReachable)
        return {{u"Not reachable"_s, BadgeTone::Tone::Amber}};
    return storageStatusBadges(state.content.storage, state.content.usbStorage);
}

StorageStatusBadge storageLocationBadge(const std::optional<QString>& storageLocation) {
    if (storageLocation && storageLocation->toUpper() == u"USB"_s)
        return {u"USB"_s, BadgeTone::Tone::Usb};
    return {u"Internal"_s, BadgeTone::Tone::Internal};
}

} // namespace quiv

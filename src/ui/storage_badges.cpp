#include "ui/storage_badges.h"

#include "ui/display_format.h"

namespace quiv {

namespace {

StorageStatusBadge driveBadge(const RemoteUsbStorage& drive) {
    const QString name = displayText(drive.driveName);
    if (drive.isConnected) {
        return {name + u' ' + formatByteCount(drive.freeBytes) + QStringLiteral(" free"),
                BadgeTone::Tone::Green};
    }
    return {name + u' ' + QString::number(drive.cachedVideoCount) + QStringLiteral(" videos/") +
                formatByteCount(drive.cachedVideoBytes) + QStringLiteral(" unplugged"),
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
        badges.append({QStringLiteral("Internal ") + formatByteCount(storage->freeBytes) +
                           QStringLiteral(" free"),
                       BadgeTone::Tone::Green});
    }
    if (usbStorage)
        badges.append(driveBadge(*usbStorage));
    return badges;
}

StorageStatusBadge storageLocationBadge(const std::optional<QString>& storageLocation) {
    if (storageLocation && storageLocation->toUpper() == QStringLiteral("USB"))
        return {QStringLiteral("USB"), BadgeTone::Tone::Usb};
    return {QStringLiteral("Internal"), BadgeTone::Tone::Internal};
}

} // namespace quiv

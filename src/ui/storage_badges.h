#pragma once

#include "model/window_state.h"
#include "net/wire_records.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quiv {

// The colour pairs of badges, by what they stand for; the theme knows the colours.
namespace BadgeTone {
Q_NAMESPACE
QML_ELEMENT

enum class Tone {
    Green,    // a storage that is present and writable
    Amber,    // a TV or drive that is not there, or the hint to set a drive up
    Neutral,  // information
    Usb,      // a row's video is on the drive
    Internal, // a row's video is on the TV itself
};
Q_ENUM_NS(Tone)
} // namespace BadgeTone

// A coloured capsule with a short text.
struct StorageStatusBadge {
    Q_GADGET
    QML_VALUE_TYPE(storageStatusBadge)
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(int tone READ toneNumber CONSTANT)

public:
    // Compiled bindings read no enumerations of other types.
    int toneNumber() const { return static_cast<int>(tone); }

    QString text;
    BadgeTone::Tone tone = BadgeTone::Tone::Neutral;

    bool operator==(const StorageStatusBadge&) const = default;
};

// Wraps the badges for a list in QML.
QVariantList badgeValues(const QList<StorageStatusBadge>& badges);

// Says what is free on the TV and on its drive, or that the drive is unplugged.
QList<StorageStatusBadge> storageStatusBadges(const std::optional<RemoteStorage>& storage,
                                              const std::optional<RemoteUsbStorage>& usbStorage);

// Those of the selected TV's tile: its storages, or "Not reachable" while it does not answer.
QList<StorageStatusBadge> tvBadges(const WindowState& state);

// Shows "USB" if the TV says so in any letter case, else "Internal".
StorageStatusBadge storageLocationBadge(const std::optional<QString>& storageLocation);

} // namespace quiv

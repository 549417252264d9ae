#pragma once

#include <QDBusArgument>
#include <QList>
#include <QString>

namespace quiv {

// A file filter as the portal takes it, "(sa(us))".
struct PortalPattern {
    uint kind = 0;
    QString pattern;
};

struct PortalFilter {
    QString name;
    QList<PortalPattern> patterns;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalPattern& pattern);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalPattern& pattern);
QDBusArgument& operator<<(QDBusArgument& argument, const PortalFilter& filter);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalFilter& filter);

} // namespace quiv

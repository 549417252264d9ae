#pragma once

#include "platform/network_interfaces.h"

#include <QList>
#include <QString>

namespace quiv {

// What keeps this computer from finding any TV, and what its user can do about it.
struct NetworkProblem {
    QString title; // empty if there is no problem that is known
    QString advice;

    bool isKnown() const { return !title.isEmpty(); }
    bool operator==(const NetworkProblem&) const = default;
};

// Whether a search can be carried out at all is for the caller to know.
NetworkProblem networkProblem(const QList<NetworkInterface>& interfaces, bool canSearch);

} // namespace quiv

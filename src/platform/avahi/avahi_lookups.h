#pragma once

#include "platform/async/task.h"
#include "platform/avahi/avahi_answers.h"
#include "platform/service_browser.h"

#include <QByteArray>
#include <memory>
#include <optional>

namespace quiv {

// The steps of resolving. Each completes by the deadline, or with nullopt when the scope is closed.

// "_http._tcp." as "_http._tcp", in the bytes that Avahi takes.
QByteArray withoutOuterDots(const QString& name);

// Where a service is, once that is another place than `known` (see AvahiResolution).
Task<std::optional<ResolvedService>> placeOf(std::shared_ptr<AvahiScope> scope,
                                             FoundService service,
                                             std::optional<ResolvedService> known,
                                             Clock::Instant deadline);

// A host's address, IPv4 preferred (see AvahiAddressChoice).
Task<std::optional<HostAddress>> addressOf(std::shared_ptr<AvahiScope> scope, QByteArray hostName,
                                           Clock::Instant deadline);

} // namespace quiv

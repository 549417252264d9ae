#include "platform/avahi/avahi_resolution.h"

#include <algorithm>
#include <tuple>

namespace quiv {

namespace {

// IPv4 first.
bool isListedBefore(const HostAddress& a, const HostAddress& b) {
    return std::tie(a.family, a.bytes, a.scope) < std::tie(b.family, b.bytes, b.scope);
}

} // namespace

AvahiResolution::AvahiResolution(QString name, std::optional<ResolvedService> known,
                                 Clock::Instant deadline)
    : m_name(std::move(name)), m_known(std::move(known)), m_deadline(deadline) {}

void AvahiResolution::take(const AvahiAnswer& answer, Clock::Instant now) {
    const auto before = place();
    note(answer);
    const auto after = place();
    if (!after || after == before)
        return;
    const bool hasIPv4 = after->addresses.first().family == HostAddress::Family::IPv4;
    const auto wait = m_known ? settlingOfKnown : hasIPv4 ? settling : graceForIPv4;
    const bool isWaiting = before && before->addresses.first().family == HostAddress::Family::IPv6;
    m_settledAt = isWaiting && !hasIPv4 ? m_settledAt : now + wait;
}

void AvahiResolution::note(const AvahiAnswer& answer) {
    if (const auto* announced = std::get_if<ServicePlace>(&answer)) {
        if (announced->hostName != m_place.hostName)
            m_addresses.clear();
        m_place = *announced;
    } else if (const auto* appeared = std::get_if<AddressAppeared>(&answer)) {
        if (m_addresses.size() < maximumAddresses)
            m_addresses.push_back(*appeared);
    } else if (const auto* gone = std::get_if<AddressGone>(&answer)) {
        std::erase_if(m_addresses, [gone](const AddressAppeared& each) {
            return each.address == gone->address && each.path == gone->path;
        });
    } else if (const auto* anew = std::get_if<AskedAnew>(&answer)) {
        if (const auto* question = std::get_if<AddressQuestion>(&anew->question))
            std::erase_if(m_addresses, [question](const AddressAppeared& each) {
                return each.address.family == question->family;
            });
    }
}

std::optional<ResolvedService> AvahiResolution::place() const {
    if (m_place.hostName.isEmpty() || m_addresses.empty())
        return std::nullopt;
    QList<HostAddress> addresses;
    for (const AddressAppeared& each : m_addresses) {
        if (!addresses.contains(each.address))
            addresses.append(each.address);
    }
    std::ranges::sort(addresses, isListedBefore);
    return ResolvedService{m_name, addresses, m_place.hostName, m_place.port};
}

bool AvahiResolution::hasNews() const {
    const auto found = place();
    return found && found != m_known;
}

std::optional<ResolvedService> AvahiResolution::outcome(Clock::Instant now) const {
    return hasNews() && now >= deadline() ? place() : std::nullopt;
}

Clock::Instant AvahiResolution::deadline() const {
    return hasNews() ? std::min(m_settledAt, m_deadline) : m_deadline;
}

} // namespace quiv

#include "platform/avahi_lookups.h"

#include <algorithm>

namespace quiv {

namespace {

constexpr std::chrono::milliseconds graceForIPv4{700};

} // namespace

QByteArray withoutOuterDots(const QString& name) {
    QStringView view(name);
    while (view.startsWith(QLatin1Char('.')))
        view = view.sliced(1);
    while (view.endsWith(QLatin1Char('.')))
        view.chop(1);
    return view.toUtf8();
}

Task<std::optional<ServicePlace>> placeOf(std::shared_ptr<AvahiScope> scope, FoundService service,
                                          Clock::Instant deadline) {
    AvahiAnswers answers(scope);
    answers.ask(PlaceQuestion{service.name.toUtf8(), withoutOuterDots(service.type),
                              withoutOuterDots(service.domain)});
    while (true) {
        const std::optional<AvahiAnswer> answer = co_await answers.next(deadline);
        if (!answer)
            co_return std::nullopt;
        if (const auto* place = std::get_if<ServicePlace>(&*answer))
            co_return *place;
    }
}

Task<std::optional<HostAddress>> addressOf(std::shared_ptr<AvahiScope> scope, QByteArray hostName,
                                           Clock::Instant deadline) {
    AvahiAnswers answers(scope);
    answers.ask(AddressQuestion{hostName, HostAddress::Family::IPv4});
    answers.ask(AddressQuestion{hostName, HostAddress::Family::IPv6});
    std::optional<HostAddress> addressForNow;
    while (true) {
        const std::optional<AvahiAnswer> answer = co_await answers.next(deadline);
        if (!answer)
            co_return scope->open() ? addressForNow : std::nullopt;
        const auto* address = std::get_if<HostAddress>(&*answer);
        if (!address)
            continue;
        if (address->family == HostAddress::Family::IPv4)
            co_return *address;
        if (!addressForNow)
            deadline = std::min(deadline, std::chrono::steady_clock::now() + graceForIPv4);
        addressForNow = *address;
    }
}

} // namespace quiv

#include "platform/avahi/avahi_lookups.h"

#include "platform/avahi/avahi_address_choice.h"

namespace quiv {

using namespace Qt::StringLiterals;

QByteArray withoutOuterDots(const QString& name) {
    QStringView view(name);
    while (view.startsWith(u'.'))
        view = view.sliced(1);
    while (view.endsWith(u'.'))
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
    AvahiAddressChoice choice(deadline);
    while (!choice.isFinal()) {
        const std::optional<AvahiAnswer> answer = co_await answers.next(choice.deadline());
        if (!answer)
            break;
        if (const auto* address = std::get_if<HostAddress>(&*answer))
            choice.add(*address, std::chrono::steady_clock::now());
    }
    co_return scope->open() ? choice.address() : std::nullopt;
}

} // namespace quiv

#include "platform/avahi/avahi_lookups.h"

#include "platform/avahi/avahi_address_choice.h"
#include "platform/avahi/avahi_resolution.h"

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

Task<std::optional<ResolvedService>> placeOf(std::shared_ptr<AvahiScope> scope,
                                             FoundService service,
                                             std::optional<ResolvedService> known,
                                             Clock::Instant deadline) {
    AvahiResolution resolution(service.name, known, deadline);
    while (true) {
        const QString hostName = resolution.hostName();
        AvahiAnswers answers(scope);
        answers.ask(PlaceQuestion{service.name.toUtf8(), withoutOuterDots(service.type),
                                  withoutOuterDots(service.domain)});
        if (!hostName.isEmpty()) {
            answers.ask(AddressQuestion{hostName.toUtf8(), HostAddress::Family::IPv4});
            answers.ask(AddressQuestion{hostName.toUtf8(), HostAddress::Family::IPv6});
        }
        while (resolution.hostName() == hostName) {
            const std::optional<AvahiAnswer> answer = co_await answers.next(resolution.deadline());
            const auto now = std::chrono::steady_clock::now();
            if (answer)
                resolution.take(*answer, now);
            const auto outcome = resolution.outcome(now);
            if (!scope->open() || outcome || now >= deadline)
                co_return scope->open() ? outcome : std::nullopt;
        }
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
        if (const auto* appeared = std::get_if<AddressAppeared>(&*answer))
            choice.add(appeared->address, std::chrono::steady_clock::now());
    }
    co_return scope->open() ? choice.address() : std::nullopt;
}

} // namespace quiv

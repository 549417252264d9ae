#pragma once

#include "platform/host_address.h"
#include "platform/service_browser.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <variant>

namespace quiv {

// What can be asked of Avahi. Texts are UTF-8, without dots at the ends.
struct SearchQuestion {
    QByteArray type;
    QByteArray domain;
};
struct PlaceQuestion {
    QByteArray name;
    QByteArray type;
    QByteArray domain;
};
struct AddressQuestion {
    QByteArray hostName;
    HostAddress::Family family;
};
using AvahiQuestion = std::variant<SearchQuestion, PlaceQuestion, AddressQuestion>;

using AvahiQuestionId = std::uint64_t;

// Where an announcement was heard: the same service or address is heard once on each.
struct AnnouncementPath {
    int interface;
    int protocol;

    auto operator<=>(const AnnouncementPath&) const = default;
};

struct ServiceAppeared {
    FoundService service;
    AnnouncementPath path;
};
struct ServiceGone {
    FoundService service;
    AnnouncementPath path;
};
struct ServicePlace {
    QString hostName;
    int port;
};
struct AddressAppeared {
    HostAddress address;
    AnnouncementPath path;
};
struct AddressGone {
    HostAddress address;
    AnnouncementPath path;
};
struct AskedAnew { // what was answered to this question before no longer counts
    AvahiQuestion question;
};
using AvahiAnswer = std::variant<ServiceAppeared, ServiceGone, ServicePlace, AddressAppeared,
                                 AddressGone, AskedAnew>;

// None: neither can be used; Undecided until that has been tried for the first time.
enum class AvahiBackendKind { Undecided, None, SystemDaemon, Embedded };

// A question that is being asked; destroying it ends that.
class AvahiLookup {
public:
    virtual ~AvahiLookup() = default;
};

// One way to reach the local network's announcements. Lives on the Avahi thread only and outlives
// its lookups. Answers come from the loop, any number per lookup, even after a failure: a service
// that did not answer in time may still come.
class AvahiBackend {
public:
    struct Listener {
        std::function<void(AvahiAnswer)> answered;
        std::function<void()> failed;
    };

    virtual ~AvahiBackend() = default;

    // Returns nullptr if the question cannot be asked now.
    virtual std::unique_ptr<AvahiLookup> ask(const AvahiQuestion& question, Listener listener) = 0;
};

} // namespace quiv

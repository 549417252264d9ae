#pragma once

#include "platform/avahi/avahi_backend.h"

#include <avahi-common/address.h>
#include <avahi-common/defs.h>
#include <avahi-common/strlst.h>
#include <cstdint>
#include <optional>

namespace quiv {

// Avahi's address, heard on this interface, as ours.
HostAddress fromAvahi(const AvahiAddress& address, AvahiIfIndex interface);
std::uint16_t recordTypeOf(HostAddress::Family family);

// A lookup object of one of Avahi's two libraries, whose callbacks differ in the object's type
// only. Owns the object and turns what Avahi reports into answers.
template <class Object, auto freeObject> class AvahiLookupObject final : public AvahiLookup {
public:
    explicit AvahiLookupObject(AvahiBackend::Listener listener) : m_listener(std::move(listener)) {}
    ~AvahiLookupObject() override {
        if (m_object)
            freeObject(m_object);
    }
    AvahiLookupObject(const AvahiLookupObject&) = delete;
    AvahiLookupObject& operator=(const AvahiLookupObject&) = delete;

    void own(Object* object) { m_object = object; }

    // The callbacks to give to Avahi, with this lookup as user data.
    static void onService(Object*, AvahiIfIndex interface, AvahiProtocol protocol,
                          AvahiBrowserEvent event, const char* name, const char* type,
                          const char* domain, AvahiLookupResultFlags, void* lookup) {
        const auto service = [&] {
            return FoundService{QString::fromUtf8(name), QString::fromUtf8(type),
                                QString::fromUtf8(domain)};
        };
        if (event == AVAHI_BROWSER_NEW)
            listener(lookup).answered(ServiceAppeared{service(), {interface, protocol}});
        else if (event == AVAHI_BROWSER_REMOVE)
            listener(lookup).answered(ServiceGone{service(), {interface, protocol}});
        else if (event == AVAHI_BROWSER_FAILURE)
            listener(lookup).failed();
    }
    static void onPlace(Object*, AvahiIfIndex, AvahiProtocol, AvahiResolverEvent event, const char*,
                        const char*, const char*, const char* hostName, const AvahiAddress*,
                        std::uint16_t port, AvahiStringList*, AvahiLookupResultFlags,
                        void* lookup) {
        if (event == AVAHI_RESOLVER_FOUND)
            listener(lookup).answered(ServicePlace{QString::fromUtf8(hostName), port});
        else
            listener(lookup).failed();
    }
    // For the callbacks of record browsers; the address is absent unless the event is about one.
    static void onAddress(AnnouncementPath path, AvahiBrowserEvent event,
                          const std::optional<AvahiAddress>& address, void* lookup) {
        if (event == AVAHI_BROWSER_FAILURE)
            listener(lookup).failed();
        else if (address && event == AVAHI_BROWSER_NEW)
            listener(lookup).answered(AddressAppeared{fromAvahi(*address, path.interface), path});
        else if (address && event == AVAHI_BROWSER_REMOVE)
            listener(lookup).answered(AddressGone{fromAvahi(*address, path.interface), path});
    }

private:
    static AvahiBackend::Listener& listener(void* lookup) {
        return static_cast<AvahiLookupObject*>(lookup)->m_listener;
    }

    AvahiBackend::Listener m_listener;
    Object* m_object = nullptr;
};

} // namespace quiv

#pragma once

#include "player/http_stream.h"
#include "player/mpv_options.h"

#include <chrono>
#include <initializer_list>
#include <memory>
#include <mpv/client.h>

namespace quiv {

// One libmpv player with its one stream. Shared by what controls it and what draws it: the last of
// them to go ends it, on a thread of its own, because that may wait for the TV.
class MpvCore {
public:
    // The address under which the player knows the stream, whatever its real one is.
    static constexpr const char* StreamName = "quivtv://video";

    MpvCore(const StreamAddress& address, Drawing drawing);
    ~MpvCore();
    MpvCore(const MpvCore&) = delete;
    MpvCore& operator=(const MpvCore&) = delete;

    // Returns nullptr if libmpv could not be set up.
    mpv_handle* handle() const { return m_handle; }
    // Why the stream ended before its end; empty if it did not.
    QString streamFault() const;

    // Requests that the player carries out when it can; none of them waits.
    void command(std::initializer_list<const char*> words) const;
    void set(const char* property, const char* value) const;
    void setFlag(const char* property, bool value) const;
    void setNumber(const char* property, double value) const;

private:
    struct Source;

    std::unique_ptr<Source> m_source;
    mpv_handle* m_handle = nullptr;
};

// Waits until players that are gone have ended; returns false if some have not in time.
bool awaitEndedPlayers(std::chrono::milliseconds limit);

} // namespace quiv

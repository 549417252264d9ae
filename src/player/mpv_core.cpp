#include "player/mpv_core.h"

#include <clocale>
#include <condition_variable>
#include <mpv/stream_cb.h>
#include <string_view>
#include <thread>
#include <vector>

namespace quiv {

namespace {

constexpr const char* Protocol = "quivtv";

// How many players are ending.
class Endings {
public:
    void begin() {
        const std::scoped_lock lock(m_mutex);
        ++m_count;
    }
    void end() {
        const std::scoped_lock lock(m_mutex);
        --m_count;
        m_changed.notify_all();
    }
    bool await(std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, limit, [this] { return m_count == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};

// Outlives every thread that may still report.
Endings& endings() {
    static auto* const all = new Endings;
    return *all;
}

HttpStream& streamOf(void* cookie) {
    return *static_cast<HttpStream*>(cookie);
}

std::int64_t readStream(void* cookie, char* buffer, std::uint64_t count) {
    return streamOf(cookie).read(buffer, count);
}

std::int64_t seekStream(void* cookie, std::int64_t position) {
    return streamOf(cookie).seek(position) ? position : std::int64_t(MPV_ERROR_GENERIC);
}

std::int64_t sizeOfStream(void* cookie) {
    const std::int64_t size = streamOf(cookie).size();
    return size < 0 ? std::int64_t(MPV_ERROR_UNSUPPORTED) : size;
}

void cancelStream(void* cookie) {
    streamOf(cookie).cancel();
}

void closeStream(void* cookie) {
    delete &streamOf(cookie);
}

} // namespace

struct MpvCore::Source {
    StreamAddress address;
    std::shared_ptr<StreamFault> fault = std::make_shared<StreamFault>();

    static int open(void* source, char* name, mpv_stream_cb_info* info) {
        const auto& self = *static_cast<Source*>(source);
        if (std::string_view(name) != StreamName)
            return MPV_ERROR_LOADING_FAILED;
        info->cookie = new HttpStream(self.address, self.fault);
        info->read_fn = readStream;
        info->seek_fn = seekStream;
        info->size_fn = sizeOfStream;
        info->close_fn = closeStream;
        info->cancel_fn = cancelStream;
        return 0;
    }
};

MpvCore::MpvCore(const StreamAddress& address, Drawing drawing)
    : m_source(std::make_unique<Source>(Source{address})) {
    std::setlocale(LC_NUMERIC, "C"); // else numbers in options are read wrongly, and it refuses
    m_handle = mpv_create();
    if (m_handle && setOptions(m_handle, drawing) && mpv_initialize(m_handle) >= 0 &&
        mpv_stream_cb_add_ro(m_handle, Protocol, m_source.get(), &Source::open) >= 0)
        return;
    mpv_terminate_destroy(m_handle);
    m_handle = nullptr;
}

MpvCore::~MpvCore() {
    if (!m_handle)
        return;
    endings().begin();
    std::thread([handle = m_handle, source = std::move(m_source)] {
        mpv_terminate_destroy(handle);
        endings().end();
    }).detach();
}

QString MpvCore::streamFault() const {
    return m_source->fault->sentence();
}

void MpvCore::command(std::initializer_list<const char*> words) const {
    std::vector<const char*> arguments(words);
    arguments.push_back(nullptr);
    mpv_command_async(m_handle, 0, arguments.data());
}

void MpvCore::set(const char* property, const char* value) const {
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_STRING, &value);
}

void MpvCore::setFlag(const char* property, bool value) const {
    set(property, value ? "yes" : "no");
}

void MpvCore::setNumber(const char* property, double value) const {
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_DOUBLE, &value);
}

bool awaitEndedPlayers(std::chrono::milliseconds limit) {
    return endings().await(limit);
}

} // namespace quiv

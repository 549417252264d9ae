#pragma once

#include "simulator/faults/fault_list.h"
#include "simulator/faults/outage.h"
#include "simulator/server/connection.h"
#include "simulator/uploads/upload_store.h"

#include <httplib.h>

#include <chrono>

namespace quiv::simulator {

// Takes in an uploaded file, and does to it on the way what a fault says. Used by the thread that
// answers the request.
class Reception {
public:
    Reception(const httplib::Request& request, httplib::Response& response,
              std::optional<Fault> fault, Outage& outage, const StopSignal& stop);

    // Reads the body, stores it and fills in the response; the connection may be gone after it.
    void run(UploadStore& store, qint64 announcedBytes, const httplib::ContentReader& reader);

private:
    using Clock = std::chrono::steady_clock;
    using Incoming = UploadStore::Incoming;

    bool is(Fault::Kind kind) const { return m_fault && m_fault->kind == kind; }
    bool isCutOff(const Incoming& file) const { return file.receivedBytes() >= m_cutOffBytes; }
    // Returns false if the rest is not to be read.
    bool takeSlice(Incoming& file, const char* bytes, size_t count);
    bool keepsPace(const Incoming& file);
    void endEarly();
    void answer(Incoming& file);
    void breakConnection();

    const httplib::Request& m_request;
    httplib::Response& m_response;
    const std::optional<Fault> m_fault;
    Outage& m_outage;
    const StopSignal& m_stop;
    Connection m_connection;
    const qint64 m_cutOffBytes;
    const Clock::time_point m_start = Clock::now();
};

} // namespace quiv::simulator

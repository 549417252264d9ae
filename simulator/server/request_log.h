#pragma once

#include <httplib.h>

#include <QJsonArray>
#include <QJsonObject>

#include <deque>
#include <mutex>

namespace quiv::simulator {

// What was asked of the TV, oldest first; the last 10,000 requests. Thread-safe.
class RequestLog {
public:
    // A request came in. Its status is 0 until it is answered, and stays so if it never is.
    void received(const httplib::Request& request);
    void answered(const httplib::Request& request, int status);
    // No reply will come; a later answered() changes nothing.
    void abandoned(const httplib::Request& request);

    QJsonArray toJson() const;
    void clear();

private:
    struct Entry {
        QJsonObject json;
        std::string sender; // address and port: one request at a time comes from there
        bool open = true;
    };

    Entry* openEntry(const httplib::Request& request);

    mutable std::mutex m_mutex;
    std::deque<Entry> m_entries;
};

} // namespace quiv::simulator

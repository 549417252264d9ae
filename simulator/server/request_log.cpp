#include "simulator/server/request_log.h"

#include <QUrlQuery>

#include <algorithm>
#include <array>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t LargestLog = 10'000;

constexpr std::array LoggedHeaders{
    "X-Quiv-Client-Id",
    "X-Quiv-Auth-Token",
    "Content-Type",
    "Content-Length",
    "Range",
    "Expect",
    "Host",
    "Connection",
    "Accept-Encoding",
    "User-Agent",
    "Cookie",
    "Authorization",
};

// As sent and in the order sent: "+" is no blank here.
QJsonArray queryOf(const httplib::Request& request) {
    QJsonArray items;
    const auto target = QString::fromStdString(request.target);
    const qsizetype mark = target.indexOf(u'?');
    const QUrlQuery query(mark < 0 ? QString() : target.mid(mark + 1));
    for (const auto& [name, value] : query.queryItems(QUrl::FullyDecoded)) {
        items.append(QJsonObject{{u"name"_s, name}, {u"value"_s, value}});
    }
    return items;
}

QJsonObject headersOf(const httplib::Request& request) {
    QJsonObject headers;
    for (const char* name : LoggedHeaders) {
        if (request.has_header(name))
            headers[QLatin1String(name)] = QString::fromStdString(request.get_header_value(name));
    }
    return headers;
}

std::string senderOf(const httplib::Request& request) {
    return request.remote_addr + ' ' + std::to_string(request.remote_port);
}

} // namespace

void RequestLog::received(const httplib::Request& request) {
    const QJsonObject json{
        {u"method"_s, QString::fromStdString(request.method)},
        {u"path"_s, QString::fromStdString(request.path).mid(1)},
        {u"target"_s, QString::fromStdString(request.target)},
        {u"query"_s, queryOf(request)},
        {u"headers"_s, headersOf(request)},
        {u"bodyBytes"_s,
         QString::fromStdString(request.get_header_value("Content-Length")).toLongLong()},
        {u"status"_s, 0},
    };
    const std::scoped_lock lock(m_mutex);
    m_entries.push_back({json, senderOf(request)});
    if (m_entries.size() > LargestLog)
        m_entries.pop_front();
}

// Called with the lock held.
RequestLog::Entry* RequestLog::openEntry(const httplib::Request& request) {
    const std::string sender = senderOf(request);
    const auto entry = std::find_if(m_entries.rbegin(), m_entries.rend(), [&](const Entry& each) {
        return each.open && each.sender == sender;
    });
    return entry == m_entries.rend() ? nullptr : &*entry;
}

void RequestLog::answered(const httplib::Request& request, int status) {
    const std::scoped_lock lock(m_mutex);
    Entry* entry = openEntry(request);
    if (!entry)
        return;
    entry->open = false;
    entry->json["status"_L1] = status;
}

void RequestLog::abandoned(const httplib::Request& request) {
    const std::scoped_lock lock(m_mutex);
    if (Entry* entry = openEntry(request))
        entry->open = false;
}

QJsonArray RequestLog::toJson() const {
    const std::scoped_lock lock(m_mutex);
    QJsonArray array;
    for (const Entry& entry : m_entries)
        array.append(entry.json);
    return array;
}

void RequestLog::clear() {
    const std::scoped_lock lock(m_mutex);
    m_entries.clear();
}

} // namespace quiv::simulator

#pragma once

#include <QByteArray>

#include <curl/curl.h>
#include <sys/socket.h>

#include <chrono>

namespace quiv {

inline constexpr std::chrono::seconds ConnectTimeout{5};

// What holds for every connection to a TV: plain HTTP with the host of the URL and no other, by no
// proxy; no program that is started meanwhile inherits it. Inline, because the player's library
// links to none of ours.
inline void setConnectionRules(CURL* easy, const QByteArray& url) {
    const auto open = +[](void*, curlsocktype, curl_sockaddr* address) -> curl_socket_t {
        return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    };
    const auto connectTimeout = std::chrono::milliseconds(ConnectTimeout).count();
    curl_easy_setopt(easy, CURLOPT_URL, url.constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(connectTimeout));
    curl_easy_setopt(easy, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L); // else ending it waits for a name look-up
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, open);
}

} // namespace quiv

#pragma once
// libcurl, loaded by the first transfer: it brings some thirty libraries along, which a phone that fetches
// nothing need not carry. Any thread; the first call reads from the disk, so not the user-interface thread.
#include <QByteArray>
#include <curl/curl.h>

// What is used of it, under the names that it has behind "curl_".
#define CURL_LIBRARY_FUNCTIONS(USE)                                                                          \
    USE(global_init)                                                                                         \
    USE(free)                                                                                                \
    USE(slist_append)                                                                                        \
    USE(easy_init)                                                                                           \
    USE(easy_cleanup)                                                                                        \
    USE(easy_reset)                                                                                          \
    USE(easy_setopt)                                                                                         \
    USE(easy_getinfo)                                                                                        \
    USE(easy_header)                                                                                         \
    USE(easy_strerror)                                                                                       \
    USE(multi_init)                                                                                          \
    USE(multi_cleanup)                                                                                       \
    USE(multi_setopt)                                                                                        \
    USE(multi_add_handle)                                                                                    \
    USE(multi_remove_handle)                                                                                 \
    USE(multi_assign)                                                                                        \
    USE(multi_socket_action)                                                                                 \
    USE(multi_info_read)                                                                                     \
    USE(url)                                                                                                 \
    USE(url_set)                                                                                             \
    USE(url_get)                                                                                             \
    USE(url_cleanup)

class curlLibrary
{
public:
    static const curlLibrary& instance();

    // False: no function may be called.
    bool isThere() const { return m_failure.isEmpty(); }
    // Why it is not there; empty when it is.
    const QByteArray& failure() const { return m_failure; }

#define CURL_LIBRARY_MEMBER(name) decltype(&curl_##name) name = nullptr;
    CURL_LIBRARY_FUNCTIONS(CURL_LIBRARY_MEMBER)
#undef CURL_LIBRARY_MEMBER

private:
    curlLibrary();
    QByteArray load();
    QByteArray m_failure;
};

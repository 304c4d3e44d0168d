#pragma once
// The address of a socket in the run folder. A path that is too long for an address goes through the
// descriptor of its folder, which lives as long as this. Any thread.
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

class runAddress
{
public:
    // file: its bare name.
    explicit runAddress(const std::string& file);
    ~runAddress();
    runAddress(const runAddress&) = delete;
    runAddress& operator=(const runAddress&) = delete;
    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&m_address); }
    const char* path() const { return m_address.sun_path; }
    static socklen_t size() { return sizeof(sockaddr_un); }

private:
    sockaddr_un m_address = {};
    int m_nFolder = -1;
};

#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>

namespace quorl::test {

// A port of 127.0.0.1 that refuses connections: taken, so that nobody else gets it, and never listened on.
class UnusedPort {
public:
    UnusedPort() {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (bind(socket, generic, size) != 0 || getsockname(socket, generic, &size) != 0)
            throw std::runtime_error("No port to be had.");
    }
    ~UnusedPort() { close(socket); }

    UnusedPort(const UnusedPort&) = delete;
    UnusedPort& operator=(const UnusedPort&) = delete;

    [[nodiscard]] std::uint16_t number() const { return ntohs(address.sin_port); }

private:
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
};

} // namespace quorl::test

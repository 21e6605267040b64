#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quorl::test {

// A client of HTTP/1.1 that knows nothing but its socket, so that it sees every byte. It waits a minute for
// each.
class Client {
public:
    explicit Client(std::uint16_t port) : handle(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const timeval deadline{60, 0};
        setsockopt(handle, SOL_SOCKET, SO_RCVTIMEO, &deadline, sizeof deadline);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            close(handle);
            throw std::runtime_error(std::string("connect: ") + std::strerror(errno));
        }
    }
    ~Client() { close(handle); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void send(std::string_view bytes) const {
        if (::send(handle, bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size()))
            throw std::runtime_error("send");
    }

    /// One reply with its body, by its Content-Length; what came so far where the connection ends before.
    std::string receiveReply() {
        auto size = std::string::npos;
        while (received.size() < size) {
            const auto head = received.find("\r\n\r\n");
            if (head != std::string::npos)
                size = head + 4 + lengthIn(received.substr(0, head));
            if (received.size() < size && !receive())
                size = received.size();
        }
        const auto reply = received.substr(0, size);
        received.erase(0, size);
        return reply;
    }

    /// All that comes until the connection ends.
    std::string receiveAll() {
        while (receive()) {
        }
        return received;
    }

    /// Counts all that comes until the connection ends, or until there are so many, and keeps none of it.
    std::uint64_t drain(std::uint64_t limit = UINT64_MAX) {
        std::uint64_t count = 0;
        do {
            count += received.size();
            received.clear();
        } while (count < limit && receive());
        return count;
    }

    /// What ended the connection: 0 where it was closed in order, else ECONNRESET and its like.
    [[nodiscard]] int error() const { return failure; }

private:
    static std::size_t lengthIn(const std::string& head) {
        constexpr std::string_view name = "Content-Length: ";
        const auto place = head.find(name);
        return place == std::string::npos ? 0 : std::stoul(head.substr(place + name.size()));
    }

    bool receive() {
        std::array<char, 64 * 1024> part;
        const auto count = recv(handle, part.data(), part.size(), 0);
        failure = count < 0 ? errno : 0;
        if (count <= 0)
            return false;
        received.append(part.data(), static_cast<std::size_t>(count));
        return true;
    }

    const int handle;
    std::string received; // and not yet handed out
    int failure = 0;
};

inline std::string bodyOf(const std::string& reply) {
    const auto end = reply.find("\r\n\r\n");
    return end == std::string::npos ? "" : reply.substr(end + 4);
}

inline std::string statusLineOf(const std::string& reply) {
    return reply.substr(0, reply.find("\r\n"));
}

/// A POST of `body`, with further lines of the head, each with its end.
inline std::string postOf(std::string_view body, std::string_view lines = "",
                          std::string_view path = "/v1/chat/completions") {
    std::string request = "POST ";
    request.append(path).append(" HTTP/1.1\r\nHost: 127.0.0.1\r\n").append(lines);
    return request.append("Content-Length: ")
        .append(std::to_string(body.size()))
        .append("\r\n\r\n")
        .append(body);
}

/// A question to a model in OpenAI's format.
inline std::string chatBody(std::string_view model, std::string_view prompt = "Which way is up?") {
    std::string body = R"({"max_tokens":64,"messages":[{"content":"Answer directly.","role":"system"},)";
    body.append(R"({"content":")").append(prompt).append(R"(","role":"user"}],"model":")").append(model);
    return body.append(R"("})");
}

} // namespace quorl::test

#pragma once

#include "api/LocalAPIServer.h"
#include "app/Harness.h"
#include "tools/Client.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

namespace quorl::test {

struct APIReply {
    std::string statusLine;
    std::string body;

    bool operator==(const APIReply&) const = default;
};

/// One request on a connection of its own, and all that comes back until the server closes it. Thread: any
/// but the one that serves.
inline APIReply exchange(std::uint16_t port, std::string_view method, std::string_view path,
                         std::string_view token, std::string_view body = {}) {
    std::string request(method);
    request.append(" ").append(path).append(" HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: Bearer ");
    request.append(token).append("\r\nContent-Length: ").append(std::to_string(body.size()));
    request.append("\r\n\r\n").append(body);
    Client client(port);
    client.send(request);
    const std::string reply = client.receiveAll();
    return {statusLineOf(reply), bodyOf(reply)};
}

// A program that can be asked over a socket: the harness's model behind a server of its own.
class ServedModel {
public:
    ServedModel() = default;
    ~ServedModel() { harness.quit(); } // the server outlives the model, and not the loop that it posts to

    ServedModel(const ServedModel&) = delete;
    ServedModel& operator=(const ServedModel&) = delete;

    /// Listens on a port that was free a moment ago.
    AppModel& start() {
        AppModel& model = harness.start();
        do {
            startOn(freePort());
        } while (*model.apiMessage != "Listening");
        return model;
    }

    /// Listens without anybody to handle what comes in.
    void startBare() {
        std::optional<bool> isListening;
        server.onState = [&](const auto& failure) {
            harness.loop.post([&, isFree = !failure] { isListening = isFree; });
        };
        do {
            isListening.reset();
            portNumber = freePort();
            server.start(portNumber);
            if (!harness.loop.runUntil([&] { return isListening.has_value(); }))
                throw std::runtime_error("The listener says nothing.");
        } while (!*isListening);
    }

    /// Starts the API of a running model, and waits until the system has said what it makes of the port.
    void startOn(std::uint16_t number) {
        harness.model().startAPI(server, number);
        harness.model().apiMessage = "";
        if (!harness.loop.runUntil([this] { return !harness.model().apiMessage->empty(); }))
            throw std::runtime_error("The listener says nothing.");
        portNumber = number;
    }

    /// Does `work`, which may ask the server, on a thread of its own, and serves until it is done.
    void serveWhile(const std::function<void()>& work,
                    std::chrono::seconds deadline = std::chrono::seconds(60)) {
        std::atomic<bool> isDone = false;
        std::thread client([&] {
            work();
            harness.loop.post([&] { isDone = true; });
        });
        const bool ended = harness.loop.runUntil([&] { return isDone.load(); }, deadline);
        client.join();
        if (!ended)
            throw std::runtime_error("The client did not come to an end.");
    }

    APIReply ask(std::string_view method, std::string_view path, std::string_view body = {}) {
        APIReply reply;
        const std::string token = *harness.model().apiToken;
        serveWhile([&] { reply = exchange(portNumber, method, path, token, body); });
        return reply;
    }

    [[nodiscard]] std::uint16_t port() const { return portNumber; }

    Harness harness;
    LocalAPIServer server;

private:
    static std::uint16_t freePort() {
        const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        socklen_t size = sizeof address;
        address.sin_family = AF_INET;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        const bool isFound = bind(socket, generic, size) == 0 && getsockname(socket, generic, &size) == 0;
        close(socket);
        if (!isFound)
            throw std::runtime_error("No port to be had.");
        return ntohs(address.sin_port);
    }

    std::uint16_t portNumber = 0;
};

} // namespace quorl::test

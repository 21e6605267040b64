#include "transports/ClaudeLogin.h"

#include "transports/CLIEnvironment.h"
#include "transports/ChildProcess.h"
#include "transports/HomeDirectory.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace quorl::ClaudeLogin {

namespace {

using Links = LoginBuffer::Links;

constexpr std::size_t pipeCapacity = 65'536; // Linux's own; one read takes all that a pipe holds

// What one read gives; empty at the end.
std::string readChunk(const Descriptor& pipe) {
    std::string chunk(pipeCapacity, '\0');
    ssize_t count = 0;
    do
        count = read(pipe.get(), chunk.data(), chunk.size());
    while (count < 0 && errno == EINTR);
    chunk.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return chunk;
}

// What lies in the pipe now, which is all that an ended child has left. Not to the pipe's own end: a browser
// that the child has started may hold it open for hours.
std::string readRest(const Descriptor& pipe) {
    std::string rest;
    int available = 0;
    if (!pipe || ioctl(pipe.get(), FIONREAD, &available) != 0)
        return rest;
    while (rest.size() < static_cast<std::size_t>(available)) {
        const std::string chunk = readChunk(pipe);
        if (chunk.empty())
            break;
        rest += chunk;
    }
    return rest;
}

// The running login and the two pipes that it prints into.
struct Login {
    ChildProcess child;
    Descriptor output;
    Descriptor error;
};

// Reads from both pipes as it comes, until the child has ended; answers whether it has by the deadline.
bool follow(Login& login, LoginBuffer& buffer, Deadline deadline) {
    const std::array<Descriptor*, 2> pipes{&login.output, &login.error};
    while (std::chrono::steady_clock::now() < deadline) { // a chatty child keeps the pipes ready for ever
        std::array<pollfd, 3> events{pollfd{login.child.endDescriptor(), POLLIN, 0},
                                     pollfd{login.output.get(), POLLIN, 0}, // -1 once it has ended
                                     pollfd{login.error.get(), POLLIN, 0}};
        if (!pollUntil(events, deadline) || events[0].revents != 0)
            break;
        for (std::size_t index = 0; index < pipes.size(); ++index) {
            if (events[index + 1].revents == 0)
                continue;
            const std::string chunk = readChunk(*pipes[index]);
            if (chunk.empty())
                pipes[index]->close();
            buffer.append(chunk, Links::open);
        }
    }
    return login.child.waitUntil(deadline);
}

Attempt<Login> start(const std::string& executable) {
    using Outcome = Attempt<Login>;
    const Descriptor input = openNowhere();
    auto output = makePipe();
    auto error = makePipe();
    if (!output || !error)
        return Outcome::failure(output ? error.message() : output.message());
    auto child = ChildProcess::start({.executable = executable,
                                      .arguments = {"auth", "login", "--claudeai"},
                                      .environment = CLIEnvironment::claude(executable),
                                      .workingDirectory = homeDirectory()},
                                     {.input = input.get(),
                                      .output = output.value().writeEnd.get(),
                                      .error = error.value().writeEnd.get()});
    if (!child)
        return Outcome::failure(child.message());
    return Outcome::success({.child = std::move(child).value(),
                             .output = std::move(std::move(output).value().readEnd),
                             .error = std::move(std::move(error).value().readEnd)});
}

} // namespace

std::string begin(const std::string& executable, const URLOpener& openURL, const Limits& limits) {
    LoginBuffer buffer(openURL);
    auto started = start(executable);
    if (!started)
        return "Couldn't start Claude login. " + started.message();
    Login login = std::move(started).value();

    if (!follow(login, buffer, std::chrono::steady_clock::now() + limits.login)) {
        login.child.terminate();
        follow(login, buffer, std::chrono::steady_clock::now() + limits.termination);
        return "Claude login timed out. Run claude auth login in Terminal.";
    }
    buffer.append(readRest(login.output), Links::open);
    buffer.append(readRest(login.error), Links::leave);
    if (login.child.code() == 0)
        return "Claude Code is logged in.";
    std::string said = buffer.redacted();
    return said.empty() ? "Claude login ended without signing in. Run claude auth login in Terminal." : said;
}

std::optional<bool> isLoggedIn(const std::string& executable, const std::filesystem::path& scratch) {
    return loggedIn(ProcessRunner::run({.executable = executable,
                                        .arguments = {"auth", "status"},
                                        .standardInput = std::nullopt,
                                        .directory = scratch,
                                        .workingDirectory = homeDirectory(),
                                        .environment = CLIEnvironment::claude(executable),
                                        .timeout = std::chrono::seconds(20)})
                        .standardOutput);
}

std::optional<bool> loggedIn(std::string statusOutput) {
    std::erase(statusOutput, ' ');
    if (statusOutput.find(R"("loggedIn":true)") != std::string::npos)
        return true;
    if (statusOutput.find(R"("loggedIn":false)") != std::string::npos)
        return false;
    return std::nullopt;
}

} // namespace quorl::ClaudeLogin

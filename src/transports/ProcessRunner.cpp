#include "transports/ProcessRunner.h"

#include "base/UUID.h"
#include "transports/ChildProcess.h"
#include "transports/Descriptor.h"
#include "transports/HomeDirectory.h"
#include "transports/ScratchFile.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <utility>

namespace quorl::ProcessRunner {

namespace {

constexpr std::chrono::seconds terminationGrace{5};

Result neverRan(std::string problem) {
    Result result;
    result.launchError = std::move(problem);
    return result;
}

std::string launchProblem(const std::string& executable, const std::string& description) {
    std::string problem = "Couldn't start " + executable + ". " + description;
    if (executable.find("x86_64-apple-darwin") != std::string::npos)
        problem += " This Codex build is Intel. On Apple silicon, install Rosetta or the native CLI.";
    return problem;
}

// A write to a pipe that nobody reads any more raises SIGPIPE in the writing thread. While this stands the
// signal is held back, and one that has been raised meanwhile is taken away again.
class WithoutBrokenPipeSignal {
public:
    WithoutBrokenPipeSignal() {
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &brokenPipe, &formerMask);
    }
    ~WithoutBrokenPipeSignal() {
        constexpr timespec noWait{};
        if (!wasPending) {
            while (sigtimedwait(&brokenPipe, nullptr, &noWait) < 0 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &formerMask, nullptr);
    }
    WithoutBrokenPipeSignal(const WithoutBrokenPipeSignal&) = delete;
    WithoutBrokenPipeSignal& operator=(const WithoutBrokenPipeSignal&) = delete;

private:
    sigset_t brokenPipe{};
    sigset_t formerMask{};
    bool wasPending = false;
};

// Writes as fast as the child reads, until all is written, the child has stopped reading or ended, or the
// deadline has come. The pipe is closed in any case.
void feed(Descriptor pipe, std::string_view bytes, const ChildProcess& child, Deadline deadline) {
    if (bytes.empty())
        return;
    const WithoutBrokenPipeSignal guard;
    setNonBlocking(pipe);
    while (!bytes.empty() && std::chrono::steady_clock::now() < deadline) {
        const ssize_t written = write(pipe.get(), bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
            continue;
        }
        if (errno != EAGAIN && errno != EINTR)
            return;
        std::array<pollfd, 2> events{pollfd{pipe.get(), POLLOUT, 0},
                                     pollfd{child.endDescriptor(), POLLIN, 0}};
        if (!pollUntil(events, deadline) || events[1].revents != 0)
            return;
    }
}

} // namespace

Result run(const Command& command) {
    const std::string id = UUID::random().text();
    const auto output = ScratchFile::create(command.directory / ("out-" + id + ".txt"));
    const auto error = ScratchFile::create(command.directory / ("err-" + id + ".txt"));
    if (!output || !error)
        return neverRan("Couldn't write CLI output.");
    auto madePipe = makePipe();
    if (!madePipe)
        return neverRan(launchProblem(command.executable, madePipe.message()));
    Pipe input = std::move(madePipe).value();

    auto started = ChildProcess::start(
        {.executable = command.executable,
         .arguments = command.arguments,
         .environment = command.environment ? *command.environment : childEnvironment(command.executable),
         .workingDirectory = command.workingDirectory.value_or(command.directory)},
        {.input = input.readEnd.get(),
         .output = output.value().descriptor(),
         .error = error.value().descriptor()});
    if (!started)
        return neverRan(launchProblem(command.executable, started.message()));
    ChildProcess child = std::move(started).value();
    const Deadline deadline = std::chrono::steady_clock::now() + command.timeout;
    input.readEnd.close();
    feed(std::move(input.writeEnd), command.standardInput ? *command.standardInput : std::string_view(),
         child, deadline);

    Result result;
    result.timedOut = !child.waitUntil(deadline);
    if (result.timedOut) {
        child.terminate();
        child.waitUntil(std::chrono::steady_clock::now() + terminationGrace);
    }
    result.code = child.code().value_or(-1);
    result.standardOutput = output.value().text();
    result.standardError = error.value().text();
    return result;
}

Environment childEnvironment(const std::string& executable) {
    Environment environment;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string_view variable(*entry);
        const std::size_t equals = variable.find('=');
        // Of a name that stands twice the first counts, as for getenv.
        if (equals != std::string_view::npos)
            environment.emplace(variable.substr(0, equals), variable.substr(equals + 1));
    }
    std::error_code failure;
    const auto folder = std::filesystem::absolute(executable, failure).parent_path();
    const std::string home = homeDirectory().string();
    const auto path = environment.find("PATH");
    environment.insert_or_assign("PATH", folder.string() + ':' + home +
                                             "/.local/bin:/opt/homebrew/bin:/usr/local/bin:" +
                                             (path == environment.end() ? "/usr/bin:/bin" : path->second));
    environment.insert_or_assign("HOME", home);
    return environment;
}

} // namespace quorl::ProcessRunner

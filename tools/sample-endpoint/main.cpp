// quorl-sample-endpoint: the sample provider as a program, so that everything can be tried without a key or a
// network.

#include "sample-endpoint/SampleEndpoint.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sysexits.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace {

using namespace std::string_view_literals;

constexpr auto usage =
    "usage: quorl-sample-endpoint [--port N] [--record FILE] [--until-stdin-closes]\n"
    "\n"
    "Serves the formats of OpenAI, Anthropic, Bedrock and of typed decisions on 127.0.0.1 with sample\n"
    "answers, and prints its base URL.\n"
    "  --port N               listens on this port instead of a free one\n"
    "  --record FILE          adds one line of JSON per request to FILE, without keys\n"
    "  --until-stdin-closes   ends when its standard input does\n";

struct Arguments {
    std::uint16_t port = 0;
    std::string recordFile;
    bool untilInputCloses = false;
};

std::optional<Arguments> readArguments(std::span<char*> words) {
    Arguments arguments;
    for (std::size_t place = 0; place < words.size(); ++place) {
        const std::string_view word = words[place];
        const bool hasValue = place + 1 < words.size();
        if (word == "--until-stdin-closes"sv) {
            arguments.untilInputCloses = true;
        } else if (word == "--record"sv && hasValue) {
            arguments.recordFile = words[++place];
        } else if (word == "--port"sv && hasValue) {
            const std::string_view number = words[++place];
            const auto [end, error] = std::from_chars(number.begin(), number.end(), arguments.port);
            if (error != std::errc() || end != number.end())
                return std::nullopt;
        } else {
            return std::nullopt;
        }
    }
    return arguments;
}

// A client is a descriptor, and the usual limit is meant for programs with few of them.
void allowManyConnections() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

// From here on the two signals are read, in this thread and all that it starts, and end nothing by
// themselves.
int catchEndingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC);
}

void waitForTheEnd(int signals, bool untilInputCloses) {
    std::array<pollfd, 2> sources{{{signals, POLLIN, 0}, {untilInputCloses ? STDIN_FILENO : -1, POLLIN, 0}}};
    while (true) {
        if (poll(sources.data(), sources.size(), -1) < 0)
            continue; // interrupted
        if (sources[0].revents != 0)
            return;
        std::array<char, 512> ignored;
        if (sources[1].revents != 0 && read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0)
            return;
    }
}

} // namespace

int main(int count, char** words) {
    const auto arguments = readArguments(std::span(words, static_cast<std::size_t>(count)).subspan(1));
    if (!arguments) {
        std::fputs(usage, stderr);
        return EX_USAGE;
    }

    quorl::sample::EndpointOptions options;
    options.port = arguments->port;
    options.record = quorl::sample::Record::drop;
    std::FILE* record = nullptr; // open until the process ends
    if (!arguments->recordFile.empty()) {
        record = std::fopen(arguments->recordFile.c_str(), "ae");
        if (!record) {
            std::fprintf(stderr, "%s: %s\n", arguments->recordFile.c_str(),
                         std::generic_category().message(errno).c_str());
            return EX_CANTCREAT;
        }
        options.onRequest = [record](const quorl::sample::Request& request) {
            std::fprintf(record, "%s\n", quorl::sample::journalLine(request).c_str());
            std::fflush(record); // so that it can be read while the endpoint runs
        };
    }

    allowManyConnections();
    const int signals = catchEndingSignals();
    try {
        const quorl::sample::SampleEndpoint endpoint(std::move(options));
        std::printf("%s\n", endpoint.baseURL().c_str());
        std::fflush(stdout);
        waitForTheEnd(signals, arguments->untilInputCloses);
    } catch (const std::system_error& error) {
        std::fprintf(stderr, "quorl-sample-endpoint: %s\n", error.what());
        return EX_UNAVAILABLE;
    }
    return EX_OK;
}

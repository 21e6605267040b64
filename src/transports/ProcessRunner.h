#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Runs a command-line tool: no shell, no terminal, its output into files, standard input closed after what
// was given, a deadline. Thread: any number of runs at once, each blocking the thread that asks; never the
// main thread. Failures: in the `Result`.
namespace quorl::ProcessRunner {

using Environment = std::map<std::string, std::string>;

struct Command {
    std::string executable; // a path; a relative one starts at our own working directory
    std::vector<std::string> arguments;
    std::optional<std::string> standardInput;              // bytes
    std::filesystem::path directory;                       // where the two output files lie while it runs
    std::optional<std::filesystem::path> workingDirectory; // `directory` if absent
    std::optional<Environment> environment;                // `childEnvironment(executable)` if absent
    std::chrono::milliseconds timeout{180'000};
};

struct Result {
    // The exit status, or the number of the signal that ended it; -1 if it never ran or has not ended yet.
    std::int32_t code = -1;
    std::string standardOutput;             // empty where its bytes are not UTF-8
    std::string standardError;              // the same
    std::optional<std::string> launchError; // why it could not be started
    bool timedOut = false;                  // asked to end at the deadline; it may not have obeyed
};

/// At the deadline the child gets a SIGTERM and five seconds more, then it is left to itself.
[[nodiscard]] Result run(const Command& command);

/// The process's own environment with a PATH that reaches the places where tools are installed, and HOME set.
[[nodiscard]] Environment childEnvironment(const std::string& executable);

} // namespace quorl::ProcessRunner

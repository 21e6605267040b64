#pragma once

#include <csignal>
#include <cstdio>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quorl::test {

// A program that runs until it is killed, with its standard output in a pipe: what it has said before the
// kill can still be read after it.
class KilledProgram {
public:
    explicit KilledProgram(std::vector<std::string> words) {
        int ends[2];
        if (pipe(ends) != 0)
            throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        posix_spawn_file_actions_addclose(&actions, ends[1]);
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        const int failure = posix_spawn(&pid, arguments[0], &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        output = fdopen(ends[0], "r");
        if (failure != 0)
            throw std::runtime_error("could not start " + words[0]);
    }
    ~KilledProgram() { std::fclose(output); }

    KilledProgram(const KilledProgram&) = delete;
    KilledProgram& operator=(const KilledProgram&) = delete;

    /// False if it had ended by itself.
    [[nodiscard]] bool kill() const {
        int status = 0;
        ::kill(pid, SIGKILL);
        waitpid(pid, &status, 0);
        return WIFSIGNALED(status);
    }

    /// The next whole line, without its end; nothing where the kill cut it off.
    [[nodiscard]] std::optional<std::string> readLine() const {
        char line[4096];
        if (!std::fgets(line, sizeof line, output))
            return std::nullopt;
        std::string text(line);
        if (!text.ends_with('\n'))
            return std::nullopt;
        text.pop_back();
        return text;
    }

private:
    pid_t pid = 0;
    FILE* output = nullptr;
};

} // namespace quorl::test

#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quorl::test {

// A program as a child, its standard input and output at pipes. Killed with the object if it has not been
// waited for.
class Process {
public:
    explicit Process(std::vector<std::string> words, std::vector<std::string> environment = {}) {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        const int error = posix_spawn(&id, words.front().c_str(), &actions, nullptr, pointersTo(words).data(),
                                      pointersTo(environment).data());
        posix_spawn_file_actions_destroy(&actions);
        close(in[0]);
        close(out[1]);
        input = in[1];
        output = fdopen(out[0], "r");
        if (error != 0)
            throw std::runtime_error("spawn");
    }
    ~Process() {
        if (id > 0) {
            kill(id, SIGKILL);
            wait();
        }
        closeInput();
        std::fclose(output);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The next line of its output, without its end; what there is of it where the output ends.
    std::string readLine() {
        std::string line;
        for (int character = std::fgetc(output); character != EOF && character != '\n';
             character = std::fgetc(output))
            line += static_cast<char>(character);
        return line;
    }

    void closeInput() {
        if (const int open = std::exchange(input, -1); open >= 0)
            close(open);
    }

    void signal(int number) const { kill(id, number); }

    /// Its exit status; -1 where a signal ended it.
    int wait() {
        int status = 0;
        waitpid(std::exchange(id, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    static std::vector<char*> pointersTo(std::vector<std::string>& texts) {
        std::vector<char*> pointers;
        for (auto& text : texts)
            pointers.push_back(text.data());
        pointers.push_back(nullptr);
        return pointers;
    }

    pid_t id = -1;
    int input = -1;
    std::FILE* output = nullptr;
};

} // namespace quorl::test

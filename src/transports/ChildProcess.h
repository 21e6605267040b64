#pragma once

#include "base/Attempt.h"
#include "transports/Descriptor.h"

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quorl {

// One started program, in a session of its own: no terminal and none of its signals reach it, no signal is
// ignored or blocked in it, and it holds no descriptor of ours but the three streams. No shell is involved.
// A child that outlives the object is left to itself and still reaped when it ends.
// Thread: one at a time; starting is safe on any number of threads at once.
class ChildProcess {
public:
    enum class Lookup { path, searchPATH };

    struct Program {
        std::string executable; // a path, which may start at our own working directory, or a name on the PATH
        std::vector<std::string> arguments;
        std::optional<std::map<std::string, std::string>> environment; // ours if absent
        std::filesystem::path workingDirectory;
        Lookup lookup = Lookup::path;
    };

    // Borrowed for the length of `start`; they become the child's descriptors 0, 1 and 2.
    struct Streams {
        int input = -1;
        int output = -1;
        int error = -1;
    };

    /// Failures: the system's own text.
    [[nodiscard]] static Attempt<ChildProcess> start(const Program& program, const Streams& streams);

    ChildProcess(ChildProcess&&) noexcept = default;
    ChildProcess& operator=(ChildProcess&&) = delete;
    ~ChildProcess();

    /// Readable, for poll(2), once the child has ended.
    [[nodiscard]] int endDescriptor() const { return end.get(); }

    /// Answers whether the child has ended by then.
    bool waitUntil(Deadline deadline);

    /// Asks the child to end (SIGTERM); one that has ended already does not mind.
    void terminate() const;

    /// The exit status, or the number of the signal that ended it; nothing while it has not been seen to end.
    [[nodiscard]] std::optional<std::int32_t> code() const { return endCode; }

private:
    explicit ChildProcess(Descriptor pidDescriptor) : end(std::move(pidDescriptor)) {}

    Descriptor end; // a pidfd: no number that the kernel could have given to another process meanwhile
    std::optional<std::int32_t> endCode;
};

} // namespace quorl

#pragma once

#include "base/Attempt.h"

#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <span>
#include <string>
#include <utility>

namespace quorl {

// Owns one file descriptor of the kernel's, or none (-1). Thread: one at a time.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : number(descriptor) {}
    ~Descriptor() { close(); }

    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number, other.number);
        return *this;
    }

    [[nodiscard]] int get() const { return number; }
    explicit operator bool() const { return number >= 0; }

    void close() {
        if (number >= 0)
            ::close(std::exchange(number, -1)); // an error on closing leaves nothing to be done
    }

private:
    int number = -1;
};

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

/// Both ends blocking and closed on exec. Failures: the system's own text.
[[nodiscard]] Attempt<Pipe> makePipe();

/// Reads as empty and swallows what is written; none if that fails.
[[nodiscard]] Descriptor openNowhere();

/// Lets no call on this end of a pipe wait; the other end stays as it was.
void setNonBlocking(const Descriptor& descriptor);

/// The system's text for an `errno`.
[[nodiscard]] std::string systemMessage(int error);

using Deadline = std::chrono::steady_clock::time_point;

/// Waits until one of `descriptors` is ready, as poll(2) has it, and answers whether one was before the
/// deadline. Looks once even when the deadline has passed.
bool pollUntil(std::span<pollfd> descriptors, Deadline deadline);

} // namespace quorl

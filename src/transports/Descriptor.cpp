#include "transports/Descriptor.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>

namespace quorl {

namespace {

// Rounded up, so that a wait does not end just before its deadline and turn into a busy loop.
int millisecondsUntil(Deadline deadline) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, INT_MAX));
}

} // namespace

Attempt<Pipe> makePipe() {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0)
        return Attempt<Pipe>::failure(systemMessage(errno));
    return Attempt<Pipe>::success({Descriptor(ends[0]), Descriptor(ends[1])});
}

Descriptor openNowhere() {
    return Descriptor(open("/dev/null", O_RDWR | O_CLOEXEC));
}

void setNonBlocking(const Descriptor& descriptor) {
    fcntl(descriptor.get(), F_SETFL, fcntl(descriptor.get(), F_GETFL) | O_NONBLOCK);
}

std::string systemMessage(int error) {
    return std::system_category().message(error);
}

bool pollUntil(std::span<pollfd> descriptors, Deadline deadline) {
    while (true) {
        const int wait = millisecondsUntil(deadline);
        const int ready = poll(descriptors.data(), descriptors.size(), wait);
        if (ready > 0)
            return true;
        // Interrupted, or a deadline further away than one call can wait.
        if (wait == 0 && ready == 0)
            return false;
    }
}

} // namespace quorl

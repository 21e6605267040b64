#include "platform/linux/SystemClock.h"

namespace quorl {

std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>> SystemClock::now() const {
    return std::chrono::system_clock::now();
}

} // namespace quorl

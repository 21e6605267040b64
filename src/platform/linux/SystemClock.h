#pragma once

#include "platform/Platform.h"

namespace quorl {

class SystemClock : public Clock {
public:
    [[nodiscard]] std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>
    now() const override;
};

} // namespace quorl

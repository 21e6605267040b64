#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstddef>
#include <fstream>

namespace quorl::test {

// Lets this process have so many bytes of address space more than it has now, to the end of the scope.
class ScarceMemory {
public:
    explicit ScarceMemory(std::size_t spareBytes) {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &former);
        const rlimit scarce{pages * static_cast<std::size_t>(getpagesize()) + spareBytes, former.rlim_max};
        setrlimit(RLIMIT_AS, &scarce);
    }
    ~ScarceMemory() { setrlimit(RLIMIT_AS, &former); }
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

    /// The sanitizers end a program that finds no memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool isSurvived = false;
#else
    static constexpr bool isSurvived = true;
#endif

private:
    rlimit former{};
};

} // namespace quorl::test

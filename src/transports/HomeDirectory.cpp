#include "transports/HomeDirectory.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace quorl {

namespace {

std::filesystem::path homeInPasswordDatabase() {
    std::array<char, 16384> texts{}; // far above any line of the database
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found);
    return found ? found->pw_dir : "/";
}

} // namespace

std::filesystem::path homeDirectory() {
    const char* home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): nothing sets variables
    return home && *home != '\0' ? std::filesystem::path(home) : homeInPasswordDatabase();
}

} // namespace quorl

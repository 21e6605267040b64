#include "platform/linux/XDGDirectories.h"

#include <cstdlib>
#include <optional>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace quorl {

namespace {

std::optional<std::filesystem::path> absolutePathFrom(const char* variable) {
    const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe): nothing sets variables
    if (!value || *value != '/')
        return std::nullopt;
    return value;
}

std::filesystem::path homeFolder() {
    if (auto home = absolutePathFrom("HOME"))
        return *home;
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> texts(16384); // glibc's own suggestion is smaller
    if (getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found) == 0 && found &&
        *found->pw_dir == '/')
        return found->pw_dir;
    return "/";
}

} // namespace

XDGDirectories xdgDirectories() {
    const auto home = homeFolder();
    return {absolutePathFrom("XDG_CONFIG_HOME").value_or(home / ".config"),
            absolutePathFrom("XDG_DATA_HOME").value_or(home / ".local/share"),
            absolutePathFrom("XDG_STATE_HOME").value_or(home / ".local/state")};
}

std::filesystem::path defaultsFile(const XDGDirectories& directories) {
    return directories.config / applicationFolder / "defaults.ini";
}

std::filesystem::path windowStateFile(const XDGDirectories& directories) {
    return directories.state / applicationFolder / "window.ini";
}

std::filesystem::path applicationSupportDirectory(const XDGDirectories& directories) {
    return directories.data;
}

void makePrivateFolder(const std::filesystem::path& folder) {
    std::filesystem::path partial;
    for (const auto& name : folder) {
        partial /= name;
        // Not filesystem::create_directories, whose folders everyone may read until they are changed.
        static_cast<void>(mkdir(partial.c_str(), 0700));
    }
}

} // namespace quorl

#pragma once

#include <csignal>
#include <sys/resource.h>

#include <filesystem>
#include <string>

namespace quorl::test {

// A file may not grow, as on a disk that is full.
class FullDisk {
public:
    explicit FullDisk(const std::string& path) : handlerBefore(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &limitBefore);
        rlimit limit = limitBefore;
        limit.rlim_cur = std::filesystem::file_size(path);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &limitBefore);
        std::signal(SIGXFSZ, handlerBefore);
    }

private:
    rlimit limitBefore{};
    void (*handlerBefore)(int);
};

} // namespace quorl::test

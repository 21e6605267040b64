#include "app/AtomicFile.h"

#include "base/UUID.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quorl::AtomicFile {

namespace {

constexpr int followedLinks = 40; // as many as the kernel follows

// The new content beside its target; gone with the object unless it was put in place.
class Draft {
public:
    // Made with the mode that the user's mask leaves.
    explicit Draft(const std::filesystem::path& folder)
        : path(folder / (".quorl-" + UUID::random().text())),
          descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {}
    ~Draft() {
        if (descriptor < 0)
            return;
        ::close(descriptor);
        if (!isInPlace)
            ::unlink(path.c_str());
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    [[nodiscard]] bool isOpen() const { return descriptor >= 0; }

    // Some file systems know no modes; the content matters more.
    void takeMode(mode_t mode) const { static_cast<void>(::fchmod(descriptor, mode)); }

    [[nodiscard]] bool write(std::string_view bytes) const {
        while (!bytes.empty()) {
            const auto count = ::write(descriptor, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return false;
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return ::fsync(descriptor) == 0;
    }

    [[nodiscard]] bool putInPlace(const std::filesystem::path& target) {
        isInPlace = ::rename(path.c_str(), target.c_str()) == 0;
        return isInPlace;
    }

private:
    const std::filesystem::path path;
    const int descriptor;
    bool isInPlace = false;
};

Attempt<std::filesystem::path> failure(const std::filesystem::path& path, int error) {
    return Attempt<std::filesystem::path>::failure(path.string() + ": " +
                                                   std::generic_category().message(error));
}

// The end of a chain of symbolic links, whether or not there is a file; nothing if there is no end.
std::optional<std::filesystem::path> behindLinks(std::filesystem::path path) {
    for (int link = 0; link <= followedLinks; ++link) {
        std::error_code isNoLink;
        const auto next = std::filesystem::read_symlink(path, isNoLink);
        if (isNoLink)
            return path;
        path = path.parent_path() / next; // an absolute one replaces it all
    }
    return std::nullopt;
}

// Why the file that is there must not be replaced, 0 if it may be. Renaming asks for none of this.
int obstacle(const std::filesystem::path& target, mode_t mode) {
    if (S_ISDIR(mode))
        return EISDIR;
    if (!S_ISREG(mode))
        return EOPNOTSUPP;
    return ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0 ? 0 : errno;
}

// The name is durable only with its folder; without that the file is merely as new as it was.
void settle(const std::filesystem::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    static_cast<void>(::fsync(descriptor));
    ::close(descriptor);
}

} // namespace

Attempt<std::filesystem::path> write(const std::filesystem::path& path, std::string_view bytes) {
    const auto target = behindLinks(std::filesystem::absolute(path));
    if (!target)
        return failure(path, ELOOP);
    struct stat present {};
    const bool isPresent = ::stat(target->c_str(), &present) == 0;
    if (const int error = isPresent ? obstacle(*target, present.st_mode) : 0)
        return failure(path, error);

    Draft draft(target->parent_path());
    if (!draft.isOpen())
        return failure(path, errno);
    if (isPresent)
        draft.takeMode(present.st_mode & 07777);
    if (!draft.write(bytes) || !draft.putInPlace(*target))
        return failure(path, errno);
    settle(target->parent_path());
    return Attempt<std::filesystem::path>::success(*target);
}

} // namespace quorl::AtomicFile

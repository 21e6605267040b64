#include "platform/linux/FileKeychain.h"

#include "platform/linux/XDGDirectories.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorl {

namespace {

class File {
public:
    explicit File(int opened) : descriptor(opened) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (descriptor >= 0)
            ::close(descriptor);
    }

    const int descriptor;
};

bool isPlainName(const std::string& name) {
    return !name.empty() && name.front() != '.' && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::optional<std::string> readAll(int descriptor) {
    std::string bytes;
    char part[4096];
    for (;;) {
        const auto count = ::read(descriptor, part, sizeof part);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return bytes;
        bytes.append(part, static_cast<std::size_t>(count));
    }
}

std::optional<std::filesystem::path> itemPath(const std::filesystem::path& folder, const std::string& service,
                                              const std::string& account) {
    if (!isPlainName(service) || !isPlainName(account))
        return std::nullopt;
    return folder / service / "secrets" / (account + ".json");
}

// Whoever reads the item meanwhile, and whoever finds it after a power cut, sees the whole of it or nothing.
void writeAtomically(const std::filesystem::path& path, const std::string& bytes) {
    std::string temporary = path.parent_path() / ".item-XXXXXX";
    const File file(::mkostemp(temporary.data(), O_CLOEXEC)); // made with mode 0600
    if (file.descriptor < 0)
        return;
    if (!writeAll(file.descriptor, bytes) || ::fsync(file.descriptor) != 0 ||
        ::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return;
    }
    // The name is durable only with its folder; without that the item is merely as new as it was.
    const File folder(::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.descriptor >= 0)
        static_cast<void>(::fsync(folder.descriptor));
}

} // namespace

FileKeychain::FileKeychain(std::filesystem::path parent) : folder(std::move(parent)) {}

std::optional<std::string> FileKeychain::copy(const std::string& service, const std::string& account) {
    const auto path = itemPath(folder, service, account);
    if (!path)
        return std::nullopt;
    // Not blocking, so that a pipe in the item's place is no trap; reading one of those fails or gives
    // nothing.
    const File file(::open(path->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (file.descriptor < 0 || ::fstat(file.descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return readAll(file.descriptor);
}

void FileKeychain::add(const std::string& service, const std::string& account, const std::string& bytes) {
    const auto path = itemPath(folder, service, account);
    if (!path)
        return;
    const std::lock_guard guard(lock);
    struct stat status {};
    if (::lstat(path->c_str(), &status) == 0)
        return;
    makePrivateFolder(path->parent_path());
    // The folder may have been made by hand, or have come out of a backup, with a wider mode.
    static_cast<void>(::chmod(path->parent_path().c_str(), 0700));
    writeAtomically(*path, bytes);
}

void FileKeychain::remove(const std::string& service, const std::string& account) {
    const auto path = itemPath(folder, service, account);
    if (!path)
        return;
    const std::lock_guard guard(lock);
    static_cast<void>(::unlink(path->c_str()));
}

} // namespace quorl

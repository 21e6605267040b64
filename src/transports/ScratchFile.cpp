#include "transports/ScratchFile.h"

#include "base/Text.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <new>

namespace quorl {

Attempt<ScratchFile> ScratchFile::create(std::filesystem::path path) {
    Descriptor descriptor(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!descriptor)
        return Attempt<ScratchFile>::failure(systemMessage(errno));
    return Attempt<ScratchFile>::success(ScratchFile(std::move(path), std::move(descriptor)));
}

ScratchFile::~ScratchFile() {
    if (file)
        unlink(name.c_str()); // someone who has deleted it already did no harm
}

std::optional<std::string> ScratchFile::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            return systemMessage(errno);
    }
    return std::nullopt;
}

// By the descriptor that was open all the time: the end of a run never fails for want of one. Not by a
// mapping, since a child that has been left to itself may cut the file short under it.
std::string ScratchFile::text() const {
    struct stat status {};
    // ICU counts in 32 bits.
    if (fstat(file.get(), &status) != 0 || status.st_size > INT32_MAX)
        return "";
    std::string content;
    try {
        content.resize(static_cast<std::size_t>(status.st_size));
    } catch (const std::bad_alloc&) {
        return ""; // as long as it likes is what a tool may print; it does not take the program down
    }
    std::size_t length = 0;
    while (length < content.size()) {
        const ssize_t count =
            pread(file.get(), content.data() + length, content.size() - length, static_cast<off_t>(length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return "";
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    content.resize(length);
    if (!Text::isUTF8(content))
        content.clear();
    return content; // as one object: a second copy of a long output might not find room
}

} // namespace quorl

#pragma once

#include "base/Attempt.h"
#include "transports/Descriptor.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quorl {

// A file that is new when made, readable by its user alone, and deleted with the object.
// Thread: one at a time. Failures: the system's own text.
class ScratchFile {
public:
    [[nodiscard]] static Attempt<ScratchFile> create(std::filesystem::path path);

    ScratchFile(ScratchFile&& other) noexcept = default;
    ScratchFile& operator=(ScratchFile&&) = delete;
    ~ScratchFile();

    [[nodiscard]] const std::filesystem::path& path() const { return name; }
    [[nodiscard]] int descriptor() const { return file.get(); }

    /// Nothing on success, else the problem.
    [[nodiscard]] std::optional<std::string> write(std::string_view bytes) const;

    /// The whole content, whoever wrote it; empty where it cannot be read or is not UTF-8.
    [[nodiscard]] std::string text() const;

private:
    ScratchFile(std::filesystem::path path, Descriptor descriptor)
        : name(std::move(path)), file(std::move(descriptor)) {}

    std::filesystem::path name;
    Descriptor file;
};

} // namespace quorl

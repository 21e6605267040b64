#pragma once

#include "base/Attempt.h"

#include <filesystem>
#include <string_view>

namespace quorl::AtomicFile {

/// Puts `bytes` in the place of whatever `path` holds: whoever reads it meanwhile, and whoever finds it after
/// a power cut, sees the old content or the new, whole. A file that is there keeps its mode; of a symbolic
/// link the file behind it is written, and the link stays. Answers the file that was written; what fails
/// leaves nothing behind and answers the system's reason, after the path. Blocks until the disk has it all.
/// Thread: any.
[[nodiscard]] Attempt<std::filesystem::path> write(const std::filesystem::path& path, std::string_view bytes);

} // namespace quorl::AtomicFile

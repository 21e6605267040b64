#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace quorl::bench {

// How many answers each run of a large library has.
inline constexpr std::size_t answersPerRun = 5;

/// A library of `runs` runs with their answers, of texts as models write them (about 600 bytes), the
/// catalogue's models, some categories, and a batch for every 200th run and its followers of the last tenth.
/// It is made once, in the folder for temporary files, and the same for everyone: copy it before writing to
/// it. Throws where the file cannot be made.
std::filesystem::path largeLibrary(std::size_t runs);

// A copy of a large library that may be written to, gone with the object.
class LibraryCopy {
public:
    explicit LibraryCopy(std::size_t runs);
    ~LibraryCopy();

    LibraryCopy(const LibraryCopy&) = delete;
    LibraryCopy& operator=(const LibraryCopy&) = delete;

    [[nodiscard]] std::string path() const { return file.string(); }

private:
    std::filesystem::path file;
};

} // namespace quorl::bench

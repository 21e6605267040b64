#include "store/SupportPaths.h"

#include <sys/stat.h>

namespace quorl::SupportPaths {

namespace {

// Each missing folder is born with its mode; to make it first and then to restrict it would leave a moment
// between.
void makeFolders(const std::filesystem::path& folder) {
    if (folder.has_relative_path())
        makeFolders(folder.parent_path());
    // A failure is unseen here: either the folder is there already, or a file in it cannot be opened later.
    mkdir(folder.c_str(), 0700);
}

} // namespace

std::filesystem::path directory(const std::filesystem::path& applicationSupport) {
    auto library = applicationSupport / folderName;
    makeFolders(library);
    makeFolders(scratch(library));
    return library;
}

std::filesystem::path scratch(const std::filesystem::path& directory) {
    return directory / "cli-scratch";
}

} // namespace quorl::SupportPaths

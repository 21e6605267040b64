#include "transports/ExecutableResolver.h"

#include "transports/HomeDirectory.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

namespace quorl::ExecutableResolver {

namespace {

std::vector<std::string> foldersOfPATH() {
    const char* path = std::getenv("PATH"); // NOLINT(concurrency-mt-unsafe): nothing sets variables
    std::string_view rest = path ? path : "";
    std::vector<std::string> folders;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (end > 0)
            folders.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

// The names in a folder, ascending, since the order decides which version of a tool is taken.
std::vector<std::string> listing(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure))
        names.push_back(entry->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

bool isExecutable(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
}

std::optional<std::string> find(ProviderKind provider, const std::string& override) {
    if (!override.empty() && isExecutable(override))
        return override;
    switch (provider) {
    case ProviderKind::codex: {
        auto binary = codexVendorBinary();
        return binary ? binary : firstExecutable("codex");
    }
    case ProviderKind::claudeCode:
        return firstExecutable("claude");
    case ProviderKind::zun:
    case ProviderKind::nuvel:
    case ProviderKind::openAIDecisions:
    case ProviderKind::veritor:
    case ProviderKind::openAI:
    case ProviderKind::openAICompatible:
    case ProviderKind::anthropic:
    case ProviderKind::amazonBedrock:
        return std::nullopt;
    }
    __builtin_unreachable();
}

std::optional<std::string> firstExecutable(std::string_view name) {
    std::vector<std::string> folders{homeDirectory().string() + "/.local/bin", "/opt/homebrew/bin",
                                     "/usr/local/bin", "/usr/bin"};
    const auto further = foldersOfPATH();
    folders.insert(folders.end(), further.begin(), further.end());
    for (const std::string& folder : folders) {
        std::string path = folder + '/' + std::string(name);
        if (isExecutable(path))
            return path;
    }
    return std::nullopt;
}

std::optional<std::string> codexVendorBinary() {
    constexpr const char* package = "/lib/node_modules/@openai/codex/vendor";
    const std::string versions = homeDirectory().string() + "/.nvm/versions/node";
    std::vector<std::string> roots{versions, std::string("/opt/homebrew") + package,
                                   std::string("/usr/local") + package};
    for (const std::string& version : listing(versions))
        roots.emplace_back(versions).append("/").append(version).append(package);

    std::vector<std::string> candidates;
    for (const std::string& root : roots) {
        for (const std::string& entry : listing(root)) {
            std::string candidate(root);
            candidate.append("/").append(entry).append("/codex/codex");
            if (isExecutable(candidate))
                candidates.push_back(std::move(candidate));
        }
    }
    for (const char* platform : {"/aarch64-apple-darwin/", "/x86_64-apple-darwin/", ""}) {
        const auto found =
            std::find_if(candidates.begin(), candidates.end(), [&](const std::string& candidate) {
                return candidate.find(platform) != std::string::npos;
            });
        if (found != candidates.end())
            return *found;
    }
    return std::nullopt;
}

} // namespace quorl::ExecutableResolver

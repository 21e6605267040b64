#include "transports/NuvelLocal.h"

#include "base/Text.h"
#include "transports/ExecutableResolver.h"
#include "transports/HomeDirectory.h"

namespace quorl::NuvelLocal {

bool usesHTTP(const ModelProfile& model) {
    const std::string endpoint = Text::lowercased(Text::trimmed(model.endpoint));
    return endpoint.starts_with("http://") || endpoint.starts_with("https://");
}

std::optional<std::string> findExecutable(const std::string& override) {
    if (!override.empty() && ExecutableResolver::isExecutable(override))
        return override;
    const std::string home = homeDirectory().string();
    for (const std::string& path : {home + "/.cargo/bin/nuvel-rs", std::string("/opt/homebrew/bin/nuvel-rs"),
                                    std::string("/usr/local/bin/nuvel-rs")}) {
        if (ExecutableResolver::isExecutable(path))
            return path;
    }
    return ExecutableResolver::firstExecutable("nuvel-rs");
}

} // namespace quorl::NuvelLocal

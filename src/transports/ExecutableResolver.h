#pragma once

#include "domain/Enumerations.h"

#include <optional>
#include <string>
#include <string_view>

// Finds command-line tools in a fixed list of places. A tool is a regular file that this user may execute.
// Thread: any. Failures: none; what cannot be looked at is not there.
namespace quorl::ExecutableResolver {

[[nodiscard]] bool isExecutable(const std::string& path);

/// `override` if it is an executable file, else where the provider's tool is usually installed.
[[nodiscard]] std::optional<std::string> find(ProviderKind provider, const std::string& override);

/// The first executable of that name in the user's, the machine's and the PATH's folders.
[[nodiscard]] std::optional<std::string> firstExecutable(std::string_view name);

/// The native binary inside an installed Codex package, which is preferred to any "codex" on the PATH.
[[nodiscard]] std::optional<std::string> codexVendorBinary();

} // namespace quorl::ExecutableResolver

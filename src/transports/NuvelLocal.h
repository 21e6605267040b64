#pragma once

#include "domain/Records.h"

#include <optional>
#include <string>

// The command-line tool that runs a Nuvel model on this machine. Thread: any.
namespace quorl::NuvelLocal {

/// Whether a `nuvel` model is asked over HTTP, at its endpoint, and not through the tool.
[[nodiscard]] bool usesHTTP(const ModelProfile& model);

/// What a model without the tool answers.
inline constexpr const char* notFound = "Couldn't find the nuvel-rs CLI. Ombrel uses the same library.";

/// `override` if it is an executable file, else where nuvel-rs is usually installed.
[[nodiscard]] std::optional<std::string> findExecutable(const std::string& override);

} // namespace quorl::NuvelLocal

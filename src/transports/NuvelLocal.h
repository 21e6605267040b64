#pragma once

#include "domain/Records.h"

// The command-line tool that runs a Nuvel model on this machine. Thread: any.
namespace quorl::NuvelLocal {

/// Whether a `nuvel` model is asked over HTTP, at its endpoint, and not through the tool.
[[nodiscard]] bool usesHTTP(const ModelProfile& model);

} // namespace quorl::NuvelLocal

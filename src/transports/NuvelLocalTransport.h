#pragma once

#include "transports/Decision.h"

#include <filesystem>

// The local decision tool nuvel-rs, run once a request on two files in the scratch folder.
// Thread: any; blocks until the tool has ended. Failures: in `errorMessage`.
namespace quorl::NuvelLocalTransport {

[[nodiscard]] RawDecision complete(const DecisionRequest& request, const std::filesystem::path& scratch);

} // namespace quorl::NuvelLocalTransport

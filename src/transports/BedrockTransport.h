#pragma once

#include "base/Date.h"
#include "store/ModelSecret.h"
#include "transports/Decision.h"

#include <optional>
#include <string>
#include <string_view>

namespace quorl {

class HTTPSession;

// Amazon Bedrock's Converse API, signed with AWS Signature Version 4
// (https://docs.aws.amazon.com/bedrock/latest/APIReference/API_runtime_Converse.html).
// Thread: any; blocks until the answer is there. Failures: in `errorMessage`, never with a credential.
namespace BedrockTransport {

[[nodiscard]] RawDecision complete(HTTPSession& session, const DecisionRequest& request,
                                   const ModelSecret& secret);

// The parts of it, for where Bedrock is reached at another address or another time.

/// A model's endpoint names its region, or the runtime host that lies in it.
[[nodiscard]] std::string regionName(std::string_view endpoint);

/// "https://" and the region's runtime host; nothing if the region is no part of a host name.
[[nodiscard]] std::optional<std::string> runtimeURL(std::string_view region);

/// What follows the host: the path that asks this model, percent-encoded as it is sent and signed.
[[nodiscard]] std::string conversePath(std::string_view modelIdentifier);

/// As `complete`, at `runtimeURL` and signed at `now`.
[[nodiscard]] RawDecision completeAt(const std::string& runtimeURL, Date now, HTTPSession& session,
                                     const DecisionRequest& request, const ModelSecret& secret);

} // namespace BedrockTransport
} // namespace quorl

#pragma once

#include "store/ModelSecret.h"
#include "transports/Decision.h"

namespace quorl {

class HTTPSession;

// Anthropic's Messages API (https://docs.anthropic.com/en/api/messages).
// Thread: any; blocks until the answer is there. Failures: in `errorMessage`, never with a credential.
namespace AnthropicTransport {

[[nodiscard]] RawDecision complete(HTTPSession& session, const DecisionRequest& request,
                                   const ModelSecret& secret);

} // namespace AnthropicTransport
} // namespace quorl

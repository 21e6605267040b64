#pragma once

#include "store/ModelSecret.h"
#include "transports/Decision.h"

namespace quorl {

class HTTPSession;

// OpenAI's chat completions format (https://platform.openai.com/docs/api-reference/chat), for OpenAI itself
// and for any server that speaks it. Thread: any; blocks until the answer is there. Failures: in
// `errorMessage`, never with the key.
namespace OpenAITransport {

[[nodiscard]] RawDecision complete(HTTPSession& session, const DecisionRequest& request,
                                   const ModelSecret& secret);

} // namespace OpenAITransport
} // namespace quorl

#pragma once

#include "store/ModelSecret.h"
#include "transports/Decision.h"

namespace quorl {

class HTTPSession;

// Amazon Bedrock's Converse API, signed with AWS Signature Version 4
// (https://docs.aws.amazon.com/bedrock/latest/APIReference/API_runtime_Converse.html).
// Thread: any; blocks until the answer is there. Failures: in `errorMessage`, never with a credential.
namespace BedrockTransport {

[[nodiscard]] RawDecision complete(HTTPSession& session, const DecisionRequest& request,
                                   const ModelSecret& secret);

} // namespace BedrockTransport
} // namespace quorl

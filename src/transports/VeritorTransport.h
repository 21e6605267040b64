#pragma once

#include "store/ModelSecret.h"
#include "transports/Decision.h"

namespace quorl {

class HTTPSession;

// Decision endpoints over HTTP, hosted or self-served.
// Thread: any; blocks until the answer is there. Failures: in `errorMessage`, never with a credential.
namespace VeritorTransport {

[[nodiscard]] RawDecision complete(HTTPSession& session, const DecisionRequest& request,
                                   const ModelSecret& secret);

} // namespace VeritorTransport
} // namespace quorl

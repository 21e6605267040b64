#pragma once

#include "store/ModelSecret.h"
#include "transports/Decision.h"

#include <filesystem>

namespace quorl {

class HTTPSession;

// The one door through which any question reaches any model: checks that the model can be asked, picks the
// transport of its provider, measures, fills in the counts that the provider left out, prices the call.
// Thread: any number of calls at once, each blocking its own thread. Failures: in `errorMessage`, one
// sentence; never throws.
class DecisionRouter {
public:
    /// `httpSession` is borrowed and must outlive every call.
    explicit DecisionRouter(HTTPSession& httpSession) : session(httpSession) {}

    /// `scratch` is the working directory of command-line tools.
    [[nodiscard]] DecisionOutcome complete(const DecisionRequest& request, const ModelSecret& secret,
                                           const std::filesystem::path& scratch) const;

private:
    [[nodiscard]] RawDecision dispatchWithinMemory(const DecisionRequest& request, const ModelSecret& secret,
                                                   const std::filesystem::path& scratch) const;
    [[nodiscard]] RawDecision dispatch(const DecisionRequest& request, const ModelSecret& secret,
                                       const std::filesystem::path& scratch) const;

    HTTPSession& session;
};

} // namespace quorl

#include "transports/Decision.h"

#include <utility>

namespace quorl {

RawDecision RawDecision::failed(std::string message) {
    RawDecision decision;
    decision.errorMessage = std::move(message);
    return decision;
}

} // namespace quorl

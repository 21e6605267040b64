#pragma once

#include "decision/DecisionQuestion.h"
#include "domain/Enumerations.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The decision request: where it goes and what it says. Thread: any.
namespace quorl::Veritor {

/// The endpoint's URL, or the provider's own where none is given; nothing if there is none or it cannot be
/// parsed.
[[nodiscard]] std::optional<std::string> url(std::string_view endpoint, ProviderKind provider);

/// The JSON body. Throws `StoreError` with the first problem of the state and the questions.
[[nodiscard]] std::string requestBody(std::string_view state, std::string_view modelIdentifier,
                                      const std::vector<DecisionQuestion>& questions);

} // namespace quorl::Veritor

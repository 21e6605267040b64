#pragma once

#include "base/UUID.h"
#include "domain/Records.h"

#include <array>
#include <cstdint>
#include <vector>

// The built-in catalogue: a preset for every kind of provider and the list of models that an empty library
// starts with. Thread: any. Failures: none.
namespace quorl::Seed {

// Identifiers of the catalogue's models, the same in every library.
[[nodiscard]] UUID zun();
[[nodiscard]] UUID nuvel();
[[nodiscard]] UUID openAIDecisions();
[[nodiscard]] UUID veritor();
[[nodiscard]] UUID openAI();
[[nodiscard]] UUID anthropic();
[[nodiscard]] UUID bedrock();
[[nodiscard]] UUID claudeCode();
[[nodiscard]] UUID codex();

/// The categories that earlier versions seeded, in the order in which they are retired.
[[nodiscard]] std::array<UUID, 9> retiredCategories();

/// A new model of a kind as the catalogue has it, without a tool's path.
[[nodiscard]] ModelProfile preset(ProviderKind kind, std::int64_t sortIndex, const UUID& id);

/// The nine models of an empty library, by `sortIndex`.
[[nodiscard]] std::vector<ModelProfile> models();

/// The first four of them, which are the decision family.
[[nodiscard]] std::vector<ModelProfile> decisionPresets();

} // namespace quorl::Seed

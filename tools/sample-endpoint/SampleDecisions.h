#pragma once

#include "sample-endpoint/Format.h"

#include <array>
#include <optional>
#include <string_view>

// What the endpoint's decision models decide. No model stands behind them: they count the words that an
// option has in common with the state and turn the counts into probabilities, which is a baseline that a
// real model should beat. Thread: any. Failures: none.
namespace quorl::sample::SampleDecisions {

inline constexpr std::string_view literal =
    "sample-literal";                                     // whole words, every use of them; sure of itself
inline constexpr std::string_view stems = "sample-stems"; // words that begin alike, once each; cautious

inline constexpr std::array demoModels{literal, stems};

/// The same question gets the same answer every time. The two take a moment; any other model answers as
/// `literal` does, at once. Nothing for `SampleAnswers::unavailable`.
[[nodiscard]] std::optional<Completion> answer(const Question& question);

} // namespace quorl::sample::SampleDecisions

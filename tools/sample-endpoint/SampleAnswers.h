#pragma once

#include "sample-endpoint/Format.h"

#include <array>
#include <optional>
#include <string_view>

// What the endpoint's models say of themselves. No model stands behind them, and every text says so; each
// makes something of the question in its own way, so that four answers side by side are worth comparing.
// Thread: any. Failures: none.
namespace quorl::sample::SampleAnswers {

inline constexpr std::string_view brief = "sample-brief";
inline constexpr std::string_view thorough = "sample-thorough";
inline constexpr std::string_view steps = "sample-steps";
inline constexpr std::string_view skeptic = "sample-skeptic";
inline constexpr std::string_view unavailable = "sample-unavailable"; // a model that is always overloaded

inline constexpr std::array demoModels{brief, thorough, steps, skeptic};

/// The same question gets the same answer every time. The four take between 0.4 and 3 seconds, the longer the
/// more they say; any other model answers as `brief` does, at once. Nothing for `unavailable`.
[[nodiscard]] std::optional<Completion> answer(const Question& question);

} // namespace quorl::sample::SampleAnswers

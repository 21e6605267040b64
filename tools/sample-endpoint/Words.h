#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What a text consists of, as far as can be told without understanding it. Thread: any. Failures: none.
namespace quorl::sample {

struct Word {
    std::string text;
    bool carriesMeaning = false; // as far as can be told without its language
};

/// The words as Unicode divides text (UAX #29), with ICU's dictionaries for the scripts that are written
/// without blanks.
[[nodiscard]] std::vector<Word> wordsOf(const std::string& text);

/// About four bytes make a token.
[[nodiscard]] std::int64_t tokensIn(std::string_view text);

} // namespace quorl::sample

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

// What depends on Unicode's characters, on UTF-8 text, by way of ICU. A "character" is a grapheme cluster
// (UAX #29), white space is Unicode's property White_Space, new lines included. Bytes that are not UTF-8
// count as U+FFFD where a character is looked at and are otherwise passed on as they are. Thread: any.
// Failures: none.
namespace quorl::Text {

[[nodiscard]] bool isUTF8(std::string_view bytes);

/// Without the white space and new lines at both ends; a view into the argument.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Nothing is left of it when trimmed.
[[nodiscard]] bool isBlank(std::string_view text);

/// Without regard to a locale (Unicode's default mappings).
[[nodiscard]] std::string lowercased(std::string_view text);

/// Each word with its first letter upper case and the rest lower case, without regard to a locale.
[[nodiscard]] std::string capitalized(std::string_view text);

/// The first `count` characters, a view into the argument.
[[nodiscard]] std::string_view firstCharacters(std::string_view text, std::size_t count);

/// The form in which texts that differ only in case, or in how their accents are written, are the same, by
/// the user's locale. A text contains another, ignoring case, where its folded form contains the other's.
[[nodiscard]] std::string folded(std::string_view text);

/// Equal when folded.
[[nodiscard]] bool equalsIgnoringCase(std::string_view left, std::string_view right);

/// `left` stands before `right` in the order of the user's locale, which accents decide and case does not.
[[nodiscard]] bool precedesIgnoringCase(std::string_view left, std::string_view right);

enum class CharacterClass { letter, number, whiteSpace, other };

/// Calls `visit` with each character and the class of its first code point, from the start to the end.
void forEachCharacter(std::string_view text,
                      const std::function<void(std::string_view character, CharacterClass)>& visit);

/// `text` with every run of trailing `end` characters removed.
[[nodiscard]] std::string_view withoutTrailing(std::string_view text, char end);

} // namespace quorl::Text

#pragma once

#include "base/JsonForward.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Reading and writing JSON (RFC 8259). A document that is nested deeper than `maximumDepth`, or that holds
// bytes that are not UTF-8, is not JSON. Reading is tolerant: look-ups are optional, and a value of another
// type is a missing one. Thread: any. Failures: an empty result; no exception of the JSON library leaves this
// file.
namespace quorl::Json {

inline constexpr std::size_t maximumDepth = 512;

[[nodiscard]] std::optional<Value> parse(std::string_view text);

/// As `parse`, and the document is an object.
[[nodiscard]] std::optional<Value> parseObject(std::string_view text);

enum class Layout { compact, pretty };
enum class Slash { bare, escaped };

/// Keys sorted; pretty is indented by two blanks. Nothing if a text in the value is not UTF-8, a number is
/// not finite, or the nesting is too deep to be read again.
[[nodiscard]] std::optional<std::string> write(const Value& value, Layout layout = Layout::compact,
                                               Slash slash = Slash::bare);

/// Appends `text` to `json` as `write` would have it: for output in bulk, which needs no value in between.
/// False, with nothing appended, if the text is not UTF-8.
[[nodiscard]] bool appendText(std::string& json, std::string_view text);

/// The member of an object; null for anything that is no object or has no such key.
[[nodiscard]] const Value* find(const Value& object, std::string_view key);

/// The same on a value that may itself be missing, so that look-ups chain.
[[nodiscard]] const Value* find(const Value* object, std::string_view key);

/// The text of a text value; null for anything else.
[[nodiscard]] const std::string* text(const Value* value);

/// The value if it is an object, an array; null otherwise.
[[nodiscard]] const Value* object(const Value* value);
[[nodiscard]] const Value* array(const Value* value);

/// A bool is no number, and a number no bool.
[[nodiscard]] std::optional<bool> boolean(const Value* value);

/// A whole number; one written with a fraction of zero (5.0) counts, one that 64 signed bits cannot hold does
/// not.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(const Value* value);

[[nodiscard]] std::optional<double> number(const Value* value);

/// A count as services report it: a whole number, or a fraction cut off toward zero; one that 64 signed bits
/// cannot hold is none.
[[nodiscard]] std::optional<std::int64_t> truncatedCount(const Value* value);

} // namespace quorl::Json

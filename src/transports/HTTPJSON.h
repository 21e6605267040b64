#pragma once

#include "base/Json.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

// What the transports over HTTP share in reading a reply. Thread: any.
namespace quorl::HTTPJSON {

using Keys = std::initializer_list<std::string_view>;

/// A server's words with "[API key]" wherever it quotes one of the keys that it was sent.
[[nodiscard]] std::string withoutKeys(std::string_view text, Keys keys);

/// The sentence for a reply whose status is outside 200 to 299: the server's own message where the body has
/// one, without `keys`.
[[nodiscard]] std::string failure(std::string_view body, int status, Keys keys = {});

/// A count that a provider reports: an integer, or a fraction cut off toward zero; nothing for a missing
/// value or anything that is no number.
[[nodiscard]] inline std::optional<std::int64_t> count(const Json::Value* value) {
    return Json::truncatedCount(value);
}

/// An array that holds nothing but objects.
[[nodiscard]] bool isArrayOfObjects(const Json::Value* value);

/// The texts of a message's parts, one after the other; a part of another kind has none. Empty for anything
/// but an array of objects.
[[nodiscard]] std::string joinedText(const Json::Value* parts);

[[nodiscard]] inline bool isSuccess(int status) {
    return status >= 200 && status <= 299;
}

} // namespace quorl::HTTPJSON

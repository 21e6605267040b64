#pragma once

#include "domain/Enumerations.h"

#include <optional>
#include <string>
#include <string_view>

namespace quorl {

// The credentials of one model. Thread: any.
struct ModelSecret {
    std::string apiKey;
    std::string awsAccessKey;
    std::string awsSecretKey;
    std::string awsSessionToken; // empty when not used

    /// Whether the filled fields are enough for a kind. `nuvel` and `veritor` answer as if a key were always
    /// needed; whether one is needed at all is for the caller to know.
    [[nodiscard]] bool satisfies(ProviderKind kind) const;

    /// A JSON object of the four fields, an empty one included; nothing if a field is not UTF-8.
    [[nodiscard]] std::optional<std::string> json() const;

    /// Nothing unless `json` is an object with all four keys, each a text.
    [[nodiscard]] static std::optional<ModelSecret> fromJSON(std::string_view json);

    bool operator==(const ModelSecret&) const = default;
};

} // namespace quorl

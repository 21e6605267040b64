#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quorl {

// A 128-bit identifier (RFC 4122). Its text is the canonical form 8-4-4-4-12 with upper-case digits.
class UUID {
public:
    /// The nil identifier, all zero.
    constexpr UUID() = default;

    /// A fresh version-4 identifier from the system's random source; without one the process ends. Thread:
    /// any.
    [[nodiscard]] static UUID random();

    /// Reads the 36-character form, digits of either case; nothing for any other text.
    [[nodiscard]] static std::optional<UUID> parse(std::string_view text);

    [[nodiscard]] std::string text() const;

    /// Well spread for random identifiers, which is what nearly all of ours are.
    [[nodiscard]] std::size_t hash() const;

    auto operator<=>(const UUID&) const = default;

private:
    std::array<std::uint8_t, 16> bytes{};
};

} // namespace quorl

template <>
struct std::hash<quorl::UUID> {
    std::size_t operator()(const quorl::UUID& id) const noexcept { return id.hash(); }
};

#include "base/UUID.h"

#include <openssl/rand.h>

#include <cstdlib>
#include <cstring>

namespace quorl {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isDashPlace(std::size_t place) {
    return place == 8 || place == 13 || place == 18 || place == 23;
}

int digitValue(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return -1;
}

} // namespace

UUID UUID::random() {
    UUID id;
    // The generator can fail only where the kernel has no randomness, and then no identifier may be made up.
    if (RAND_bytes(id.bytes.data(), static_cast<int>(id.bytes.size())) != 1)
        std::abort();
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);
    return id;
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != textLength)
        return std::nullopt;
    UUID id;
    std::size_t digits = 0;
    for (std::size_t place = 0; place < textLength; ++place) {
        if (isDashPlace(place)) {
            if (text[place] != '-')
                return std::nullopt;
            continue;
        }
        const int value = digitValue(text[place]);
        if (value < 0)
            return std::nullopt;
        auto& byte = id.bytes[digits / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | value);
        ++digits;
    }
    return id;
}

std::string UUID::text() const {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string result;
    result.reserve(textLength);
    for (const std::uint8_t byte : bytes) {
        if (isDashPlace(result.size()))
            result += '-';
        result += digits[byte >> 4];
        result += digits[byte & 0x0F];
    }
    return result;
}

std::size_t UUID::hash() const {
    std::uint64_t halves[2];
    std::memcpy(halves, bytes.data(), sizeof halves);
    return static_cast<std::size_t>(halves[0] ^ halves[1] * 0x9E3779B97F4A7C15u);
}

} // namespace quorl

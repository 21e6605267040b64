#include "base/Json.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quorl::Json {

namespace {

// Counted on the text before it is parsed: the parser itself does not recurse, but what walks its result
// does.
bool isNestedTooDeep(std::string_view text) {
    // Most documents have not even as many brackets as levels are allowed, and counting them is far cheaper.
    const auto isOpening = [](char character) { return character == '[' || character == '{'; };
    if (static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isOpening)) <= maximumDepth)
        return false;
    std::size_t depth = 0;
    bool inString = false;
    for (std::size_t place = 0; place < text.size(); ++place) {
        switch (text[place]) {
        case '"':
            inString = !inString;
            break;
        case '\\':
            if (inString)
                ++place;
            break;
        case '[':
        case '{':
            if (!inString && ++depth > maximumDepth)
                return true;
            break;
        case ']':
        case '}':
            if (!inString && depth > 0)
                --depth;
            break;
        default:
            break;
        }
    }
    return false;
}

// nlohmann writes a number that is not finite as null, which would turn an error into a silent loss.
bool isWritable(const Value& value, std::size_t depth) {
    if (depth > maximumDepth)
        return false;
    if (value.is_number_float())
        return std::isfinite(value.get<double>());
    if (!value.is_structured())
        return true;
    for (const auto& element : value) {
        if (!isWritable(element, element.is_structured() ? depth + 1 : depth))
            return false;
    }
    return true;
}

void escapeSlashes(std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        // Outside a string a slash cannot stand in JSON.
        if (character == '/')
            result += '\\';
        result += character;
    }
    text = std::move(result);
}

// How much of `text` stands in a JSON string as it is. Eight bytes at a time, since nearly all of every text
// does.
std::size_t plainLength(std::string_view text) {
    constexpr std::uint64_t each = 0x0101010101010101u;
    constexpr std::uint64_t high = 0x80 * each;
    const auto hasByteBelow = [](std::uint64_t bytes, std::uint64_t limit) {
        return ((bytes - limit * each) & ~bytes & high) !=
               0; // also true for some that follow one, which is looked at below
    };
    std::size_t place = 0;
    for (; place + sizeof(std::uint64_t) <= text.size(); place += sizeof(std::uint64_t)) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data() + place, sizeof bytes);
        if (hasByteBelow(bytes, 0x20) || hasByteBelow(bytes ^ '"' * each, 1) ||
            hasByteBelow(bytes ^ '\\' * each, 1))
            break;
    }
    while (place < text.size() && static_cast<unsigned char>(text[place]) >= 0x20 && text[place] != '"' &&
           text[place] != '\\')
        ++place;
    return place;
}

void appendEscape(std::string& json, char character) {
    static constexpr char digits[] = "0123456789abcdef";
    json += '\\';
    switch (character) {
    case '"':
    case '\\':
        json += character;
        break;
    case '\b':
        json += 'b';
        break;
    case '\f':
        json += 'f';
        break;
    case '\n':
        json += 'n';
        break;
    case '\r':
        json += 'r';
        break;
    case '\t':
        json += 't';
        break;
    default:
        json += "u00";
        json += digits[character >> 4];
        json += digits[character & 0x0F];
        break;
    }
}

} // namespace

std::optional<Value> parse(std::string_view text) {
    // The parser takes a zero byte for the end and would accept whatever follows it.
    if (text.find('\0') != std::string_view::npos || isNestedTooDeep(text))
        return std::nullopt;
    auto value = Value::parse(text, nullptr, false);
    if (value.is_discarded())
        return std::nullopt;
    return value;
}

std::optional<Value> parseObject(std::string_view text) {
    auto value = parse(text);
    if (!value || !value->is_object())
        return std::nullopt;
    return value;
}

std::optional<std::string> write(const Value& value, Layout layout, Slash slash) {
    if (!isWritable(value, value.is_structured() ? 1 : 0))
        return std::nullopt;
    try {
        auto text = value.dump(layout == Layout::pretty ? 2 : -1);
        if (slash == Slash::escaped)
            escapeSlashes(text);
        return text;
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

bool appendText(std::string& json, std::string_view text) {
    if (!Text::isUTF8(text))
        return false;
    json += '"';
    while (!text.empty()) {
        const std::size_t plain = plainLength(text);
        json.append(text, 0, plain);
        if (plain < text.size())
            appendEscape(json, text[plain]);
        text.remove_prefix(std::min(plain + 1, text.size()));
    }
    json += '"';
    return true;
}

const Value* find(const Value& object, std::string_view key) {
    if (!object.is_object())
        return nullptr;
    const auto member = object.find(key);
    return member == object.end() ? nullptr : &*member;
}

const Value* find(const Value* object, std::string_view key) {
    return object ? find(*object, key) : nullptr;
}

const std::string* text(const Value* value) {
    return value ? value->get_ptr<const std::string*>() : nullptr;
}

const Value* object(const Value* value) {
    return value && value->is_object() ? value : nullptr;
}

const Value* array(const Value* value) {
    return value && value->is_array() ? value : nullptr;
}

std::optional<bool> boolean(const Value* value) {
    if (!value || !value->is_boolean())
        return std::nullopt;
    return value->get<bool>();
}

std::optional<std::int64_t> wholeNumber(const Value* value) {
    if (!value || !value->is_number())
        return std::nullopt;
    if (value->is_number_unsigned()) {
        const auto count = value->get<std::uint64_t>();
        if (count > static_cast<std::uint64_t>(INT64_MAX))
            return std::nullopt;
        return static_cast<std::int64_t>(count);
    }
    if (value->is_number_integer())
        return value->get<std::int64_t>();
    const auto fraction = value->get<double>();
    // 2^63 is the first double that no longer fits.
    if (fraction != std::trunc(fraction) || fraction < -0x1p63 || fraction >= 0x1p63)
        return std::nullopt;
    return static_cast<std::int64_t>(fraction);
}

std::optional<double> number(const Value* value) {
    if (!value || !value->is_number())
        return std::nullopt;
    return value->get<double>();
}

std::optional<std::int64_t> truncatedCount(const Value* value) {
    if (const auto whole = wholeNumber(value))
        return whole;
    const auto fraction = number(value);
    if (!fraction || !(std::abs(*fraction) < 0x1p63))
        return std::nullopt;
    return static_cast<std::int64_t>(*fraction);
}

} // namespace quorl::Json

#include "transports/HTTPJSON.h"

#include "base/Text.h"

#include <algorithm>

namespace quorl::HTTPJSON {

namespace {

constexpr std::size_t quotedCharacters = 300;

// Shorter texts stand in the key field of servers that ask for none ("none", "ollama") and in ordinary words.
constexpr std::size_t shortestKey = 8;

const std::string* findMessage(const Json::Value& reply) {
    if (const std::string* const inner =
            Json::text(Json::find(Json::object(Json::find(reply, "error")), "message")))
        return inner;
    return Json::text(Json::find(reply, "message"));
}

// In one sweep: a reply of megabytes may hold nothing but the key, and replacing in place would move its rest
// each time.
std::string withoutKey(std::string_view text, std::string_view key) {
    if (key.size() < shortestKey)
        return std::string(text);
    std::string shown;
    for (std::size_t at = text.find(key); at != std::string_view::npos; at = text.find(key)) {
        shown.append(text.substr(0, at)).append("[API key]");
        text.remove_prefix(at + key.size());
    }
    return shown.append(text);
}

} // namespace

std::string withoutKeys(std::string_view text, Keys keys) {
    std::string shown(text);
    for (const std::string_view key : keys)
        shown = withoutKey(shown, key);
    return shown;
}

std::string failure(std::string_view body, int status, Keys keys) {
    const std::string prefix = "HTTP " + std::to_string(status);
    const auto reply = Json::parseObject(body);
    if (const std::string* const message = reply ? findMessage(*reply) : nullptr)
        return prefix + ": " + withoutKeys(*message, keys);
    // The keys go before the cut, which could leave a part of it.
    const std::string text = Text::isUTF8(body) ? withoutKeys(Text::trimmed(body), keys) : "";
    return text.empty() ? prefix : prefix + ": " + std::string(Text::firstCharacters(text, quotedCharacters));
}

bool isArrayOfObjects(const Json::Value* value) {
    return Json::array(value) && std::all_of(value->begin(), value->end(), [](const Json::Value& element) {
               return Json::object(&element);
           });
}

std::string joinedText(const Json::Value* parts) {
    std::string joined;
    if (!isArrayOfObjects(parts))
        return joined;
    for (const Json::Value& part : *parts) {
        if (const std::string* const text = Json::text(Json::find(part, "text")))
            joined += *text;
    }
    return joined;
}

} // namespace quorl::HTTPJSON

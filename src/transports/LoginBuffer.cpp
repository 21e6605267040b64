#include "transports/LoginBuffer.h"

#include "base/Text.h"
#include "transports/HTTPSession.h"

#include <algorithm>
#include <utility>

namespace quorl {

namespace {

constexpr std::string_view scheme = "https://";
constexpr std::size_t shownCharacters = 300;

// `text` begins with a URL; where that ends.
std::size_t lengthOfURL(std::string_view text) {
    // The blanks of ASCII first: what lies between is short, and only there are the others looked for.
    const std::string_view url = text.substr(0, text.find_first_of(" \t\n\v\f\r\""));
    std::size_t length = url.size();
    Text::forEachCharacter(url, [&](std::string_view character, Text::CharacterClass kind) {
        if (kind == Text::CharacterClass::whiteSpace)
            length = std::min(length, static_cast<std::size_t>(character.data() - url.data()));
    });
    return length;
}

} // namespace

void LoginBuffer::append(std::string_view data, Links links) {
    if (data.empty() || !Text::isUTF8(data))
        return;
    std::string soFar;
    {
        const MutexLock guard(lock);
        text += data;
        if (links == Links::leave || opened)
            return;
        soFar = text;
    }
    const std::size_t start = soFar.find(scheme);
    if (start == std::string::npos)
        return;
    const std::string url = soFar.substr(start, lengthOfURL(std::string_view(soFar).substr(start)));
    if (HTTPSession::isURL(url) && isFirstToOpen())
        open(url);
}

bool LoginBuffer::isFirstToOpen() {
    const MutexLock guard(lock);
    return !std::exchange(opened, true);
}

std::string LoginBuffer::redacted() const {
    std::string output;
    {
        const MutexLock guard(lock);
        output = text;
    }
    std::string shown;
    for (std::string_view rest = output; !rest.empty();) {
        const std::size_t start = std::min(rest.find(scheme), rest.size());
        shown += rest.substr(0, start);
        rest.remove_prefix(start);
        rest.remove_prefix(rest.empty() ? 0 : lengthOfURL(rest));
    }
    return std::string(Text::firstCharacters(Text::trimmed(shown), shownCharacters));
}

} // namespace quorl

#include "decision/HostedNuvel.h"

#include "base/Text.h"
#include "domain/ServiceHosts.h"

#include <optional>

namespace quorl::Veritor {

namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view schemeCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.";

// The host name of an absolute URL (RFC 3986, section 3); nothing for a text that is none or that holds an
// IPv6 address in the name's place.
std::optional<std::string_view> findHost(std::string_view url) {
    const std::size_t schemeEnd = url.find("://");
    if (schemeEnd == 0 || schemeEnd == std::string_view::npos)
        return std::nullopt;
    // A "://" behind a path belongs to that path.
    if (url.substr(0, schemeEnd).find_first_not_of(schemeCharacters) != std::string_view::npos)
        return std::nullopt;
    std::string_view host = url.substr(schemeEnd + 3);
    host = host.substr(0, host.find_first_of("/?#"));
    if (const std::size_t at = host.rfind('@'); at != std::string_view::npos)
        host.remove_prefix(at + 1);
    if (const std::size_t colon = host.find(':'); colon != std::string_view::npos) {
        const std::string_view port = host.substr(colon + 1);
        host = host.substr(0, colon);
        if (port.find_first_not_of(digits) != std::string_view::npos)
            return std::nullopt;
    }
    return host.empty() ? std::nullopt : std::optional(host);
}

} // namespace

bool isHostedNuvel(std::string_view endpoint) {
    const std::string_view trimmed = Text::trimmed(endpoint);
    if (trimmed.empty())
        return false;
    const bool hasScheme = trimmed.find("://") != std::string_view::npos;
    const std::string url = hasScheme ? std::string(trimmed) : "https://" + std::string(trimmed);
    const std::string host = Text::lowercased(findHost(url).value_or(trimmed));
    return host == ServiceHosts::nuvelAPIHost || host == ServiceHosts::nuvelDomain;
}

std::string hostedKeyMessage() {
    return std::string(ServiceHosts::nuvelAPIHost) +
           " is Nuvel Studio’s hosted API, so it requires a key. In Models, paste an nvk_live_ key and click "
           "Save credentials. For the open-source model, run nuvel-serve and set the base URL to "
           "http://127.0.0.1:8000.";
}

} // namespace quorl::Veritor

#include "decision/HostName.h"

namespace quorl {

namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view schemeCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.";

} // namespace

std::optional<std::string_view> findHostName(std::string_view url) {
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

} // namespace quorl

#include "decision/HostedNuvel.h"

#include "base/Text.h"
#include "decision/HostName.h"
#include "domain/ServiceHosts.h"

namespace quorl::Veritor {

bool isHostedNuvel(std::string_view endpoint) {
    const std::string_view trimmed = Text::trimmed(endpoint);
    if (trimmed.empty())
        return false;
    const bool hasScheme = trimmed.find("://") != std::string_view::npos;
    const std::string url = hasScheme ? std::string(trimmed) : "https://" + std::string(trimmed);
    const std::string host = Text::lowercased(findHostName(url).value_or(trimmed));
    return host == ServiceHosts::nuvelAPIHost || host == ServiceHosts::nuvelDomain;
}

std::string hostedKeyMessage() {
    return std::string(ServiceHosts::nuvelAPIHost) +
           " is Nuvel Studio’s hosted API, so it requires a key. In Models, paste an nvk_live_ key and click "
           "Save credentials. For the open-source model, run nuvel-serve and set the base URL to "
           "http://127.0.0.1:8000.";
}

} // namespace quorl::Veritor

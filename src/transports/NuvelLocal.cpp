#include "transports/NuvelLocal.h"

#include "base/Text.h"

namespace quorl::NuvelLocal {

bool usesHTTP(const ModelProfile& model) {
    const std::string endpoint = Text::lowercased(Text::trimmed(model.endpoint));
    return endpoint.starts_with("http://") || endpoint.starts_with("https://");
}

} // namespace quorl::NuvelLocal

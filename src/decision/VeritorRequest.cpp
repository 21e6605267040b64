#include "decision/VeritorRequest.h"

#include "base/Json.h"
#include "base/Text.h"
#include "decision/Veritor.h"
#include "domain/ServiceHosts.h"
#include "store/StoreError.h"

#include <algorithm>
#include <utility>

namespace quorl::Veritor {

namespace {

constexpr std::string_view schemeEnd = "://";

std::string_view hostedBase(ProviderKind provider) {
    if (provider == ProviderKind::zun)
        return ServiceHosts::decisionAPI;
    return provider == ProviderKind::openAIDecisions ? ServiceHosts::openAIAPI : std::string_view();
}

// Blanks and control characters stand in no URL, and one without a host leads nowhere. The rest is for the
// client to judge.
bool isURL(std::string_view text) {
    const auto isForbidden = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte <= 0x20 || byte == 0x7f;
    };
    const std::string_view authority = text.substr(text.find(schemeEnd) + schemeEnd.size());
    return !authority.starts_with('/') && std::none_of(text.begin(), text.end(), isForbidden);
}

} // namespace

std::optional<std::string> url(std::string_view endpoint, ProviderKind provider) {
    std::string_view base = Text::trimmed(endpoint);
    if (base.empty())
        base = hostedBase(provider);
    if (base.empty())
        return std::nullopt;

    std::string url(Text::withoutTrailing(base, '/'));
    if (url.find(schemeEnd) == std::string::npos)
        url.insert(0, "https://");
    const std::string path = provider == ProviderKind::openAIDecisions ? "/decisions" : "/veritor";
    if (!url.ends_with(path))
        url += url.ends_with("/v1") ? path : "/v1" + path;
    return isURL(url) ? std::optional(std::move(url)) : std::nullopt;
}

std::string requestBody(std::string_view state, std::string_view modelIdentifier,
                        const std::vector<DecisionQuestion>& questions) {
    if (auto problem = validate(state, questions))
        throw StoreError(*std::move(problem));
    Json::Value body{{"state", state}, {"questions", wireMap(questions)}};
    if (const auto model = Text::trimmed(modelIdentifier); !model.empty())
        body["model"] = model;
    auto json = Json::write(body);
    if (!json)
        throw StoreError("Couldn't encode the request.");
    return *std::move(json);
}

} // namespace quorl::Veritor

#include "store/ModelSecret.h"

#include "base/Json.h"
#include "base/Text.h"

namespace quorl {

namespace {

bool isFilled(const std::string& field) {
    return !Text::isBlank(field);
}

} // namespace

bool ModelSecret::satisfies(ProviderKind kind) const {
    switch (kind) {
    case ProviderKind::zun:
    case ProviderKind::nuvel:
    case ProviderKind::openAIDecisions:
    case ProviderKind::veritor:
    case ProviderKind::openAI:
    case ProviderKind::anthropic:
    case ProviderKind::openAICompatible:
        return isFilled(apiKey);
    case ProviderKind::amazonBedrock:
        return isFilled(awsAccessKey) && isFilled(awsSecretKey);
    case ProviderKind::claudeCode:
    case ProviderKind::codex:
        return true;
    }
    __builtin_unreachable();
}

std::optional<std::string> ModelSecret::json() const {
    return Json::write({{"apiKey", apiKey},
                        {"awsAccessKey", awsAccessKey},
                        {"awsSecretKey", awsSecretKey},
                        {"awsSessionToken", awsSessionToken}});
}

std::optional<ModelSecret> ModelSecret::fromJSON(std::string_view json) {
    const auto object = Json::parseObject(json);
    if (!object)
        return std::nullopt;
    const auto* key = Json::text(Json::find(*object, "apiKey"));
    const auto* accessKey = Json::text(Json::find(*object, "awsAccessKey"));
    const auto* secretKey = Json::text(Json::find(*object, "awsSecretKey"));
    const auto* sessionToken = Json::text(Json::find(*object, "awsSessionToken"));
    if (!key || !accessKey || !secretKey || !sessionToken)
        return std::nullopt;
    return ModelSecret{*key, *accessKey, *secretKey, *sessionToken};
}

} // namespace quorl

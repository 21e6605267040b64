#include "store/Seed.h"

#include "domain/ServiceHosts.h"

#include <string>
#include <string_view>

namespace quorl::Seed {

namespace {

constexpr std::int64_t presetMaxOutputTokens = 1024;

// Prices are US dollars per million tokens.
struct Preset {
    std::string_view name;
    std::string_view modelIdentifier;
    std::string_view endpoint;
    double inputPrice;
    double outputPrice;
    bool enabled;
    std::string notes;
};

// What a new model of the kind starts with.
Preset presetOf(ProviderKind kind) {
    const auto identifier = defaultModelIdentifier(kind);
    switch (kind) {
    case ProviderKind::zun:
        return {"Zun",
                identifier,
                ServiceHosts::decisionAPI,
                0.042,
                0,
                true,
                "Kelvane Zun. POST /v1/veritor with a state and typed questions: choice, score, or noul. "
                "About $0.042 per million input tokens. Output tokens are not billed."};
    case ProviderKind::nuvel:
        return {
            "Nuvel",
            identifier,
            "",
            0,
            0,
            true,
            "Local Nuvel, the same checkpoint Ombrel loads through nuvel-rs. No API key. Leave the base URL "
            "empty. Put a URL here only for an HTTP server, such as nuvel-serve or https://" +
                std::string(ServiceHosts::nuvelAPIHost) + "."};
    case ProviderKind::openAIDecisions:
        return {"OpenAI Decisions",
                identifier,
                ServiceHosts::openAIAPI,
                0,
                0,
                false,
                "OpenAI Decisions is a limited preview. Quorl posts the same Veritor body to /v1/decisions. "
                "A standard key often returns 403 until the API is enabled on the account."};
    case ProviderKind::veritor:
        return {"Custom Veritor",
                identifier,
                "",
                0,
                0,
                false,
                "Any Veritor endpoint, including a self-hosted Nuvel. Set the base URL. "
                "The model id and API key are optional."};
    case ProviderKind::openAI:
        return {"GPT-4.1",
                identifier,
                ServiceHosts::openAIAPI,
                2,
                8,
                false,
                "OpenAI Chat Completions. Prices are editable estimates, applied when the response includes "
                "token counts."};
    case ProviderKind::anthropic:
        return {"Claude Sonnet",
                identifier,
                ServiceHosts::anthropicAPI,
                3,
                15,
                false,
                "Anthropic Messages API. Prices are editable estimates."};
    case ProviderKind::amazonBedrock:
        return {
            "Nova Pro",
            identifier,
            "us-east-1",
            0.8,
            3.2,
            false,
            "Amazon Bedrock Converse. Put the region in the endpoint field. Prices are editable estimates."};
    case ProviderKind::openAICompatible:
        return {"Compatible model",
                identifier,
                "",
                0,
                0,
                false,
                "Any server that accepts the OpenAI chat completions format. Set the base URL and model id."};
    case ProviderKind::claudeCode:
        return {
            "Claude Code",
            identifier,
            "",
            0,
            0,
            false,
            "Runs claude --print on this Mac with tools disabled and stores the assistant text from the JSON "
            "result. Uses the Claude Code login on this Mac. If it asks you to run /login, use Log in on "
            "this page. User hooks still run. Cost is kept when the CLI reports it."};
    case ProviderKind::codex:
        return {"Codex",
                identifier,
                "",
                0,
                0,
                false,
                "Runs codex exec on this Mac, read-only and ephemeral, and stores the assistant message. "
                "Uses the Codex login already on this machine. Leave the model id blank to use the CLI "
                "default."};
    }
    __builtin_unreachable();
}

UUID fixed(std::string_view text) {
    return *UUID::parse(text);
}

UUID retired(char lastDigit) {
    return fixed(std::string("A1000000-0000-4000-8000-00000000000") + lastDigit);
}

} // namespace

UUID zun() {
    return fixed("77777777-7777-4777-8777-777777777777");
}

UUID nuvel() {
    return fixed("88888888-8888-4888-8888-888888888888");
}

UUID openAIDecisions() {
    return fixed("99999999-9999-4999-8999-999999999999");
}

UUID veritor() {
    return fixed("AAAAAAAA-AAAA-4AAA-8AAA-AAAAAAAAAAAA");
}

UUID openAI() {
    return fixed("11111111-1111-4111-8111-111111111111");
}

UUID anthropic() {
    return fixed("22222222-2222-4222-8222-222222222222");
}

UUID bedrock() {
    return fixed("33333333-3333-4333-8333-333333333333");
}

UUID claudeCode() {
    return fixed("55555555-5555-4555-8555-555555555555");
}

UUID codex() {
    return fixed("66666666-6666-4666-8666-666666666666");
}

std::array<UUID, 9> retiredCategories() {
    // Children stand before their parents (reasoning, factual, coding, writing), which can go only when they
    // are childless.
    return {retired('2'), retired('3'), retired('5'), retired('7'), retired('9'),
            retired('1'), retired('4'), retired('6'), retired('8')};
}

ModelProfile preset(ProviderKind kind, std::int64_t sortIndex, const UUID& id) {
    auto preset = presetOf(kind);
    ModelProfile model;
    model.id = id;
    model.name = preset.name;
    model.provider = kind;
    model.modelIdentifier = preset.modelIdentifier;
    model.endpoint = preset.endpoint;
    model.inputPricePerMillion = preset.inputPrice;
    model.outputPricePerMillion = preset.outputPrice;
    model.maxOutputTokens = presetMaxOutputTokens;
    model.enabled = preset.enabled;
    model.notes = std::move(preset.notes);
    model.sortIndex = sortIndex;
    return model;
}

std::vector<ModelProfile> models() {
    return {
        preset(ProviderKind::zun, 0, zun()),
        preset(ProviderKind::nuvel, 1, nuvel()),
        preset(ProviderKind::openAIDecisions, 2, openAIDecisions()),
        preset(ProviderKind::veritor, 3, veritor()),
        preset(ProviderKind::openAI, 4, openAI()),
        preset(ProviderKind::anthropic, 5, anthropic()),
        preset(ProviderKind::amazonBedrock, 6, bedrock()),
        preset(ProviderKind::claudeCode, 7, claudeCode()),
        preset(ProviderKind::codex, 8, codex()),
    };
}

std::vector<ModelProfile> decisionPresets() {
    auto presets = models();
    presets.resize(4);
    return presets;
}

} // namespace quorl::Seed

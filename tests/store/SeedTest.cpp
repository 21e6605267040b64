#include "store/Seed.h"

#include "domain/ServiceHosts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace quorl::test {

namespace {

using testing::ElementsAre;

struct ExpectedPreset {
    ProviderKind kind;
    const char* name;
    const char* modelIdentifier;
    std::string endpoint;
    double inputPrice;
    double outputPrice;
    bool enabled;
    std::string notes;
};

std::vector<ExpectedPreset> expectedPresets() {
    const std::string decisionAPI(ServiceHosts::decisionAPI);
    const std::string openAI(ServiceHosts::openAIAPI);
    const std::string anthropic(ServiceHosts::anthropicAPI);
    return {
        {ProviderKind::zun, "Zun", "zun-latest", decisionAPI, 0.042, 0, true,
         "Kelvane Zun. POST /v1/veritor with a state and typed questions: choice, score, or noul. About "
         "$0.042 per "
         "million input tokens. Output tokens are not billed."},
        {ProviderKind::nuvel, "Nuvel", "d41ce07/nuvel-mlx", "", 0, 0, true,
         "Local Nuvel, the same checkpoint Ombrel loads through nuvel-rs. No API key. Leave the base URL "
         "empty. Put a "
         "URL here only for an HTTP server, such as nuvel-serve or https://" +
             std::string(ServiceHosts::nuvelAPIHost) + "."},
        {ProviderKind::openAIDecisions, "OpenAI Decisions", "gpt-5.6-luna", openAI, 0, 0, false,
         "OpenAI Decisions is a limited preview. Quorl posts the same Veritor body to /v1/decisions. A "
         "standard key "
         "often returns 403 until the API is enabled on the account."},
        {ProviderKind::veritor, "Custom Veritor", "", "", 0, 0, false,
         "Any Veritor endpoint, including a self-hosted Nuvel. Set the base URL. The model id and API key "
         "are "
         "optional."},
        {ProviderKind::openAI, "GPT-4.1", "gpt-4.1", openAI, 2, 8, false,
         "OpenAI Chat Completions. Prices are editable estimates, applied when the response includes token "
         "counts."},
        {ProviderKind::anthropic, "Claude Sonnet", "claude-sonnet-4-5", anthropic, 3, 15, false,
         "Anthropic Messages API. Prices are editable estimates."},
        {ProviderKind::amazonBedrock, "Nova Pro", "amazon.nova-pro-v1:0", "us-east-1", 0.8, 3.2, false,
         "Amazon Bedrock Converse. Put the region in the endpoint field. Prices are editable estimates."},
        {ProviderKind::openAICompatible, "Compatible model", "", "", 0, 0, false,
         "Any server that accepts the OpenAI chat completions format. Set the base URL and model id."},
        {ProviderKind::claudeCode, "Claude Code", "sonnet", "", 0, 0, false,
         "Runs claude --print on this Mac with tools disabled and stores the assistant text from the JSON "
         "result. "
         "Uses the Claude Code login on this Mac. If it asks you to run /login, use Log in on this page. "
         "User hooks "
         "still run. Cost is kept when the CLI reports it."},
        {ProviderKind::codex, "Codex", "", "", 0, 0, false,
         "Runs codex exec on this Mac, read-only and ephemeral, and stores the assistant message. Uses the "
         "Codex "
         "login already on this machine. Leave the model id blank to use the CLI default."},
    };
}

} // namespace

TEST(Seed, APresetHasEveryFieldOfItsKind) {
    const auto expected = expectedPresets();
    ASSERT_EQ(expected.size(), allProviderKinds.size());
    for (const ExpectedPreset& preset : expected) {
        const UUID id = UUID::random();

        const ModelProfile model = Seed::preset(preset.kind, 41, id);

        EXPECT_EQ(model.id, id);
        EXPECT_EQ(model.name, preset.name);
        EXPECT_EQ(model.provider, preset.kind);
        EXPECT_EQ(model.modelIdentifier, preset.modelIdentifier);
        EXPECT_EQ(model.endpoint, preset.endpoint);
        EXPECT_EQ(model.executablePath, "");
        EXPECT_EQ(model.inputPricePerMillion, preset.inputPrice);
        EXPECT_EQ(model.outputPricePerMillion, preset.outputPrice);
        EXPECT_EQ(model.maxOutputTokens, 1024);
        EXPECT_EQ(model.enabled, preset.enabled);
        EXPECT_EQ(model.notes, preset.notes);
        EXPECT_EQ(model.sortIndex, 41);
    }
}

TEST(Seed, TheCatalogueHasNineModelsInOrderWithTheirFixedIds) {
    const std::vector<std::pair<ProviderKind, std::string>> expected = {
        {ProviderKind::zun, "77777777-7777-4777-8777-777777777777"},
        {ProviderKind::nuvel, "88888888-8888-4888-8888-888888888888"},
        {ProviderKind::openAIDecisions, "99999999-9999-4999-8999-999999999999"},
        {ProviderKind::veritor, "AAAAAAAA-AAAA-4AAA-8AAA-AAAAAAAAAAAA"},
        {ProviderKind::openAI, "11111111-1111-4111-8111-111111111111"},
        {ProviderKind::anthropic, "22222222-2222-4222-8222-222222222222"},
        {ProviderKind::amazonBedrock, "33333333-3333-4333-8333-333333333333"},
        {ProviderKind::claudeCode, "55555555-5555-4555-8555-555555555555"},
        {ProviderKind::codex, "66666666-6666-4666-8666-666666666666"},
    };

    const auto models = Seed::models();

    ASSERT_EQ(models.size(), expected.size());
    for (std::size_t i = 0; i < models.size(); ++i) {
        EXPECT_EQ(models[i].id.text(), expected[i].second);
        EXPECT_EQ(models[i], Seed::preset(expected[i].first, static_cast<std::int64_t>(i), models[i].id));
    }
}

TEST(Seed, TheIdsHaveNames) {
    EXPECT_THAT(Seed::models(), ElementsAre(testing::Field(&ModelProfile::id, Seed::zun()),
                                            testing::Field(&ModelProfile::id, Seed::nuvel()),
                                            testing::Field(&ModelProfile::id, Seed::openAIDecisions()),
                                            testing::Field(&ModelProfile::id, Seed::veritor()),
                                            testing::Field(&ModelProfile::id, Seed::openAI()),
                                            testing::Field(&ModelProfile::id, Seed::anthropic()),
                                            testing::Field(&ModelProfile::id, Seed::bedrock()),
                                            testing::Field(&ModelProfile::id, Seed::claudeCode()),
                                            testing::Field(&ModelProfile::id, Seed::codex())));
}

TEST(Seed, TheDecisionPresetsAreTheFirstFourModels) {
    const auto models = Seed::models();

    EXPECT_EQ(Seed::decisionPresets(), std::vector(models.begin(), models.begin() + 4));
}

TEST(Seed, OnlyZunAndNuvelAreEnabledAtFirst) {
    for (const ModelProfile& model : Seed::models())
        EXPECT_EQ(model.enabled, model.id == Seed::zun() || model.id == Seed::nuvel()) << model.name;
}

TEST(Seed, TheRetiredCategoriesAreInTheirOrder) {
    std::string lastDigits;
    for (const UUID& id : Seed::retiredCategories()) {
        EXPECT_EQ(id.text().substr(0, 35), "A1000000-0000-4000-8000-00000000000");
        lastDigits += id.text().back();
    }

    EXPECT_EQ(lastDigits, "235791468");
}

} // namespace quorl::test

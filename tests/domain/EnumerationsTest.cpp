#include "domain/Enumerations.h"

#include "domain/ServiceHosts.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorl::test {
namespace {

struct KindRow {
    ProviderKind kind;
    std::string_view raw;
    std::string_view title;
    std::string_view transportTitle;
    QuorlKind family;
    std::string_view modelIdentifier;
};

const std::vector<KindRow> kindRows{
    {ProviderKind::zun, "zun", "Zun", "Veritor", QuorlKind::decision, "zun-latest"},
    {ProviderKind::nuvel, "nuvel", "Nuvel", "Veritor", QuorlKind::decision, "d41ce07/nuvel-mlx"},
    {ProviderKind::openAIDecisions, "openAIDecisions", "OpenAI Decisions", "Decisions API",
     QuorlKind::decision, "gpt-5.6-luna"},
    {ProviderKind::veritor, "veritor", "Veritor", "Veritor", QuorlKind::decision, ""},
    {ProviderKind::openAI, "openAI", "OpenAI", "Direct API", QuorlKind::generation, "gpt-4.1"},
    {ProviderKind::anthropic, "anthropic", "Anthropic", "Direct API", QuorlKind::generation,
     "claude-sonnet-4-5"},
    {ProviderKind::amazonBedrock, "amazonBedrock", "Amazon Bedrock", "Direct API", QuorlKind::generation,
     "amazon.nova-pro-v1:0"},
    {ProviderKind::openAICompatible, "openAICompatible", "OpenAI-compatible", "Direct API",
     QuorlKind::generation, ""},
    {ProviderKind::claudeCode, "claudeCode", "Claude Code", "Local CLI", QuorlKind::generation, "sonnet"},
    {ProviderKind::codex, "codex", "Codex", "Local CLI", QuorlKind::generation, ""},
};

TEST(ProviderKind, EachCaseHasItsWords) {
    for (const auto& row : kindRows) {
        EXPECT_EQ(rawString(row.kind), row.raw);
        EXPECT_EQ(title(row.kind), row.title);
        EXPECT_EQ(transportTitle(row.kind), row.transportTitle) << row.raw;
        EXPECT_EQ(family(row.kind), row.family) << row.raw;
        EXPECT_EQ(defaultModelIdentifier(row.kind), row.modelIdentifier) << row.raw;
        EXPECT_EQ(providerKindFrom(row.raw), row.kind);
    }
}

TEST(ProviderKind, AllCasesStandInTheOrderOfLists) {
    ASSERT_EQ(allProviderKinds.size(), kindRows.size());
    for (std::size_t place = 0; place < kindRows.size(); ++place)
        EXPECT_EQ(allProviderKinds[place], kindRows[place].kind);
}

TEST(Enumerations, AreReadFromTheirRawStrings) {
    for (const auto kind : {QuorlKind::decision, QuorlKind::generation})
        EXPECT_EQ(quorlKindFrom(rawString(kind)), kind);
    for (const auto mode : {ScoringMode::binary, ScoringMode::scale})
        EXPECT_EQ(scoringModeFrom(rawString(mode)), mode);
    for (const auto origin : {RunOrigin::app, RunOrigin::api})
        EXPECT_EQ(runOriginFrom(rawString(origin)), origin);
    for (const auto status : {BatchStatus::running, BatchStatus::done})
        EXPECT_EQ(batchStatusFrom(rawString(status)), status);
    for (const auto state : {AnswerState::running, AnswerState::done, AnswerState::failed})
        EXPECT_EQ(answerStateFrom(rawString(state)), state);
}

TEST(Enumerations, HaveTheirRawStrings) {
    EXPECT_EQ(rawString(QuorlKind::decision), "decision");
    EXPECT_EQ(rawString(QuorlKind::generation), "generation");
    EXPECT_EQ(rawString(ScoringMode::binary), "binary");
    EXPECT_EQ(rawString(ScoringMode::scale), "scale");
    EXPECT_EQ(rawString(RunOrigin::app), "app");
    EXPECT_EQ(rawString(RunOrigin::api), "api");
    EXPECT_EQ(rawString(BatchStatus::running), "running");
    EXPECT_EQ(rawString(BatchStatus::done), "done");
    EXPECT_EQ(rawString(AnswerState::running), "running");
    EXPECT_EQ(rawString(AnswerState::done), "done");
    EXPECT_EQ(rawString(AnswerState::failed), "failed");
}

TEST(Enumerations, AreShownAsTheirTitles) {
    EXPECT_EQ(title(QuorlKind::decision), "Decision");
    EXPECT_EQ(title(QuorlKind::generation), "Generation");
    EXPECT_EQ(title(ScoringMode::binary), "Yes / No");
    EXPECT_EQ(title(ScoringMode::scale), "Rating");
}

TEST(Enumerations, AnUnknownStringIsNoneOfThem) {
    for (const std::string_view raw : {"", "Decision", "openai", " zun", "running "}) {
        EXPECT_EQ(providerKindFrom(raw), std::nullopt);
        EXPECT_EQ(quorlKindFrom(raw), std::nullopt);
        EXPECT_EQ(scoringModeFrom(raw), std::nullopt);
        EXPECT_EQ(runOriginFrom(raw), std::nullopt);
        EXPECT_EQ(batchStatusFrom(raw), std::nullopt);
        EXPECT_EQ(answerStateFrom(raw), std::nullopt);
    }
}

TEST(ServiceHosts, AreTheHostedServicesUnlessConfiguredOtherwise) {
    EXPECT_EQ(ServiceHosts::decisionAPI, "https://api.kelvane.example");
    EXPECT_EQ(ServiceHosts::openAIAPI, "https://api.openai.com/v1");
    EXPECT_EQ(ServiceHosts::anthropicAPI, "https://api.anthropic.com");
    EXPECT_EQ(ServiceHosts::nuvelAPIHost, "api.nuvel.example");
    EXPECT_EQ(ServiceHosts::formerNuvelURL, "https://serve.nuvel.example");
}

} // namespace
} // namespace quorl::test

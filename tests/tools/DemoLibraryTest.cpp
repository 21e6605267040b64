#include "decision/Veritor.h"
#include "platform/linux/FileKeychain.h"
#include "platform/linux/QSettingsDefaults.h"
#include "sample-endpoint/SampleAnswers.h"
#include "sample-endpoint/SampleDecisions.h"
#include "store/ModelSecret.h"
#include "store/QuorlStore.h"
#include "support/TempFolder.h"
#include "tools/Process.h"

#include <sysexits.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace quorl::test {
namespace {

using std::filesystem::perms;

constexpr auto url = "http://127.0.0.1:4242/v1";

class DemoLibrary : public testing::Test {
protected:
    int run(std::vector<std::string> words) {
        words.insert(words.begin(), DEMO_LIBRARY_PROGRAM);
        Process program(std::move(words), {"XDG_DATA_HOME=" + data().string(),
                                           "XDG_CONFIG_HOME=" + config().string(), "HOME=/nowhere"});
        return program.wait();
    }

    std::vector<ModelProfile> models() {
        return QuorlStore((data() / "com.quorltest.app/quorl.sqlite").string()).loadModels();
    }

    std::filesystem::path data() const { return folder.path() / "data"; }
    std::filesystem::path config() const { return folder.path() / "config"; }
    std::filesystem::path ours() const { return config() / "com.quorltest.app"; }

    TempFolder folder;
};

TEST_F(DemoLibrary, HoldsTheModelsOfTheEndpointForBothKinds) {
    ASSERT_EQ(run({"--endpoint", url}), 0);

    using Entry = std::pair<ProviderKind, std::string>;
    std::vector<Entry> entries;
    for (const auto& model : models()) {
        EXPECT_THAT(model.name, testing::StartsWith("Sample · "));
        EXPECT_EQ(model.endpoint, url);
        EXPECT_TRUE(model.enabled);
        EXPECT_EQ(model.sortIndex, static_cast<std::int64_t>(entries.size()));
        entries.emplace_back(model.provider, model.modelIdentifier);
    }
    std::vector<Entry> expected;
    for (const auto id : sample::SampleAnswers::demoModels)
        expected.emplace_back(ProviderKind::openAICompatible, id);
    expected.emplace_back(ProviderKind::anthropic, sample::SampleAnswers::brief);
    for (const auto id : sample::SampleDecisions::demoModels)
        expected.emplace_back(ProviderKind::veritor, id);
    EXPECT_EQ(entries, expected);
}

TEST_F(DemoLibrary, OneModelHasNoKnownPrice) {
    ASSERT_EQ(run({"--endpoint", url}), 0);

    const auto found = models();
    EXPECT_EQ(std::ranges::count(found, 0, &ModelProfile::inputPricePerMillion), 1);
    EXPECT_EQ(std::ranges::count(found, 0, &ModelProfile::outputPricePerMillion), 1);
}

TEST_F(DemoLibrary, HoldsAKeyForEachModelThatOnlyItsUserCanRead) {
    ASSERT_EQ(run({"--endpoint", url}), 0);

    FileKeychain keychain(config());
    for (const auto& model : models()) {
        const auto item = keychain.copy("com.quorltest.app", model.id.text());
        ASSERT_TRUE(item);
        const auto secret = ModelSecret::fromJSON(*item);
        ASSERT_TRUE(secret);
        EXPECT_TRUE(secret->satisfies(model.provider));
        const auto file = ours() / "secrets" / (model.id.text() + ".json");
        EXPECT_EQ(status(file).permissions(), perms::owner_read | perms::owner_write);
    }
    EXPECT_EQ(status(ours() / "secrets").permissions(), perms::owner_all);
}

TEST_F(DemoLibrary, OpensOnAQuestionToFourModelsWithADecisionBehindIt) {
    ASSERT_EQ(run({"--endpoint", url}), 0);

    const QSettingsDefaults defaults(ours() / "defaults.ini");
    std::vector<std::string> ids;
    for (const auto& model : models()) {
        if (model.provider != ProviderKind::anthropic)
            ids.push_back(model.id.text());
    }
    EXPECT_EQ(ids.size(), 6u);
    EXPECT_EQ(defaults.string("draft.kind"), "generation");
    EXPECT_EQ(defaults.string("draft.prompt"),
              "Our small team answers the same customer questions again and again.\n"
              "Which should we build first: a searchable help page or a set of saved replies, and why?");
    EXPECT_EQ(defaults.string("draft.system"), "Answer directly. Do not use tools.");
    EXPECT_EQ(defaults.strings("draft.models"), ids);
    EXPECT_TRUE(defaults.boolean("seed.decisions.v1"));
    const auto questions = Veritor::restore(defaults.string("draft.questions").value_or(""));
    EXPECT_EQ(questions.size(), 2u);
    EXPECT_EQ(Veritor::validate(*defaults.string("draft.prompt"), questions), std::nullopt);
}

TEST_F(DemoLibrary, ASecondTimeMovesTheModelsToTheNewEndpoint) {
    ASSERT_EQ(run({"--endpoint", "http://127.0.0.1:1/v1"}), 0);
    const auto before = models();

    ASSERT_EQ(run({"--endpoint", url}), 0);

    const auto after = models();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t place = 0; place < after.size(); ++place) {
        EXPECT_EQ(after[place].id, before[place].id);
        EXPECT_EQ(after[place].endpoint, url);
    }
}

TEST_F(DemoLibrary, KeepsAwayFromTheUsersOwnLibrary) {
    for (const std::vector<std::string>& environment : {
             std::vector<std::string>{"HOME=" + folder.path().string()},
             {"HOME=" + folder.path().string(), "XDG_DATA_HOME=" + data().string()},
             {"HOME=" + folder.path().string(), "XDG_DATA_HOME=" + data().string(),
              "XDG_CONFIG_HOME=relative"},
         }) {
        Process program({DEMO_LIBRARY_PROGRAM, "--endpoint", url}, environment);
        EXPECT_EQ(program.wait(), EX_USAGE);
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(DemoLibrary, RefusesArgumentsThatItDoesNotKnow) {
    EXPECT_EQ(run({}), EX_USAGE);
    EXPECT_EQ(run({"--endpoint"}), EX_USAGE);
    EXPECT_EQ(run({"--endpoint", ""}), EX_USAGE);
    EXPECT_EQ(run({"--what", url}), EX_USAGE);
}

TEST_F(DemoLibrary, ALibraryThatCannotBeMadeIsAnError) {
    ASSERT_TRUE(std::filesystem::create_directories(data() / "com.quorltest.app/quorl.sqlite"));

    EXPECT_EQ(run({"--endpoint", url}), EX_CANTCREAT);
}

} // namespace
} // namespace quorl::test

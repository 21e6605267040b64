#include "app/Harness.h"
#include "store/Seed.h"
#include "support/ToolStage.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The tools are stand-ins in a home and on a PATH of the test's own.
class ToolsTest : public testing::Test {
protected:
    AppModel& model() { return harness.model(); }

    static ModelProfile makeTool(ProviderKind provider, const std::string& path = "") {
        ModelProfile profile = makeModel(provider);
        profile.endpoint = "";
        profile.executablePath = path;
        profile.enabled = false;
        return profile;
    }

    ModelProfile startWith(const ModelProfile& profile) {
        harness.file().saveModel(profile);
        harness.start();
        EXPECT_EQ(harness.file().loadModels(), model().library.models());
        return *model().library.findModel(profile.id);
    }

    Readiness readinessOf(ModelProfile profile) {
        profile.enabled = true;
        return model().readiness(profile);
    }

    // A stand-in for the tool whose login status is these words.
    std::string claudeSaying(const std::string& status) {
        return stage.tool("case \"$2\" in status) echo '" + status + "' ;; *) exit 0 ;; esac", "claude");
    }

    ToolStage stage;
    Harness harness;
};

const Readiness isReady{Readiness::State::ready, ""};

Readiness isBlocked(const std::string& message) {
    return {Readiness::State::blocked, message};
}

TEST_F(ToolsTest, AFoundClaudeCodeIsAttachedAndEnabled) {
    const std::string path = stage.tool("", "claude");

    const ModelProfile attached = startWith(makeTool(ProviderKind::claudeCode));

    EXPECT_EQ(attached.executablePath, path);
    EXPECT_TRUE(attached.enabled);
}

TEST_F(ToolsTest, AFoundCodexIsAttachedAndStaysAsItWas) {
    const std::string path = stage.tool("", "codex");

    const ModelProfile attached = startWith(makeTool(ProviderKind::codex));

    EXPECT_EQ(attached.executablePath, path);
    EXPECT_FALSE(attached.enabled);
}

TEST_F(ToolsTest, AStalePathIsReplacedAndEnablesNothing) {
    const std::string path = stage.tool("", "claude");

    const ModelProfile attached = startWith(makeTool(ProviderKind::claudeCode, "/nowhere/claude"));

    EXPECT_EQ(attached.executablePath, path);
    EXPECT_FALSE(attached.enabled);
}

TEST_F(ToolsTest, AValidPathStaysAndADisabledModelStaysDisabled) {
    const std::string own = stage.tool("", "own-claude");
    static_cast<void>(stage.tool("", "claude"));

    const ModelProfile kept = startWith(makeTool(ProviderKind::claudeCode, own));

    EXPECT_EQ(kept.executablePath, own);
    EXPECT_FALSE(kept.enabled);
}

TEST_F(ToolsTest, LocalNuvelIsAttachedAndNuvelOverHTTPIsNot) {
    const std::string path = stage.tool("", "nuvel-rs");
    ModelProfile overHTTP = makeTool(ProviderKind::nuvel);
    overHTTP.endpoint = " HTTP://localhost:8000";
    harness.file().saveModel(overHTTP);

    const ModelProfile local = startWith(makeTool(ProviderKind::nuvel));

    EXPECT_EQ(local.executablePath, path);
    EXPECT_FALSE(local.enabled);
    EXPECT_EQ(model().library.findModel(overHTTP.id)->executablePath, "");
}

TEST_F(ToolsTest, AnAttachedPathThatCannotBeSavedStaysInMemory) {
    const std::string path = stage.tool("", "claude");
    const ModelProfile profile = makeTool(ProviderKind::claudeCode);
    harness.file().saveModel(profile);
    harness.file().exec("CREATE TRIGGER refuse BEFORE UPDATE ON models BEGIN SELECT RAISE(ABORT, 'no'); END");

    harness.start();

    EXPECT_EQ(model().library.findModel(profile.id)->executablePath, path);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(ToolsTest, AMissingToolBlocksItsModelBeforeItsLogin) {
    startWith(makeModel());
    model().claudeLoggedIn = false;

    EXPECT_EQ(readinessOf(makeTool(ProviderKind::claudeCode)),
              isBlocked("CLI not found. Set the path in Models."));
    EXPECT_EQ(readinessOf(makeTool(ProviderKind::codex)),
              isBlocked("CLI not found. Set the path in Models."));
    EXPECT_EQ(readinessOf(makeTool(ProviderKind::nuvel)), isBlocked("nuvel-rs CLI not found."));
}

TEST_F(ToolsTest, OnlyAKnownLogoutBlocksClaudeCode) {
    static_cast<void>(stage.tool("", "codex"));
    const std::string path = stage.tool("", "claude");
    startWith(makeModel());
    const ModelProfile claude = makeTool(ProviderKind::claudeCode, path);

    EXPECT_EQ(readinessOf(claude), isReady);
    model().claudeLoggedIn = true;
    EXPECT_EQ(readinessOf(claude), isReady);
    model().claudeLoggedIn = false;
    EXPECT_EQ(readinessOf(claude), isBlocked("Not logged in. Use Log in."));
    EXPECT_EQ(readinessOf(makeTool(ProviderKind::codex)), isReady);
}

TEST_F(ToolsTest, AFoundLocalNuvelIsReadyWithoutKeyAndModel) {
    static_cast<void>(stage.tool("", "nuvel-rs"));
    startWith(makeModel());
    ModelProfile nuvel = makeTool(ProviderKind::nuvel);
    nuvel.modelIdentifier = "";

    EXPECT_EQ(readinessOf(nuvel), isReady);
}

TEST_F(ToolsTest, AnAddedToolModelTakesTheToolAndKeepsThePresetsSwitch) {
    const std::string path = stage.tool("", "claude");
    startWith(makeModel());

    model().addModel(ProviderKind::claudeCode);

    EXPECT_EQ(model().library.models().back().executablePath, path);
    EXPECT_FALSE(model().library.models().back().enabled);
    EXPECT_EQ(harness.file().loadModels().back().executablePath, path);
}

TEST_F(ToolsTest, AnAddedNuvelIsNotGivenATool) {
    static_cast<void>(stage.tool("", "nuvel-rs"));
    startWith(makeModel());

    model().addModel(ProviderKind::nuvel);

    EXPECT_EQ(model().library.models().back().executablePath, "");
}

TEST_F(ToolsTest, TheStartAsksTheToolWhetherItIsLoggedIn) {
    for (const auto& [words, expected] :
         {std::pair{R"({ "loggedIn": true })", true}, std::pair{R"({"loggedIn":  false})", false}}) {
        startWith(makeTool(ProviderKind::claudeCode, claudeSaying(words)));
        EXPECT_FALSE(model().claudeLoggedIn->has_value()); // the start does not wait

        EXPECT_TRUE(harness.loop.runUntil([&] { return model().claudeLoggedIn->has_value(); }));

        EXPECT_EQ(*model().claudeLoggedIn, expected);
    }
}

TEST_F(ToolsTest, AStatusThatSaysNothingLeavesWhatIsKnown) {
    const std::string asked = (stage.notes / "asked").string();
    const std::string tool =
        stage.tool("case \"$2\" in status) if [ -e " + asked + " ]; then echo what; else touch " + asked +
                       "; echo '{\"loggedIn\":true}'; fi ;; *) echo broken; exit 1 ;; esac",
                   "claude");
    startWith(makeTool(ProviderKind::claudeCode, tool));
    ASSERT_TRUE(harness.loop.runUntil([&] { return *model().claudeLoggedIn == true; }));

    model().loginClaudeCode(); // which asks once more

    EXPECT_TRUE(
        harness.loop.runUntil([&] { return *model().claudeLoginStatus == "Claude Code is logged in."; }));
    EXPECT_EQ(*model().claudeLoggedIn, true);
}

TEST_F(ToolsTest, ALoginWithoutAModelOrAToolSaysWhatIsMissing) {
    startWith(makeModel());
    model().loginClaudeCode();
    EXPECT_EQ(*model().claudeLoginStatus, "Add Claude Code in Models first.");

    startWith(makeTool(ProviderKind::claudeCode));
    model().loginClaudeCode();
    EXPECT_EQ(*model().claudeLoginStatus, "Couldn't find the Claude Code CLI.");
}

TEST_F(ToolsTest, ALoginEndsWithWhatTheToolKnowsOfItself) {
    // The login itself reports an error, and yet the tool says afterwards that it is logged in.
    const std::string tool = stage.tool(
        "case \"$2\" in status) echo '{\"loggedIn\":true}' ;; *) echo broken; exit 1 ;; esac", "claude");
    startWith(makeTool(ProviderKind::claudeCode, tool));

    model().loginClaudeCode();
    EXPECT_EQ(*model().claudeLoginStatus, "Opening Claude login…");

    EXPECT_TRUE(
        harness.loop.runUntil([&] { return *model().claudeLoginStatus == "Claude Code is logged in."; }));
    EXPECT_EQ(*model().claudeLoggedIn, true);
}

TEST_F(ToolsTest, ALoginThatFailsShowsTheToolsWordsWithoutTheURL) {
    const std::string tool = stage.tool("case \"$2\" in status) echo '{\"loggedIn\":false}' ;; *) echo "
                                        "'Visit https://x.example/secret now'; exit 1 ;; esac",
                                        "claude");
    startWith(makeTool(ProviderKind::claudeCode, tool));

    model().loginClaudeCode();

    EXPECT_TRUE(harness.loop.runUntil([&] { return *model().claudeLoggedIn == false; }));
    EXPECT_TRUE(harness.loop.runUntil([&] { return *model().claudeLoginStatus != "Opening Claude login…"; }));
    EXPECT_EQ(*model().claudeLoginStatus, "Visit  now");
}

TEST_F(ToolsTest, AComparisonAsksATool) {
    const std::string tool = stage.tool(
        R"(case "$2" in status) echo '{}' ;; *) cat > /dev/null; echo '{"result":"from the tool","total_cost_usd":0.25}' ;; esac)",
        "claude");
    ModelProfile claude = makeTool(ProviderKind::claudeCode, tool);
    claude.enabled = true;
    startWith(claude);
    harness.writeDraft();
    model().draftModelIDs = {claude.id};

    model().ask();
    ASSERT_TRUE(harness.runUntilAnswered());

    const ModelAnswer answer = harness.activeAnswers().at(0);
    EXPECT_EQ(answer.text, "from the tool");
    EXPECT_EQ(answer.costUSD, 0.25);
    const auto scratch = SupportPaths::directory(harness.folder.path()) / "cli-scratch";
    // The question about the login, which goes out at the start, may end after the answer.
    EXPECT_TRUE(harness.loop.runUntil([&] { return std::filesystem::is_empty(scratch); }));
}

} // namespace

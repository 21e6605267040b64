#include "app/Harness.h"
#include "base/Json.h"
#include "store/Seed.h"

using namespace quorl;
using namespace quorl::test;
using testing::EndsWith;
using testing::MatchesRegex;

namespace {

class ModelsTest : public testing::Test {
protected:
    void SetUp() override {
        first = harness.addReadyModel("first");
        harness.start();
    }

    AppModel& model() { return harness.model(); }

    std::string statusAfterTest(const ModelProfile& profile) {
        model().test(profile);
        EXPECT_EQ(*model().testStatus.find(profile.id), "Asking…");
        harness.loop.runUntil([&] { return *model().testStatus.find(profile.id) != "Asking…"; });
        return *model().testStatus.find(profile.id);
    }

    Harness harness;
    ModelProfile first;
};

TEST_F(ModelsTest, AnAddedModelIsThePresetOfItsKindWrittenSelectedAndShown) {
    model().addModel(ProviderKind::openAICompatible);

    const ModelProfile added = model().library.models().back();
    EXPECT_EQ(added, Seed::preset(ProviderKind::openAICompatible, 1, added.id));
    EXPECT_EQ(added.name, "Compatible model");
    EXPECT_EQ(added.modelIdentifier, "");
    EXPECT_EQ(added.endpoint, "");
    EXPECT_FALSE(added.enabled);
    EXPECT_EQ(harness.file().loadModels().back(), added);
    EXPECT_EQ(*model().selectedModelID, added.id);
    EXPECT_EQ(*model().destination, Destination(Screen::models));
    EXPECT_EQ(*model().secretFlags.find(added.id), false);
}

TEST_F(ModelsTest, TheSortIndexIsOneAboveTheLargest) {
    ModelProfile far = makeModel();
    far.sortIndex = 8;
    harness.file().saveModel(far);
    harness.start();

    model().addModel(ProviderKind::openAI);

    EXPECT_EQ(model().library.models().back().sortIndex, 9);
}

TEST_F(ModelsTest, TheSortIndexOfTheFirstModelIsZero) {
    model().pendingDelete = PendingDelete{PendingDelete::Kind::model, first.id};
    model().confirmDelete();
    ASSERT_TRUE(model().library.models().empty());

    model().addModel(ProviderKind::openAI);

    EXPECT_EQ(model().library.models().back().sortIndex, 0);
}

TEST_F(ModelsTest, AModelThatCannotBeWrittenIsAddedAllTheSame) {
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE INSERT ON models BEGIN SELECT RAISE(ABORT, 'no room'); END");

    model().addModel(ProviderKind::openAI);

    EXPECT_EQ(*model().alertMessage, "no room");
    EXPECT_EQ(model().library.models().size(), 2u);
}

TEST_F(ModelsTest, AnEditedModelIsStoredAsGiven) {
    first.name = "  untrimmed ";
    first.enabled = false;

    model().replaceModel(first);

    EXPECT_EQ(*model().library.findModel(first.id), first);
    EXPECT_EQ(harness.file().loadModels().at(0), first);
}

TEST_F(ModelsTest, AnEditOfAnUnknownModelDoesNothing) {
    model().replaceModel(makeModel());

    EXPECT_EQ(model().library.models().size(), 1u);
    EXPECT_EQ(harness.file().loadModels().size(), 1u);
}

TEST_F(ModelsTest, AnEditThatCannotBeWrittenStaysInMemoryWithAnAlert) {
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE UPDATE ON models BEGIN SELECT RAISE(ABORT, 'no room'); END");
    first.name = "edited";

    model().replaceModel(first);

    EXPECT_EQ(*model().alertMessage, "no room");
    EXPECT_EQ(model().library.findModel(first.id)->name, "edited");
}

TEST_F(ModelsTest, SavingCredentialsSetsTheFlagByTheModelsKind) {
    model().saveSecret(first.id, {" ", "", "", ""});
    EXPECT_EQ(*model().secretFlags.find(first.id), false);

    model().saveSecret(first.id, {"key", "", "", ""});
    EXPECT_EQ(*model().secretFlags.find(first.id), true);
}

TEST_F(ModelsTest, CredentialsOfAnUnknownModelAreTakenAsOpenAIs) {
    const UUID unknown = UUID::random();

    model().saveSecret(unknown, {"key", "", "", ""});

    EXPECT_EQ(*model().secretFlags.find(unknown), true);
    model().saveSecret(unknown, {"", "access", "secret", ""});
    EXPECT_EQ(*model().secretFlags.find(unknown), false);
}

TEST_F(ModelsTest, PastedCredentialsAreTrimmedAndBlankFieldsKeepWhatIsSaved) {
    model().saveSecret(first.id, {"key", "access", "secret", "token"});

    model().mergeSecret(first.id, {" new key\n", "", "  ", ""});

    EXPECT_EQ(*ModelSecret::fromJSON(harness.keychain.items.at({"com.quorltest.app", first.id.text()})),
              (ModelSecret{"new key", "access", "", "token"}));
    EXPECT_FALSE(*model().alertMessage);
}

TEST_F(ModelsTest, NothingPastedIsSaidAndChangesNothing) {
    const auto before = harness.keychain.items;

    model().mergeSecret(first.id, {});

    EXPECT_EQ(*model().alertMessage, "Paste a key first. A blank field keeps the saved credential.");
    EXPECT_EQ(harness.keychain.items, before);
}

TEST_F(ModelsTest, WhetherCredentialsSufficeDependsOnTheKindOfTheMoment) {
    EXPECT_TRUE(model().hasUsableSecret(first));

    first.provider = ProviderKind::amazonBedrock;
    EXPECT_FALSE(model().hasUsableSecret(first));
    model().saveSecret(first.id, {"", "access", "", ""});
    EXPECT_FALSE(model().hasUsableSecret(first));
    model().saveSecret(first.id, {"", "access", "secret", ""});
    EXPECT_TRUE(model().hasUsableSecret(first));
}

TEST_F(ModelsTest, ClearingCredentialsClearsItemAndFlag) {
    model().clearSecret(first.id);

    EXPECT_EQ(*model().secretFlags.find(first.id), false);
    EXPECT_TRUE(harness.keychain.items.empty());
}

TEST_F(ModelsTest, TheFlagsFollowTheKeychainAtTheStart) {
    EXPECT_EQ(*model().secretFlags.find(first.id), true);
}

TEST_F(ModelsTest, ATestShowsTheTimeAndTheReply) {
    harness.endpoint.answer("first", says("pong"));

    EXPECT_THAT(statusAfterTest(first), MatchesRegex("[0-9]+ ms · pong"));
}

TEST_F(ModelsTest, ATestSendsTheSameSentenceTwice) {
    harness.endpoint.answer("first", says("pong"));

    statusAfterTest(first);

    const auto body = Json::parse(harness.endpoint.requests().at(0).body);
    ASSERT_TRUE(body);
    const Json::Value expected = Json::Value::parse(
        R"([{"role":"system","content":"Reply with the single word pong."},
            {"role":"user","content":"Reply with the single word pong."}])");
    EXPECT_EQ((*body)["messages"], expected);
}

TEST_F(ModelsTest, ALongReplyIsCutTo120CharactersAndItsLineFeedsBecomeSpaces) {
    std::string reply = "a\nb\n";
    for (int i = 0; i < 200; ++i)
        reply += "é";
    harness.endpoint.answer("first", says(reply));

    std::string expected = "a b ";
    for (int i = 0; i < 116; ++i)
        expected += "é";
    EXPECT_THAT(statusAfterTest(first), EndsWith(" · " + expected));
}

TEST_F(ModelsTest, AFailedTestShowsTheMessageAndNoAlert) {
    harness.endpoint.answer("first", sample::makeReply(401, R"({"message":"nope"})"));

    EXPECT_EQ(statusAfterTest(first), "HTTP 401: nope");
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(ModelsTest, ATestWritesNothingToTheLibrary) {
    harness.endpoint.answer("first", says("pong"));

    statusAfterTest(first);

    EXPECT_TRUE(harness.file().loadRuns().empty());
    EXPECT_TRUE(harness.file().loadAnswers().empty());
}

TEST_F(ModelsTest, ATestSeesEditsThatAreNotSaved) {
    harness.endpoint.answer("edited", says("from the edited one"));
    first.modelIdentifier = "edited";

    EXPECT_THAT(statusAfterTest(first), EndsWith("from the edited one"));
    EXPECT_EQ(model().library.findModel(first.id)->modelIdentifier, "first");
}

TEST_F(ModelsTest, ATestOfADecisionModelAsksOneTypedQuestion) {
    // Its preflight passes only with a valid typed question, and what then stops it is the missing key.
    ModelProfile decision = makeModel(ProviderKind::zun);

    EXPECT_EQ(statusAfterTest(decision), "Add an API key in Models.");
}

TEST_F(ModelsTest, OfTwoTestsOfOneModelTheLastToEndWins) {
    harness.endpoint.answerInTurn("first", {sample::delayed(sample::OpenAIChat::reply(says("slow"), "first"),
                                                            std::chrono::milliseconds(300)),
                                            says("quick")});

    model().test(first);
    ASSERT_TRUE(harness.endpoint.waitForRequests(1));
    model().test(first);

    ASSERT_TRUE(harness.loop.runUntil([&] { return model().testStatus.find(first.id)->ends_with("quick"); }));
    EXPECT_TRUE(harness.loop.runUntil([&] { return model().testStatus.find(first.id)->ends_with("slow"); }));
}

} // namespace

#include "app/Harness.h"
#include "domain/ServiceHosts.h"
#include "store/Seed.h"

#include <sys/stat.h>

using namespace quorl;
using namespace quorl::test;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class LaunchTest : public testing::Test {
protected:
    AppModel& model() { return harness.model(); }

    QuorlRun addRun(std::optional<UUID> batchID = std::nullopt) {
        QuorlRun run = makeRun();
        run.batchID = batchID;
        harness.file().insertRun(run);
        return run;
    }

    ModelAnswer addAnswer(const UUID& runID, AnswerState state, std::int64_t position = 0) {
        ModelAnswer answer = makeAnswer(runID, position);
        answer.state = state;
        harness.file().insertAnswer(answer);
        return answer;
    }

    Harness harness;
};

TEST_F(LaunchTest, AnEmptyLibraryGetsTheNineModelsOfTheCatalogue) {
    harness.start();

    EXPECT_EQ(model().library.models(), Seed::models());
    EXPECT_EQ(harness.file().loadModels(), Seed::models());
    std::vector<ProviderKind> enabled;
    for (const ModelProfile& profile : model().library.models()) {
        EXPECT_NE(profile.provider, ProviderKind::openAICompatible);
        if (profile.enabled)
            enabled.push_back(profile.provider);
    }
    EXPECT_THAT(enabled, ElementsAre(ProviderKind::zun, ProviderKind::nuvel));
}

TEST_F(LaunchTest, ALibraryWithAModelIsNotSeeded) {
    const ModelProfile own = harness.addReadyModel("own");

    harness.start();

    EXPECT_THAT(model().library.models(), ElementsAre(own));
}

TEST_F(LaunchTest, ALibraryWhoseModelsWereAllDeletedIsSeededAgain) {
    harness.start();
    for (const ModelProfile& profile : Seed::models())
        harness.file().deleteModel(profile.id);

    harness.start();

    EXPECT_EQ(model().library.models(), Seed::models());
}

TEST_F(LaunchTest, ASeedRowThatFailsIsDroppedAndTheOthersCome) {
    harness.file().exec("CREATE TRIGGER refuse BEFORE INSERT ON models WHEN NEW.provider = 'openAI' "
                        "BEGIN SELECT RAISE(ABORT, 'refused'); END");

    harness.start();

    EXPECT_EQ(model().library.models().size(), 8u);
    EXPECT_EQ(model().library.findModel(Seed::openAI()), nullptr);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(LaunchTest, TheDecisionModelsComeOncePerUserToALibraryWithoutThem) {
    harness.defaults.values.clear();
    const ModelProfile own = harness.addReadyModel("own", 30);

    harness.start();
    EXPECT_EQ(model().library.models().size(), 5u);
    EXPECT_TRUE(harness.defaults.boolean("seed.decisions.v1"));

    harness.file().deleteModel(Seed::zun());
    harness.start();
    EXPECT_EQ(model().library.findModel(Seed::zun()), nullptr);
}

TEST_F(LaunchTest, ADecisionModelThatIsThereIsLeftAsItIs) {
    harness.defaults.values.clear();
    ModelProfile zun = Seed::preset(ProviderKind::zun, 0, Seed::zun());
    zun.name = "Mine";
    ModelProfile sameKind = Seed::preset(ProviderKind::nuvel, 9, UUID::random());
    harness.file().saveModel(zun);
    harness.file().saveModel(sameKind);

    harness.start();

    EXPECT_EQ(model().library.findModel(Seed::zun())->name, "Mine");
    EXPECT_NE(model().library.findModel(Seed::nuvel()), nullptr); // another id is another model
}

TEST_F(LaunchTest, TheKeyIsSetEvenIfTheModelsCouldNotBeSaved) {
    harness.defaults.values.clear();
    harness.addReadyModel("own");
    harness.file().exec("CREATE TRIGGER refuse BEFORE INSERT ON models BEGIN SELECT RAISE(ABORT, 'no'); END");

    harness.start();

    EXPECT_EQ(model().library.models().size(), 1u);
    EXPECT_TRUE(harness.defaults.boolean("seed.decisions.v1"));
}

TEST_F(LaunchTest, RetiredCategoriesGoUnlessTheyHaveAChildARunOrAnExample) {
    const auto retired = Seed::retiredCategories();
    for (const UUID& id : retired) {
        Category category = makeCategory("Anything");
        category.id = id;
        harness.file().saveCategory(category);
    }
    harness.file().saveCategory(makeCategory("Child", retired[0]));
    QuorlRun run = makeRun();
    run.categoryID = retired[1];
    harness.file().insertRun(run);
    DatasetExample example = makeExample();
    example.categoryID = retired[2];
    harness.file().insertDataset(example);
    harness.file().saveCategory(makeCategory("Own"));

    harness.start();

    for (std::size_t i = 0; i < retired.size(); ++i)
        EXPECT_EQ(model().library.findCategory(retired[i]) != nullptr, i < 3) << i;
    EXPECT_EQ(model().library.categories().size(), 5u);
}

TEST_F(LaunchTest, ARetiredCategoryThatCannotBeLookedAtStays) {
    Category category = makeCategory("Anything");
    category.id = Seed::retiredCategories()[0];
    harness.file().saveCategory(category);
    harness.file().exec(
        "DROP TABLE runs; CREATE TABLE runs (id TEXT, batch_id TEXT)"); // no category to ask for

    harness.start();

    EXPECT_THAT(harness.file().loadCategories(), ElementsAre(category));
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(LaunchTest, TheClaudeNoteIsMendedOnlyWhereItHasTheOldPhrase) {
    ModelProfile claude = Seed::preset(ProviderKind::claudeCode, 7, Seed::claudeCode());
    claude.notes = "Uses the Claude Code login already on this machine.";
    claude.name = "Mine";
    harness.file().saveModel(claude);

    harness.start();
    EXPECT_EQ(model().library.findModel(claude.id)->notes, Seed::models()[7].notes);
    EXPECT_EQ(model().library.findModel(claude.id)->name, "Mine");
    EXPECT_EQ(harness.file().loadModels()[0].notes, Seed::models()[7].notes);

    claude.notes = "My own words.";
    harness.file().saveModel(claude);
    harness.start();
    EXPECT_EQ(model().library.findModel(claude.id)->notes, "My own words.");
}

TEST_F(LaunchTest, NuvelMovesOffItsFormerHostedDefault) {
    for (const std::string& endpoint :
         std::vector<std::string>{" https://" + std::string(ServiceHosts::nuvelAPIHost) + "/v1 ",
                                  "\n" + std::string(ServiceHosts::formerNuvelURL)}) {
        ModelProfile nuvel = Seed::preset(ProviderKind::nuvel, 1, Seed::nuvel());
        nuvel.endpoint = endpoint;
        nuvel.modelIdentifier = "old";
        nuvel.notes = "old";
        nuvel.inputPricePerMillion = 3;
        nuvel.outputPricePerMillion = 4;
        nuvel.enabled = false;
        nuvel.name = "Mine";
        harness.file().saveModel(nuvel);

        harness.start();

        ModelProfile expected = Seed::preset(ProviderKind::nuvel, 1, Seed::nuvel());
        expected.outputPricePerMillion = 4;
        expected.name = "Mine";
        EXPECT_EQ(*model().library.findModel(Seed::nuvel()), expected) << endpoint;
        EXPECT_THAT(harness.file().loadModels(), ElementsAre(expected));
    }
}

TEST_F(LaunchTest, NuvelAtAnotherHostStays) {
    ModelProfile nuvel = Seed::preset(ProviderKind::nuvel, 1, Seed::nuvel());
    nuvel.endpoint = std::string(ServiceHosts::formerNuvelURL) + "/"; // not the very URL
    harness.file().saveModel(nuvel);

    harness.start();

    EXPECT_EQ(*model().library.findModel(Seed::nuvel()), nuvel);
}

TEST_F(LaunchTest, AnswersLeftRunningEndFailedAndTheOthersStay) {
    const QuorlRun run = addRun();
    const ModelAnswer done = addAnswer(run.id, AnswerState::done, 0);
    ModelAnswer running = addAnswer(run.id, AnswerState::running, 1);

    harness.start();

    running.state = AnswerState::failed;
    running.errorMessage = "Quorl closed before this response finished.";
    const auto answers = model().library.answersOfRun(run.id);
    EXPECT_THAT(std::vector(answers.begin(), answers.end()), ElementsAre(done, running));
    EXPECT_THAT(harness.file().loadAnswers(), ElementsAre(done, running));
}

TEST_F(LaunchTest, AnAnswerThatCannotBeWrittenIsRunningAgainAfterTheReloadThatFollows) {
    const QuorlRun run = addRun();
    const ModelAnswer running = addAnswer(run.id, AnswerState::running);
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE UPDATE ON answers BEGIN SELECT RAISE(ABORT, 'no'); END");

    harness.start();

    // The reload shows what the file holds, and the file could not be changed.
    EXPECT_EQ(*model().library.findAnswer(running.id), running);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(LaunchTest, ABatchWhoseAnswersHaveAllEndedIsDone) {
    const QuorlBatch batch = makeBatch();
    harness.file().saveBatch(batch);
    addAnswer(addRun(batch.id).id, AnswerState::running);
    const QuorlBatch empty = makeBatch();
    harness.file().saveBatch(empty);

    harness.start();

    EXPECT_EQ(model().library.findBatch(batch.id)->status, BatchStatus::done);
    EXPECT_EQ(model().library.findBatch(empty.id)->status, BatchStatus::done);
    for (const QuorlBatch& stored : harness.file().loadBatches())
        EXPECT_EQ(stored.status, BatchStatus::done);
}

TEST_F(LaunchTest, BatchesAreSettledEvenIfNothingWasRunning) {
    const QuorlBatch batch = makeBatch();
    harness.file().saveBatch(batch);
    addAnswer(addRun(batch.id).id, AnswerState::failed);

    harness.start();

    EXPECT_EQ(model().library.findBatch(batch.id)->status, BatchStatus::done);
}

TEST_F(LaunchTest, OnlyABatchWhoseStatusChangesIsWrittenAndAFailureShows) {
    QuorlBatch settled = makeBatch();
    settled.status = BatchStatus::done;
    harness.file().saveBatch(settled);
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE UPDATE ON batches BEGIN SELECT RAISE(ABORT, 'held fast'); END");
    harness.start();
    EXPECT_FALSE(model().alertMessage->has_value());

    const QuorlBatch running = makeBatch();
    harness.file().saveBatch(running);
    harness.start();
    EXPECT_EQ(*model().alertMessage, "held fast");
    EXPECT_EQ(model().library.findBatch(running.id)->status, BatchStatus::done);
}

TEST_F(LaunchTest, AnEmptySelectionIsFilledWithEveryReadyModelOfBothKinds) {
    const ModelProfile ready = harness.addReadyModel("ready");
    ModelProfile decision = makeModel(ProviderKind::veritor);
    harness.file().saveModel(decision);
    ModelProfile blocked = makeModel(ProviderKind::openAI);
    harness.file().saveModel(blocked);
    harness.defaults.setStrings("draft.models", {});
    harness.defaults.writes.clear();

    harness.start();

    EXPECT_EQ(*model().draftModelIDs, (std::set{ready.id, decision.id}));
    EXPECT_THAT(harness.defaults.writes, IsEmpty()); // not persisted at this point
}

TEST_F(LaunchTest, AStoredSelectionStaysEvenIfItNamesNobody) {
    harness.addReadyModel("ready");
    const UUID gone = UUID::random();
    harness.defaults.setStrings("draft.models", {gone.text()});

    harness.start();

    EXPECT_EQ(*model().draftModelIDs, std::set{gone});
}

TEST_F(LaunchTest, WhatNothingRestoresHasItsInitialValue) {
    harness.start();

    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_EQ(*model().activeRunID, std::nullopt);
    EXPECT_EQ(*model().activeBatchID, std::nullopt);
    EXPECT_EQ(*model().claudeLoggedIn, std::nullopt);
    EXPECT_EQ(*model().claudeLoginStatus, std::nullopt);
    EXPECT_EQ(*model().focusToken, 0);
    EXPECT_EQ(*model().selectedCategoryID, std::nullopt);
    EXPECT_EQ(*model().selectedBatchID, std::nullopt);
    EXPECT_EQ(*model().alertMessage, std::nullopt);
    EXPECT_EQ(*model().feedback, std::nullopt);
    EXPECT_EQ(*model().pendingDelete, std::nullopt);
    EXPECT_EQ(*model().apiBase, "http://127.0.0.1:47821");
    EXPECT_EQ(*model().apiMessage, "Starting");
    EXPECT_EQ(*model().apiToken, "");
    EXPECT_EQ(*model().launchWarning, std::nullopt);
    EXPECT_EQ(model().testStatus.find(Seed::zun()), nullptr);
    EXPECT_EQ(*model().lastAsk, distantPast);
}

TEST_F(LaunchTest, TheFirstModelIsSelected) {
    harness.start();

    EXPECT_EQ(*model().selectedModelID, Seed::zun());
}

TEST_F(LaunchTest, AFileThatIsNoLibraryGivesAWorkingProgramThatSavesNothing) {
    std::filesystem::create_directories(harness.libraryPath()); // a folder stands in its place

    harness.start();

    EXPECT_THAT(**model().launchWarning,
                StartsWith("Couldn't open the library on disk. This session won't be saved. unable to open"));
    EXPECT_EQ(model().library.models(), Seed::models());
    EXPECT_FALSE(model().alertMessage->has_value());
    model().addCategory("Works", std::nullopt);
    EXPECT_EQ(model().library.categories().size(), 1u);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(LaunchTest, TheLibrarysFolderIsForItsUserAlone) {
    harness.start();

    for (const auto& folder : {harness.folder.path() / "com.quorltest.app",
                               harness.folder.path() / "com.quorltest.app" / "cli-scratch"}) {
        struct stat status {};
        ASSERT_EQ(stat(folder.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777u, 0700u);
    }
}

TEST_F(LaunchTest, ASecondStartChangesNothingFurther) {
    harness.start();
    const auto models = model().library.models();

    harness.start();

    EXPECT_EQ(model().library.models(), models);
    EXPECT_FALSE(model().launchWarning->has_value());
}

} // namespace

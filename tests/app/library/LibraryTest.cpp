#include "app/Library.h"
#include "app/library/Mirrors.h"
#include "store/RawLibrary.h"
#include "support/Builders.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace quorl::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// What observers were told: the field, and the id if there was one.
using Told = std::pair<AppField, std::optional<UUID>>;

class LibraryTest : public testing::Test {
protected:
    LibraryTest() {
        store.exec("PRAGMA synchronous = OFF");
        subscription = observers.subscribe(
            [this](const AppChange& change) { told.emplace_back(change.field, change.id); });
    }

    ReloadExtent reload() {
        told.clear();
        return library.reload(store);
    }

    // A run in the file, a moment later than the one before.
    QuorlRun insertRun(std::optional<UUID> batchID = std::nullopt) {
        QuorlRun run = makeRun();
        run.createdAt = dateFromSeconds(now += 1);
        run.batchID = batchID;
        store.insertRun(run);
        return run;
    }

    ModelAnswer insertAnswer(const UUID& runID, std::int64_t position = 0) {
        const ModelAnswer answer = makeAnswer(runID, position);
        store.insertAnswer(answer);
        return answer;
    }

    DatasetExample insertExample() {
        DatasetExample example = makeExample();
        example.createdAt = dateFromSeconds(now += 1);
        store.insertDataset(example);
        return example;
    }

    std::vector<ModelAnswer> answersOf(const UUID& runID) {
        const auto answers = library.answersOfRun(runID);
        return {answers.begin(), answers.end()};
    }

    void expectMirrorsOfFile() { EXPECT_TRUE(mirrorsOf(library) == mirrorsInFile(store)); }

    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    QuorlStore store{path};
    RawLibrary foreign{path};
    Observers observers;
    Library library{observers};
    Observers::Subscription subscription;
    std::vector<Told> told;
    double now = 1'790'000'000;
};

} // namespace

// --- Models and categories ---

TEST_F(LibraryTest, AnAppendedModelStandsLastAndIsFound) {
    const ModelProfile first = makeModel();
    const ModelProfile second = makeModel();
    library.appendModel(first);
    library.appendModel(second);

    EXPECT_THAT(library.models(), ElementsAre(first, second));
    EXPECT_EQ(*library.findModel(second.id), second);
    EXPECT_EQ(library.findModel(UUID::random()), nullptr);
    EXPECT_THAT(told, ElementsAre(Told{AppField::models, {}}, Told{AppField::models, {}}));
}

TEST_F(LibraryTest, ReplacingAModelTellsOnlyOfADifference) {
    ModelProfile model = makeModel();
    library.appendModel(model);
    told.clear();

    library.replaceModel(model);
    EXPECT_THAT(told, IsEmpty());
    library.replaceModel(makeModel());
    EXPECT_THAT(told, IsEmpty());
    model.notes = "Another note.";
    library.replaceModel(model);

    EXPECT_THAT(told, ElementsAre(Told{AppField::models, {}}));
    EXPECT_THAT(library.models(), ElementsAre(model));
}

TEST_F(LibraryTest, ARemovedModelIsGoneAndTheOthersAreStillFound) {
    const ModelProfile models[] = {makeModel(), makeModel(), makeModel()};
    for (const ModelProfile& model : models)
        library.appendModel(model);
    told.clear();

    library.removeModel(models[0].id);
    library.removeModel(models[0].id);

    EXPECT_THAT(library.models(), ElementsAre(models[1], models[2]));
    EXPECT_EQ(library.findModel(models[0].id), nullptr);
    EXPECT_EQ(*library.findModel(models[2].id), models[2]);
    EXPECT_THAT(told, ElementsAre(Told{AppField::models, {}}));
}

TEST_F(LibraryTest, CategoriesAreKeptTheSameWay) {
    Category root = makeCategory("Root");
    const Category child = makeCategory("Child", root.id);
    library.appendCategory(root);
    library.appendCategory(child);
    root.name = "Renamed";
    library.replaceCategory(root);
    EXPECT_THAT(library.categories(), ElementsAre(root, child));
    EXPECT_EQ(*library.findCategory(child.id), child);
    told.clear();

    library.replaceCategory(root);
    library.removeCategory(root.id);

    EXPECT_THAT(library.categories(), ElementsAre(child));
    EXPECT_EQ(library.findCategory(root.id), nullptr);
    EXPECT_THAT(told, ElementsAre(Told{AppField::categories, {}}));
}

// --- Runs, batches, examples ---

TEST_F(LibraryTest, ListsRunsNewestFirstAndFindsThem) {
    const QuorlRun older = insertRun();
    const QuorlRun newer = insertRun();
    reload();

    ASSERT_EQ(library.runCount(), 2u);
    EXPECT_EQ(library.runAt(0), newer);
    EXPECT_EQ(library.runAt(1), older);
    EXPECT_EQ(*library.findRun(older.id), older);
    EXPECT_EQ(library.findRun(UUID::random()), nullptr);
}

TEST_F(LibraryTest, ListsTheRunsOfABatchOldestFirst) {
    const UUID batchID = UUID::random();
    const QuorlRun older = insertRun(batchID);
    insertRun();
    const QuorlRun newer = insertRun(batchID);
    reload();

    const auto runs = library.runsOfBatch(batchID);

    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(*runs[0], older);
    EXPECT_EQ(*runs[1], newer);
    EXPECT_THAT(library.runsOfBatch(UUID::random()), IsEmpty());
    EXPECT_EQ(library.runCountOfBatch(batchID), 2u);
    EXPECT_EQ(library.runCountOfBatch(UUID::random()), 0u);
}

TEST_F(LibraryTest, ABatchRunsAsLongAsAnyAnswerOfItsRunsIsToCome) {
    const UUID batchID = UUID::random();
    const QuorlRun first = insertRun(batchID);
    const QuorlRun second = insertRun(batchID);
    ModelAnswer elsewhere = makeAnswer(insertRun().id);
    elsewhere.state = AnswerState::running;
    reload();
    library.replaceAnswer(elsewhere);
    EXPECT_FALSE(library.isBatchRunning(batchID));
    EXPECT_FALSE(library.isBatchRunning(UUID::random()));

    for (const QuorlRun& run : {first, second}) {
        library.replaceAnswer(makeAnswer(run.id, 0));
        ModelAnswer last = makeAnswer(run.id, 1);
        last.state = AnswerState::running;
        library.replaceAnswer(last);
        EXPECT_TRUE(library.isBatchRunning(batchID));
        last.state = AnswerState::failed;
        library.replaceAnswer(last);
        EXPECT_FALSE(library.isBatchRunning(batchID));
    }
}

TEST_F(LibraryTest, OfRunsOfTheSameMomentTheFirstInTheListComesFirstInTheBatch) {
    const UUID batchID = UUID::random();
    QuorlRun runs[] = {makeRun(), makeRun(), makeRun()};
    for (QuorlRun& run : runs) {
        run.batchID = batchID;
        store.insertRun(run);
    }
    reload();

    const auto ofBatch = library.runsOfBatch(batchID);

    ASSERT_EQ(ofBatch.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(*ofBatch[i], runs[i]);
        EXPECT_EQ(library.runAt(i), runs[i]);
    }
}

TEST_F(LibraryTest, RemovingARunTakesItsAnswersAndTellsOfBoth) {
    const UUID batchID = UUID::random();
    const QuorlRun run = insertRun(batchID);
    const ModelAnswer answer = insertAnswer(run.id);
    const QuorlRun kept = insertRun(batchID);
    reload();
    told.clear();

    library.removeRun(run.id);

    EXPECT_EQ(library.findRun(run.id), nullptr);
    EXPECT_EQ(library.findAnswer(answer.id), nullptr);
    EXPECT_THAT(library.answersOfRun(run.id), IsEmpty());
    EXPECT_THAT(library.runsWithAnswers(), IsEmpty());
    EXPECT_EQ(library.runsOfBatch(batchID).size(), 1u);
    EXPECT_EQ(library.runAt(0), kept);
    EXPECT_THAT(told, ElementsAre(Told{AppField::runs, run.id}, Told{AppField::answersByRun, run.id}));
}

TEST_F(LibraryTest, RemovingAnUnknownRunTellsNobody) {
    library.removeRun(UUID::random());

    EXPECT_THAT(told, IsEmpty());
}

TEST_F(LibraryTest, ARunMayBeRemovedByAReferenceIntoTheLibrary) {
    const QuorlRun run = insertRun();
    insertAnswer(run.id);
    reload();
    told.clear();

    library.removeRun(library.findRun(run.id)->id);

    EXPECT_THAT(told, ElementsAre(Told{AppField::runs, run.id}, Told{AppField::answersByRun, run.id}));
}

TEST_F(LibraryTest, BatchesAreReplacedInTheirPlaceAndRemoved) {
    QuorlBatch older = makeBatch();
    QuorlBatch newer = makeBatch();
    newer.createdAt += std::chrono::seconds(1);
    store.saveBatch(older);
    store.saveBatch(newer);
    reload();
    told.clear();

    older.status = BatchStatus::done;
    library.replaceBatch(older);
    library.replaceBatch(older);
    library.replaceBatch(makeBatch());

    EXPECT_THAT(library.batches(), ElementsAre(newer, older));
    EXPECT_EQ(*library.findBatch(older.id), older);
    EXPECT_THAT(told, ElementsAre(Told{AppField::batches, {}}));
    library.removeBatch(newer.id);
    EXPECT_THAT(library.batches(), ElementsAre(older));
    EXPECT_EQ(library.findBatch(newer.id), nullptr);
}

TEST_F(LibraryTest, BatchesMayBeReplacedWhileTheyAreWalked) {
    for (int i = 0; i < 3; ++i)
        store.saveBatch(makeBatch());
    reload();

    for (const QuorlBatch& batch : library.batches()) {
        QuorlBatch done = batch;
        done.status = BatchStatus::done;
        library.replaceBatch(done);
    }

    for (const QuorlBatch& batch : library.batches())
        EXPECT_EQ(batch.status, BatchStatus::done);
}

TEST_F(LibraryTest, APrependedExampleStandsInFrontWhateverItsDateAndThenWhereTheFileHasIt) {
    const DatasetExample present = insertExample();
    reload();
    DatasetExample older = makeExample();
    older.createdAt = dateFromSeconds(5);
    told.clear();
    library.prependExample(older);
    EXPECT_THAT(library.dataset(), ElementsAre(older, present));
    EXPECT_EQ(*library.findExample(older.id), older);
    EXPECT_THAT(told, ElementsAre(Told{AppField::dataset, {}}));
    store.insertDataset(older);

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_THAT(library.dataset(), ElementsAre(present, older));
    EXPECT_THAT(told, ElementsAre(Told{AppField::dataset, {}}));
}

TEST_F(LibraryTest, ExamplesAreReplacedInTheirPlaceAndRemoved) {
    DatasetExample older = insertExample();
    const DatasetExample newer = insertExample();
    reload();
    told.clear();

    older.completion = "Mended.";
    library.replaceExample(older);
    library.replaceExample(older);

    EXPECT_THAT(library.dataset(), ElementsAre(newer, older));
    EXPECT_THAT(told, ElementsAre(Told{AppField::dataset, {}}));
    library.removeExample(older.id);
    EXPECT_THAT(library.dataset(), ElementsAre(newer));
    EXPECT_EQ(library.findExample(older.id), nullptr);
}

// --- Answers ---

TEST_F(LibraryTest, ListsTheAnswersOfARunByPosition) {
    const UUID runID = UUID::random();
    const ModelAnswer second = insertAnswer(runID, 1);
    const ModelAnswer first = insertAnswer(runID, 0);
    reload();

    EXPECT_THAT(answersOf(runID), ElementsAre(first, second));
    EXPECT_THAT(library.answersOfRun(UUID::random()), IsEmpty());
    EXPECT_EQ(*library.findAnswer(second.id), second);
    EXPECT_EQ(library.findAnswer(UUID::random()), nullptr);
    EXPECT_THAT(library.runsWithAnswers(), ElementsAre(runID));
}

TEST_F(LibraryTest, ReplacingAnAnswerTellsItsRunAndOnlyOfADifference) {
    const UUID runID = UUID::random();
    ModelAnswer first = insertAnswer(runID, 0);
    const ModelAnswer second = insertAnswer(runID, 1);
    reload();
    told.clear();

    library.replaceAnswer(first);
    EXPECT_THAT(told, IsEmpty());
    first.text = "Another way.";
    library.replaceAnswer(first);

    EXPECT_THAT(told, ElementsAre(Told{AppField::answersByRun, runID}));
    EXPECT_THAT(answersOf(runID), ElementsAre(first, second));
    EXPECT_EQ(*library.findAnswer(first.id), first);
}

TEST_F(LibraryTest, AnUnknownAnswerIsPutAtTheEndAndItsRunIsMade) {
    const UUID runID = UUID::random();
    const ModelAnswer first = makeAnswer(runID, 0);
    const ModelAnswer alsoFirst = makeAnswer(runID, 0);

    library.replaceAnswer(first);
    library.replaceAnswer(alsoFirst);

    EXPECT_THAT(answersOf(runID), ElementsAre(first, alsoFirst));
    EXPECT_EQ(*library.findAnswer(alsoFirst.id), alsoFirst);
    EXPECT_THAT(told, ElementsAre(Told{AppField::answersByRun, runID}, Told{AppField::answersByRun, runID}));
}

TEST_F(LibraryTest, AnAnswerWhosePositionChangesIsListedThere) {
    const UUID runID = UUID::random();
    ModelAnswer first = makeAnswer(runID, 0);
    const ModelAnswer second = makeAnswer(runID, 1);
    library.replaceAnswer(first);
    library.replaceAnswer(second);

    first.position = 2;
    library.replaceAnswer(first);

    EXPECT_THAT(answersOf(runID), ElementsAre(second, first));
}

TEST_F(LibraryTest, ManyAnswersComeAndGoAndAreStillFound) {
    std::vector<ModelAnswer> answers;
    for (int i = 0; i < 3000; ++i) {
        answers.push_back(makeAnswer(UUID::random()));
        library.replaceAnswer(answers.back());
    }
    for (std::size_t i = 0; i < answers.size(); i += 3)
        library.removeRun(answers[i].runID);

    for (std::size_t i = 0; i < answers.size(); ++i) {
        const ModelAnswer* found = library.findAnswer(answers[i].id);
        ASSERT_EQ(found != nullptr, i % 3 != 0) << i;
        if (found) {
            ASSERT_EQ(*found, answers[i]);
        }
    }
}

TEST_F(LibraryTest, IdsThatDifferInAFewDigitsOnlyAreFound) {
    for (int i = 0; i < 2000; ++i) {
        char text[37];
        std::snprintf(text, sizeof text, "00000000-0000-4000-8000-%012X", static_cast<unsigned>(i));
        ModelAnswer answer = makeAnswer(*UUID::parse(text));
        answer.id = *UUID::parse(text);
        library.replaceAnswer(answer);
    }

    EXPECT_EQ(library.runsWithAnswers().size(), 2000u);
    EXPECT_NE(library.findAnswer(*UUID::parse("00000000-0000-4000-8000-0000000007CF")), nullptr);
    EXPECT_EQ(library.findAnswer(*UUID::parse("00000000-0000-4000-8000-0000000007D0")), nullptr);
}

// --- Reload ---

TEST_F(LibraryTest, TheFirstReloadReadsEverythingAndTellsOfEachFieldOnce) {
    store.saveModel(makeModel());
    store.saveCategory(makeCategory());
    for (int i = 0; i < 3; ++i)
        insertAnswer(insertRun().id);
    store.saveBatch(makeBatch());
    insertExample();

    EXPECT_EQ(reload(), ReloadExtent::allRows);

    expectMirrorsOfFile();
    EXPECT_THAT(told, ElementsAre(Told{AppField::models, {}}, Told{AppField::categories, {}},
                                  Told{AppField::runs, {}}, Told{AppField::batches, {}},
                                  Told{AppField::answersByRun, {}}, Told{AppField::dataset, {}}));
}

TEST_F(LibraryTest, AnEmptyFileTellsNobody) {
    EXPECT_EQ(reload(), ReloadExtent::allRows);

    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(reload(), ReloadExtent::touchedRows);
}

TEST_F(LibraryTest, AfterAnAskOnlyTheNewRunIsReadAndToldOf) {
    insertAnswer(insertRun().id);
    reload();
    const QuorlRun run = insertRun();
    const ModelAnswer second = insertAnswer(run.id, 1);
    const ModelAnswer first = insertAnswer(run.id, 0);

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_EQ(library.runAt(0), run);
    EXPECT_THAT(answersOf(run.id), ElementsAre(first, second));
    EXPECT_EQ(*library.findAnswer(first.id), first);
    EXPECT_THAT(told, ElementsAre(Told{AppField::runs, run.id}, Told{AppField::answersByRun, run.id}));
    expectMirrorsOfFile();
}

TEST_F(LibraryTest, ARunOfAnOlderDateComesToItsPlace) {
    const QuorlRun older = insertRun();
    now += 10;
    const QuorlRun newer = insertRun();
    reload();
    now -= 10;
    const QuorlRun between = insertRun();

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_EQ(library.runAt(0), newer);
    EXPECT_EQ(library.runAt(1), between);
    EXPECT_EQ(library.runAt(2), older);
}

TEST_F(LibraryTest, WrittenRowsThatDoNotDifferTellNobody) {
    const ModelAnswer answer = insertAnswer(insertRun().id);
    const ModelProfile model = makeModel();
    store.saveModel(model);
    reload();
    store.updateOutcome(answer);
    store.updateJudgment(answer);
    store.saveModel(model);

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_THAT(told, IsEmpty());
}

TEST_F(LibraryTest, WhatMemoryChangedAndTheFileDidNotComesBack) {
    const QuorlRun run = insertRun();
    const ModelAnswer answer = insertAnswer(run.id);
    const DatasetExample example = insertExample();
    const ModelProfile model = makeModel();
    const Category category = makeCategory();
    const QuorlBatch batch = makeBatch();
    store.saveModel(model);
    store.saveCategory(category);
    store.saveBatch(batch);
    reload();
    ModelAnswer changed = answer;
    changed.text = "Only in memory.";
    library.replaceAnswer(changed);
    library.replaceAnswer(makeAnswer(UUID::random()));
    library.removeRun(run.id);
    library.removeExample(example.id);
    library.removeModel(model.id);
    library.removeCategory(category.id);
    library.removeBatch(batch.id);

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    expectMirrorsOfFile();
    EXPECT_EQ(*library.findAnswer(answer.id), answer);
}

TEST_F(LibraryTest, WhatTheFileGivesBackDifferentlyIsTakenFromTheFile) {
    ModelAnswer answer = insertAnswer(insertRun().id);
    reload();
    answer.text = std::string("cut\0off", 7);
    answer.costUSD = std::numeric_limits<double>::quiet_NaN();
    library.replaceAnswer(answer);
    store.updateOutcome(answer);

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_EQ(library.findAnswer(answer.id)->text, "cut");
    EXPECT_EQ(library.findAnswer(answer.id)->costUSD, std::nullopt);
}

TEST_F(LibraryTest, AFailedWriteLeavesWhatTheFileHas) {
    const QuorlRun run = insertRun();
    reload();
    QuorlRun again = run;
    again.prompt = "Refused.";
    EXPECT_THROW(store.insertRun(again), StoreError);

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_EQ(*library.findRun(run.id), run);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(LibraryTest, AWriteToAHeldFileLeavesWhatTheFileHas) {
    const QuorlRun run = insertRun();
    ModelAnswer answer = insertAnswer(run.id);
    reload();
    foreign.exec("BEGIN IMMEDIATE");
    answer.text = "Not written.";
    library.replaceAnswer(answer);
    EXPECT_THROW(store.updateOutcome(answer), StoreError);
    foreign.exec("ROLLBACK");

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_EQ(library.findAnswer(answer.id)->text, "That way.");
}

TEST_F(LibraryTest, ATransactionThatIsTakenBackLeavesNothing) {
    reload();
    store.exec("BEGIN IMMEDIATE");
    const DatasetExample example = insertExample();
    library.prependExample(example);
    store.exec("ROLLBACK");

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_THAT(library.dataset(), IsEmpty());
}

TEST_F(LibraryTest, ARowReadInsideATransactionThatIsTakenBackIsGone) {
    reload();
    store.exec("BEGIN IMMEDIATE");
    insertRun();
    reload();
    EXPECT_EQ(library.runCount(), 1u);
    store.exec("ROLLBACK");

    reload();

    EXPECT_EQ(library.runCount(), 0u);
}

TEST_F(LibraryTest, ARowThatIsWrittenAgainUnderTheSameIdTakesItsNewPlace) {
    QuorlRun runs[] = {makeRun(), makeRun(), makeRun()}; // of the same moment
    for (const QuorlRun& run : runs)
        store.insertRun(run);
    reload();
    store.deleteRun(runs[0].id);
    store.insertRun(runs[0]);

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_EQ(library.runAt(2), runs[0]);
    EXPECT_THAT(told, ElementsAre(Told{AppField::runs, runs[0].id}));
    expectMirrorsOfFile();
}

TEST_F(LibraryTest, AnotherProgramsWriteIsRead) {
    const QuorlRun run = insertRun();
    insertAnswer(run.id);
    reload();
    foreign.exec("UPDATE answers SET text = 'By another.'");

    EXPECT_EQ(reload(), ReloadExtent::allRows);

    EXPECT_EQ(library.answersOfRun(run.id)[0].text, "By another.");
    EXPECT_THAT(told, ElementsAre(Told{AppField::answersByRun, {}}));
    EXPECT_EQ(reload(), ReloadExtent::touchedRows);
}

TEST_F(LibraryTest, AnotherProgramsDeletionsAreRead) {
    const UUID runID = UUID::random();
    const ModelAnswer kept = insertAnswer(runID, 0);
    const ModelAnswer gone = insertAnswer(runID, 1);
    const ModelAnswer alone = insertAnswer(UUID::random());
    reload();
    foreign.exec("DELETE FROM answers WHERE id IN ('" + gone.id.text() + "', '" + alone.id.text() + "')");

    reload();

    EXPECT_THAT(answersOf(runID), ElementsAre(kept));
    EXPECT_EQ(library.findAnswer(gone.id), nullptr);
    EXPECT_EQ(library.findAnswer(alone.id), nullptr);
    EXPECT_THAT(library.runsWithAnswers(), ElementsAre(runID));
}

TEST_F(LibraryTest, ALoadThatFailsKeepsModelsAndCategoriesAndEmptiesTheOthers) {
    const ModelProfile model = makeModel();
    const Category category = makeCategory();
    store.saveModel(model);
    store.saveCategory(category);
    insertAnswer(insertRun().id);
    store.saveBatch(makeBatch());
    insertExample();
    reload();
    for (const char* table : {"models", "categories", "runs", "batches", "answers", "dataset"})
        foreign.exec(std::string("DROP TABLE ") + table);

    EXPECT_EQ(reload(), ReloadExtent::allRows);

    EXPECT_THAT(library.models(), ElementsAre(model));
    EXPECT_THAT(library.categories(), ElementsAre(category));
    EXPECT_EQ(library.runCount(), 0u);
    EXPECT_THAT(library.batches(), IsEmpty());
    EXPECT_THAT(library.runsWithAnswers(), IsEmpty());
    EXPECT_THAT(library.dataset(), IsEmpty());
    EXPECT_EQ(reload(), ReloadExtent::allRows) << "as long as a load fails";
}

TEST_F(LibraryTest, EachLoadFailsForItself) {
    const ModelProfile model = makeModel();
    store.saveModel(model);
    const QuorlRun run = insertRun();
    const ModelAnswer answer = insertAnswer(run.id);
    reload();
    foreign.exec("DROP TABLE runs");

    reload();

    EXPECT_EQ(library.runCount(), 0u);
    EXPECT_THAT(library.models(), ElementsAre(model));
    EXPECT_THAT(answersOf(run.id), ElementsAre(answer));
}

TEST_F(LibraryTest, AnAnswerWithoutAReadableIdHasAnotherOneAfterEachReload) {
    const UUID runID = UUID::random();
    insertAnswer(runID);
    foreign.exec("UPDATE answers SET id = 'unreadable'");
    reload();
    const UUID before = library.answersOfRun(runID)[0].id;

    EXPECT_EQ(reload(), ReloadExtent::allRows);

    EXPECT_NE(library.answersOfRun(runID)[0].id, before);
    EXPECT_EQ(library.findAnswer(before), nullptr);
    EXPECT_NE(library.findAnswer(library.answersOfRun(runID)[0].id), nullptr);
}

TEST_F(LibraryTest, AModelWithoutAReadableIdHasAnotherOneAfterEachReloadAndTheRestIsNotReadAgain) {
    store.saveModel(makeModel());
    foreign.exec("UPDATE models SET id = 'unreadable'");
    reload();
    const UUID before = library.models()[0].id;

    EXPECT_EQ(reload(), ReloadExtent::touchedRows);

    EXPECT_NE(library.models()[0].id, before);
}

TEST_F(LibraryTest, OfRunsWithTheSameIdTheFirstIsFoundAndAllAreRemoved) {
    QuorlRun run = makeRun();
    run.id = *UUID::parse("AAAAAAAA-AAAA-4AAA-8AAA-AAAAAAAAAAAA");
    store.insertRun(run);
    foreign.exec(
        "INSERT INTO runs SELECT lower(id), kind, 'Newer.', system_prompt, category_id, scoring_mode, "
        "created_at + 1, questions_json, batch_id, origin FROM runs");
    reload();
    ASSERT_EQ(library.runCount(), 2u);
    EXPECT_EQ(library.findRun(run.id)->prompt, "Newer.");

    library.removeRun(run.id);

    EXPECT_EQ(library.runCount(), 0u);
}

TEST_F(LibraryTest, AnotherStoreIsReadWhole) {
    insertRun();
    reload();
    QuorlStore empty(":memory:");

    EXPECT_EQ(library.reload(empty), ReloadExtent::allRows);

    EXPECT_EQ(library.runCount(), 0u);
    EXPECT_EQ(reload(), ReloadExtent::allRows);
    EXPECT_EQ(library.runCount(), 1u);
}

TEST_F(LibraryTest, TwoLibrariesOnOneStoreMissNothing) {
    Observers others;
    Library other(others);
    reload();
    other.reload(store);
    const QuorlRun run = insertRun();

    reload();
    other.reload(store);

    EXPECT_NE(library.findRun(run.id), nullptr);
    EXPECT_NE(other.findRun(run.id), nullptr);
}

TEST_F(LibraryTest, AFileThatIsHeldReadsAsEmptyAndIsReadAgainWhenItIsFree) {
    store.saveModel(makeModel());
    insertAnswer(insertRun().id);
    store.exec("PRAGMA busy_timeout = 1"); // or each of the six loads would wait its two seconds
    reload();
    foreign.exec("BEGIN EXCLUSIVE");
    reload();
    EXPECT_EQ(library.runCount(), 0u);
    foreign.exec("ROLLBACK");

    reload();

    expectMirrorsOfFile();
}

} // namespace quorl::test

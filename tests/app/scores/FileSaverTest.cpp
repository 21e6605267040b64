#include "app/ExportData.h"
#include "app/Harness.h"
#include "support/FakeFileSaver.h"
#include "support/ToolStage.h"

using namespace quorl;
using namespace quorl::test;

namespace {

class FileSaverTest : public testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directory(exports); }

    // With two runs, the later with two answers that were written last one first.
    void fillLibrary() {
        QuorlRun older = makeRun();
        QuorlRun newer = makeRun(QuorlKind::decision);
        newer.createdAt = older.createdAt + std::chrono::seconds(1);
        newer.categoryID = category.id;
        harness.file().saveCategory(category);
        harness.file().insertRun(older);
        harness.file().insertRun(newer);
        second = makeAnswer(newer.id, 1);
        first = makeAnswer(newer.id, 0);
        oldest = makeAnswer(older.id, 0);
        first.accepted = true;
        first.rating = 9;
        second.state = AnswerState::failed;
        second.modelName = "Of a model that is gone";
        for (const auto& answer : {second, first, oldest})
            harness.file().insertAnswer(answer);
    }

    static ScoreInput inputOf(const ModelAnswer& answer, const std::optional<UUID>& categoryID) {
        ScoreInput input;
        input.modelID = answer.modelID;
        input.modelName = answer.modelName;
        input.categoryID = categoryID;
        input.state = answer.state;
        input.accepted = answer.accepted;
        input.rating = answer.rating;
        input.latencyMS = answer.latencyMS;
        input.costUSD = answer.costUSD;
        input.inputTokens = answer.inputTokens;
        input.outputTokens = answer.outputTokens;
        return input;
    }

    std::vector<ScoreRow> rowsOf(const AppModel& model) const {
        return ScoreMath::rows(model.scoreInputs(), model.library.categories(), std::nullopt,
                               ScoreMath::Subcategories::included, ScoreMath::Split::byCategory);
    }

    Harness harness;
    FakeFileSaver saver;
    const std::filesystem::path exports = harness.folder.path() / "exports";
    const Category category = test::makeCategory("Support");
    ModelAnswer first;
    ModelAnswer second;
    ModelAnswer oldest;
};

TEST_F(FileSaverTest, EveryAnswerOfTheLibraryIsAnInputInTheOrderOfRunsAndPositions) {
    fillLibrary();

    const auto inputs = harness.start().scoreInputs();

    EXPECT_EQ(inputs, (std::vector{inputOf(first, category.id), inputOf(second, category.id),
                                   inputOf(oldest, std::nullopt)}));
}

TEST_F(FileSaverTest, AnEmptyLibraryHasNoInputs) {
    EXPECT_TRUE(harness.start().scoreInputs().empty());
}

TEST_F(FileSaverTest, TheScoresAreWrittenWhereTheUserSays) {
    fillLibrary();
    AppModel& model = harness.start();
    const auto rows = rowsOf(model);

    model.exportScores(rows, saver);
    ASSERT_TRUE(saver.dialog);
    EXPECT_EQ(saver.dialog->name, "quorl-scores.csv");
    EXPECT_EQ(saver.dialog->type.extension, "csv");
    saver.choose(exports / "mine.csv");

    EXPECT_EQ(contentOf(exports / "mine.csv"), ExportData::scoresCSV(rows));
    EXPECT_EQ(namesIn(exports), std::set<std::string>{"mine.csv"});
    EXPECT_FALSE(model.alertMessage->has_value());
}

TEST_F(FileSaverTest, TheFileHoldsWhatWasThereWhenItWasAskedFor) {
    fillLibrary();
    AppModel& model = harness.start();
    auto rows = rowsOf(model);
    const std::string bytes = ExportData::scoresCSV(rows);

    model.exportScores(rows, saver);
    rows.clear();
    saver.choose(exports / "mine.csv");

    EXPECT_EQ(contentOf(exports / "mine.csv"), bytes);
}

TEST_F(FileSaverTest, TheWholeDatasetIsWrittenNewestFirst) {
    DatasetExample older = makeExample();
    older.prompt = "older";
    DatasetExample newer = makeExample();
    newer.prompt = "newer";
    newer.createdAt = older.createdAt + std::chrono::seconds(1);
    harness.file().insertDataset(older);
    harness.file().insertDataset(newer);
    AppModel& model = harness.start();

    model.exportDataset(saver);
    ASSERT_TRUE(saver.dialog);
    EXPECT_EQ(saver.dialog->name, "quorl-dataset.jsonl");
    EXPECT_EQ(saver.dialog->type.extension, "jsonl");
    saver.choose(exports / "mine.jsonl");

    EXPECT_EQ(contentOf(exports / "mine.jsonl"),
              ExportData::fineTuneJSONL(std::vector<const DatasetExample*>{&newer, &older}).value());
}

TEST_F(FileSaverTest, CancellingIsSilent) {
    AppModel& model = harness.start();

    model.exportScores({}, saver);
    saver.cancel();
    model.exportDataset(saver);
    saver.cancel();

    EXPECT_FALSE(model.alertMessage->has_value());
    EXPECT_TRUE(namesIn(exports).empty());
}

TEST_F(FileSaverTest, AFileThatCannotBeWrittenIsAnAlert) {
    AppModel& model = harness.start();
    const auto target = exports / "gone" / "mine.csv";

    model.exportScores({}, saver);
    saver.choose(target);

    EXPECT_EQ(*model.alertMessage, target.string() + ": No such file or directory");
    EXPECT_TRUE(namesIn(exports).empty());
}

TEST_F(FileSaverTest, ADatasetThatIsNoJSONIsAnAlertAndNobodyIsAsked) {
    AppModel& model = harness.start();
    DatasetExample example = makeExample();
    example.completion = "cut off \xF0\x9F\x91";
    model.library.prependExample(example);

    model.exportDataset(saver);

    EXPECT_EQ(*model.alertMessage, "Couldn't write the dataset as JSON.");
    EXPECT_EQ(saver.dialogs, 0);
}

TEST_F(FileSaverTest, AnAnswerOfTheDialogAfterTheModelIsGoneWritesNothing) {
    harness.start().exportScores({}, saver);
    harness.quit();

    saver.choose(exports / "mine.csv");

    EXPECT_TRUE(namesIn(exports).empty());
}

} // namespace

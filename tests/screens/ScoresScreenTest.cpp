#include "screens/ScoresScreen.h"

#include "screens/Strings.h"
#include "screens/WindowTest.h"
#include "support/FakeFileSaver.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <fstream>
#include <iterator>

namespace quorl::test {
namespace {

using Cells = QStringList;

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator(file), {}};
}

class Scores {
public:
    explicit Scores(Harness& filled) : harness(filled) {}

    Category addCategory(const std::string& name, std::optional<UUID> parent = std::nullopt) {
        const Category category = makeCategory(name, parent);
        harness.file().saveCategory(category);
        return category;
    }

    // An answer of that model in a run of its own.
    ModelAnswer add(const std::string& model, std::optional<bool> accepted, std::int64_t latencyMS,
                    const std::optional<UUID>& category = std::nullopt,
                    std::optional<double> cost = std::nullopt,
                    std::optional<std::int64_t> rating = std::nullopt) {
        QuorlRun run = makeRun();
        run.categoryID = category;
        harness.file().insertRun(run);
        ModelAnswer answer = makeAnswer(run.id);
        answer.modelName = model;
        answer.modelID = idOf(model);
        answer.accepted = accepted;
        answer.rating = rating;
        answer.latencyMS = latencyMS;
        answer.costUSD = cost;
        answer.inputTokens = 1200;
        answer.outputTokens = 35;
        harness.file().insertAnswer(answer);
        return answer;
    }

    void addRated(const std::string& model, std::int64_t rating) {
        add(model, std::nullopt, 500, std::nullopt, std::nullopt, rating);
    }

private:
    UUID idOf(const std::string& model) { return ids.try_emplace(model, UUID::random()).first->second; }

    Harness& harness;
    std::map<std::string, UUID> ids;
};

class ScoresScreenTest : public testing::Test {
protected:
    ScoresScreen& open() {
        RootScreen& root = harness.show();
        root.setFileSaver(saver);
        harness.model().destination = Screen::scores;
        ScreenHarness::endTurn();
        auto* screen = qobject_cast<ScoresScreen*>(root.screen());
        for (QAbstractItemModel* list : std::initializer_list<QAbstractItemModel*>{
                 screen->overall(), screen->byCategory(), screen->points()})
            testers.push_back(std::make_unique<QAbstractItemModelTester>(
                list, QAbstractItemModelTester::FailureReportingMode::Warning));
        return *screen;
    }

    static Cells row(const ScoreTableModel* table, int place) {
        return table->data(table->index(place), ScoreTableModel::CellsRole).toStringList();
    }
    static QStringList models(const ScoreTableModel* table) {
        QStringList names;
        for (int place = 0; place < table->count(); ++place)
            names << row(table, place)[ScoreTableModel::Model];
        return names;
    }
    static QStringList chipValues(const ScoresScreen& screen) {
        QStringList values;
        for (const QVariant& chip : screen.chips())
            values << chip.toMap()[QStringLiteral("value")].toString();
        return values;
    }

    ScreenHarness harness;
    Scores scores{harness};
    FakeFileSaver saver;
    std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
};

TEST_F(ScoresScreenTest, IsEmptyBeforeAnythingWasAsked) {
    const ScoresScreen& screen = open();

    EXPECT_TRUE(screen.isEmpty());
    EXPECT_FALSE(screen.canExport());
}

TEST_F(ScoresScreenTest, ARowHasTheWordsOfItsCells) {
    scores.add("Zun", true, 500, std::nullopt, 0.0001);
    scores.add("Zun", true, 700, std::nullopt, 0.0001);
    scores.add("Zun", false, 603, std::nullopt, std::nullopt);
    ScoresScreen& screen = open();

    ASSERT_EQ(screen.overall()->count(), 1);
    EXPECT_EQ(row(screen.overall(), 0),
              (Cells{"Zun", "", "3", "67% · 2/3", "—", "601 ms", "$0.0001", "3.6k in · 105 out"}));
    ASSERT_EQ(screen.byCategory()->count(), 1);
    EXPECT_EQ(row(screen.byCategory(), 0)[ScoreTableModel::Category], QStringLiteral("Uncategorized"));
}

TEST_F(ScoresScreenTest, WhatNobodyKnowsIsADash) {
    const ModelAnswer answer = scores.add("Zun", std::nullopt, 0);
    ScoresScreen& screen = open();

    EXPECT_EQ(row(screen.overall(), 0), (Cells{"Zun", "", "1", "—", "—", "—", "—", "1.2k in · 35 out"}));
    EXPECT_EQ(screen.points()->count(), 0);

    harness.model().setRating(answer.id, 7);
    harness.model().destination = Screen::draft;
    ScoresScreen& again = open();

    EXPECT_EQ(row(again.overall(), 0)[ScoreTableModel::AverageScore], QStringLiteral("7.0"));
    EXPECT_EQ(again.points()->count(), 1);
}

TEST_F(ScoresScreenTest, TheColumnsInTheirOrder) {
    const ScoresScreen& screen = open();

    EXPECT_EQ(
        const_cast<ScoresScreen&>(screen).overall()->heads(),
        (QStringList{"Model", "Category", "Answers", "Correct", "Avg score", "Time", "Cost", "Tokens"}));
}

TEST_F(ScoresScreenTest, AHalfOfTheLastDigitGoesToTheEvenOne) {
    for (const std::int64_t rating : {7, 7, 7, 8}) // 7.25
        scores.addRated("Even", rating);
    for (const std::int64_t rating : {7, 8, 8, 8}) // 7.75
        scores.addRated("Odd", rating);
    ScoresScreen& screen = open();

    EXPECT_EQ(row(screen.overall(), 0)[ScoreTableModel::AverageScore], QStringLiteral("7.2"));
    EXPECT_EQ(row(screen.overall(), 1)[ScoreTableModel::AverageScore], QStringLiteral("7.8"));
    EXPECT_EQ(screen.points()->data(screen.points()->index(0), ScorePointListModel::DetailRole),
              QStringLiteral("7.2 / 10 of 4"));
}

TEST_F(ScoresScreenTest, AnswersThatRunCountInTheChipsAlone) {
    const Category support = scores.addCategory("Support");
    ModelAnswer answer = scores.add("Zun", std::nullopt, 0, support.id);
    ScoresScreen& screen = open();
    answer.state = AnswerState::running; // a start ends what runs, so it begins now
    harness.model().library.replaceAnswer(answer);

    EXPECT_TRUE(harness.waitFor([&] { return screen.overall()->count() == 0; }));
    EXPECT_EQ(screen.byCategory()->count(), 0);
    EXPECT_EQ(chipValues(screen), (QStringList{"1", "0", "1"}));
    EXPECT_FALSE(screen.isEmpty());
    EXPECT_FALSE(screen.canExport());
}

TEST_F(ScoresScreenTest, TheChipsSayWhatTheyCount) {
    const ScoresScreen& screen = open();
    QStringList words;
    for (const QVariant& chip : screen.chips())
        words << chip.toMap()[QStringLiteral("symbol")].toString()
              << chip.toMap()[QStringLiteral("label")].toString();

    EXPECT_EQ(words, (QStringList{"cpu", "models compared", "checkmarkCircle", "judged responses", "folder",
                                  "categories"}));
}

TEST_F(ScoresScreenTest, TheChipsSpeakOfTheWholeLibrary) {
    const Category support = scores.addCategory("Support");
    const Category empty = scores.addCategory("Contracts");
    scores.add("Zun", true, 500, support.id);
    scores.add("Nuvel", std::nullopt, 500);
    ScoresScreen& screen = open();

    EXPECT_EQ(chipValues(screen), (QStringList{"2", "1", "1"}));

    screen.setFilter(toQString(empty.id.text()));

    EXPECT_EQ(chipValues(screen), (QStringList{"2", "1", "1"}));
    EXPECT_EQ(screen.overall()->count(), 0);
    EXPECT_EQ(screen.byCategory()->count(), 0);
    EXPECT_FALSE(screen.isEmpty());
    EXPECT_FALSE(screen.canExport());
}

TEST_F(ScoresScreenTest, AFilterTakesTheSubcategoriesAlongUnlessTold) {
    const Category support = scores.addCategory("Support");
    const Category returns = scores.addCategory("Returns", support.id);
    scores.add("Zun", true, 500, support.id);
    scores.add("Nuvel", true, 500, returns.id);
    scores.add("Other", true, 500);
    ScoresScreen& screen = open();
    QStringList choices;
    for (const QVariant& choice : screen.categories())
        choices << choice.toMap()[QStringLiteral("text")].toString();

    EXPECT_EQ(choices, (QStringList{"All categories", "Support", "Support / Returns"}));
    screen.setIncludeChildren(false); // of no effect without a filter
    EXPECT_EQ(screen.overall()->count(), 3);
    screen.setFilter(toQString(support.id.text()));
    EXPECT_EQ(models(screen.overall()), QStringList{"Zun"});
    screen.setIncludeChildren(true);
    EXPECT_EQ(models(screen.overall()), (QStringList{"Nuvel", "Zun"}));
}

TEST_F(ScoresScreenTest, AColumnSortsOneWayThenTheOtherThenNotAtAll) {
    scores.add("Brief", true, 900, std::nullopt, 0.2);
    scores.add("Slow", true, 9'000);
    scores.add("Quick", false, 100, std::nullopt, 0.1);
    ScoresScreen& screen = open();
    ScoreTableModel& table = *screen.overall();

    EXPECT_EQ(models(&table), (QStringList{"Brief", "Quick", "Slow"}));
    table.sortBy(ScoreTableModel::Time);
    EXPECT_EQ(models(&table), (QStringList{"Slow", "Brief", "Quick"}));
    EXPECT_TRUE(table.sortsDescending());
    table.sortBy(ScoreTableModel::Time);
    EXPECT_EQ(models(&table), (QStringList{"Quick", "Brief", "Slow"}));
    table.sortBy(ScoreTableModel::Time);
    EXPECT_EQ(models(&table), (QStringList{"Brief", "Quick", "Slow"}));
    EXPECT_EQ(table.sortColumn(), -1);

    table.sortBy(ScoreTableModel::Cost); // what is not known comes last either way
    EXPECT_EQ(models(&table), (QStringList{"Brief", "Quick", "Slow"}));
    table.sortBy(ScoreTableModel::Cost);
    EXPECT_EQ(models(&table), (QStringList{"Quick", "Brief", "Slow"}));
    table.sortBy(ScoreTableModel::Model);
    table.sortBy(ScoreTableModel::Model);
    EXPECT_EQ(models(&table), (QStringList{"Slow", "Quick", "Brief"}));
}

TEST_F(ScoresScreenTest, ExportsTheTableByCategory) {
    scores.add("Zun", true, 500);
    ScoresScreen& screen = open();
    EXPECT_TRUE(screen.canExport());

    screen.exportCSV();

    ASSERT_TRUE(saver.dialog);
    EXPECT_EQ(saver.dialog->name, "quorl-scores.csv");
    EXPECT_EQ(saver.dialog->type.extension, "csv");
}

TEST_F(ScoresScreenTest, TheFileFollowsTheFilterAndNotTheSorting) {
    const Category support = scores.addCategory("Support");
    scores.add("Brief", true, 500, support.id);
    scores.add("Zun", true, 500, support.id);
    scores.add("Other", true, 500);
    ScoresScreen& screen = open();
    screen.setFilter(toQString(support.id.text()));
    screen.byCategory()->sortBy(ScoreTableModel::Model);
    screen.byCategory()->sortBy(ScoreTableModel::Model);
    const auto target = harness.folder.path() / "scores.csv";

    screen.exportCSV();
    saver.choose(target);

    EXPECT_EQ(contentOf(target),
              "model,category,answers,correct_percent,average_rating,average_latency_ms,average_cost_usd,"
              "input_tokens,output_tokens\n"
              "Brief,Support,1,100,,500,,1200,35\n"
              "Zun,Support,1,100,,500,,1200,35");
}

TEST_F(ScoresScreenTest, ACancelledDialogIsNoError) {
    scores.add("Zun", true, 500);
    ScoresScreen& screen = open();

    screen.exportCSV();
    saver.cancel();

    EXPECT_EQ(*harness.model().alertMessage, std::nullopt);
}

TEST_F(ScoresScreenTest, AFileThatCannotBeWrittenShowsInTheAlert) {
    scores.add("Zun", true, 500);
    ScoresScreen& screen = open();
    const auto target = harness.folder.path() / "no such folder" / "scores.csv";

    screen.exportCSV();
    saver.choose(target);

    EXPECT_EQ(*harness.model().alertMessage, target.string() + ": No such file or directory");
}

TEST_F(ScoresScreenTest, RowsComeAndGoWithoutAReset) {
    const Category support = scores.addCategory("Support");
    scores.add("Brief", true, 500, support.id);
    scores.add("Zun", true, 500, support.id);
    scores.add("Zun", true, 500);
    ScoresScreen& screen = open();
    const QSignalSpy resets(screen.byCategory(), &QAbstractItemModel::modelReset);
    screen.byCategory()->sortBy(ScoreTableModel::Answers);

    screen.setFilter(toQString(support.id.text()));
    EXPECT_EQ(models(screen.byCategory()), (QStringList{"Brief", "Zun"}));
    screen.setFilter({});

    EXPECT_EQ(screen.byCategory()->count(), 3);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(ScoresScreenTest, ASortedColumnIsToldInWords) {
    ScoreTableModel& table = *open().overall();

    EXPECT_EQ(table.sorting(), QString());
    table.sortBy(ScoreTableModel::Time);
    EXPECT_EQ(table.sorting(), QStringLiteral("Sorted from the largest"));
    table.sortBy(ScoreTableModel::Time);
    EXPECT_EQ(table.sorting(), QStringLiteral("Sorted from the smallest"));
    table.sortBy(ScoreTableModel::Model);
    EXPECT_EQ(table.sorting(), QStringLiteral("Sorted from the first"));
    table.sortBy(ScoreTableModel::Model);
    EXPECT_EQ(table.sorting(), QStringLiteral("Sorted from the last"));
}

// The words of both reach over the same part of the picture.
TEST_F(ScoresScreenTest, WordsInThePictureKeepClearOfOtherPoints) {
    for (const auto& [name, latency] :
         {std::pair("First of three", 2'000), std::pair("Second of three", 2'050),
          std::pair("Third of three", 2'100), std::pair("Far", 100)})
        scores.add(name, true, latency);
    ScoresScreen& screen = open();
    const ScorePointListModel& points = *screen.points();
    std::vector<std::pair<double, bool>> labels;
    for (int place = 0; place < points.count(); ++place)
        labels.emplace_back(points.data(points.index(place), ScorePointListModel::TimeLabelRole).toDouble(),
                            points.data(points.index(place), ScorePointListModel::TimeSideRole).toBool());

    ASSERT_EQ(labels.size(), 4u);
    EXPECT_EQ(labels[0], std::pair(0.0, false)); // "Far", alone at the left edge
    for (std::size_t first = 1; first < labels.size(); ++first) {
        for (std::size_t second = first + 1; second < labels.size(); ++second)
            EXPECT_GE(std::abs(labels[first].first - labels[second].first), 0.07);
    }
}

TEST_F(ScoresScreenTest, ThePictureHasAPointForEachJudgedModel) {
    scores.add("Cheap", true, 100, std::nullopt, 0.001);
    scores.add("Cheap", false, 100, std::nullopt, 0.001);
    scores.add("Dear", true, 10'000, std::nullopt, 0.1);
    scores.add("Unpriced", true, 1'000);
    scores.add("Unjudged", std::nullopt, 100);
    ScoresScreen& screen = open();
    const ScorePointListModel& points = *screen.points();
    const auto value = [&](int place, int role) { return points.data(points.index(place), role); };

    ASSERT_EQ(points.count(), 3);
    EXPECT_EQ(value(0, ScorePointListModel::NameRole), QStringLiteral("Cheap"));
    EXPECT_DOUBLE_EQ(value(0, ScorePointListModel::QualityRole).toDouble(), 0.5);
    EXPECT_DOUBLE_EQ(value(0, ScorePointListModel::TimePlaceRole).toDouble(), 0);
    EXPECT_DOUBLE_EQ(value(0, ScorePointListModel::CostPlaceRole).toDouble(), 0);
    EXPECT_EQ(value(0, ScorePointListModel::DetailRole), QStringLiteral("50% of 2"));
    EXPECT_EQ(value(0, ScorePointListModel::SpokenRole),
              QStringLiteral("Cheap: correct 50% · 1/2, average score —, time 100 ms, cost $0.0010"));
    EXPECT_DOUBLE_EQ(value(1, ScorePointListModel::TimePlaceRole).toDouble(), 1);
    EXPECT_DOUBLE_EQ(value(1, ScorePointListModel::CostPlaceRole).toDouble(), 1);
    EXPECT_DOUBLE_EQ(value(2, ScorePointListModel::TimePlaceRole).toDouble(), 0.5);
    EXPECT_DOUBLE_EQ(value(2, ScorePointListModel::CostPlaceRole).toDouble(), -1);
    EXPECT_TRUE(value(1, ScorePointListModel::TimeSideRole).toBool()); // both are right all the time
    EXPECT_TRUE(value(2, ScorePointListModel::TimeSideRole).toBool());
    EXPECT_EQ(value(1, ScorePointListModel::TimeLabelRole), 0.0);
    EXPECT_EQ(points.shortestTime(), QStringLiteral("100 ms"));
    EXPECT_EQ(points.longestTime(), QStringLiteral("10.0 s"));
    EXPECT_EQ(points.lowestCost(), QStringLiteral("$0.0010"));
}

TEST_F(ScoresScreenTest, FollowsWhatIsJudgedMeanwhile) {
    const ModelAnswer answer = scores.add("Zun", std::nullopt, 500);
    ScoresScreen& screen = open();

    harness.model().setAccepted(answer.id, true);

    EXPECT_TRUE(harness.waitFor(
        [&] { return row(screen.overall(), 0)[ScoreTableModel::Correct] == QStringLiteral("100% · 1/1"); }));
}

class ScoresWindowTest : public WindowTest {
protected:
    void openScores(QSize size = {1240, 800}) {
        open(size);
        harness.model().destination = Screen::scores;
        settle();
    }

    Scores scores{harness};
};

TEST_F(ScoresWindowTest, SaysWhatWillBeHere) {
    openScores();

    EXPECT_NE(findText("No scores yet"), nullptr);
    EXPECT_NE(
        findText("Run a comparison and choose, accept, or rate a response. Results will be summarized here."),
        nullptr);
    EXPECT_EQ(findButton("Export CSV"), nullptr);
}

TEST_F(ScoresWindowTest, SortsByAHeadThatIsClickedOrPressed) {
    scores.add("Brief", true, 900);
    scores.add("Quick", false, 100);
    openScores();
    QQuickItem* time = find(QStringLiteral("Time"), QAccessible::ColumnHeader);
    QQuickItem* table = find(QStringLiteral("Overall"), QAccessible::Table);
    ASSERT_NE(table, nullptr);

    click(time);
    auto* rows = table->property("table").value<ScoreTableModel*>();
    EXPECT_EQ(rows->sortColumn(), ScoreTableModel::Time);
    time->forceActiveFocus();
    press(Qt::Key_Return);

    EXPECT_FALSE(rows->sortsDescending());
    EXPECT_NE(
        find(QStringLiteral("Quick, Answers: 1, Correct: 0% · 0/1, Avg score: —, Time: 100 ms, Cost: —, "
                            "Tokens: 1.2k in · 35 out"),
             QAccessible::Row),
        nullptr);
}

TEST_F(ScoresWindowTest, ShowsItsTexts) {
    const Category support = scores.addCategory("Support");
    scores.add("Zun", true, 500, support.id);
    openScores();

    EXPECT_NE(find(QStringLiteral("Performance"), QAccessible::Heading), nullptr);
    EXPECT_NE(findText("A calm summary of quality, speed, and cost across the work you have judged."),
              nullptr);
    EXPECT_NE(find(QStringLiteral("Category"), QAccessible::ComboBox), nullptr);
    EXPECT_NE(findText("1 models compared"), nullptr);
    EXPECT_NE(findText("1 judged responses"), nullptr);
    EXPECT_NE(findText("1 categories"), nullptr);
    EXPECT_NE(find(QStringLiteral("Overall"), QAccessible::Heading), nullptr);
    EXPECT_NE(find(QStringLiteral("By category"), QAccessible::Heading), nullptr);
    EXPECT_NE(find(QStringLiteral("By category"), QAccessible::Table), nullptr);
    EXPECT_NE(findText("Zun: correct 100% · 1/1, average score —, time 500 ms, cost —"), nullptr);
}

TEST_F(ScoresWindowTest, TheHeadsOfATableAreOneStopAndTheArrowsMoveAmongThem) {
    scores.add("Zun", true, 500);
    openScores({420, 800});
    find(QStringLiteral("Include subcategories"), QAccessible::CheckBox)->forceActiveFocus();

    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Model");
    press(Qt::Key_Left);
    EXPECT_EQ(focused(), "Model");
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), "Answers"); // there is no category in the first table
    for (int steps = 0; steps < 7; ++steps)
        press(Qt::Key_Right);
    EXPECT_EQ(focused(), "Tokens");
    const QQuickItem* tokens = window().activeFocusItem();
    EXPECT_LE(tokens->mapToScene({tokens->width(), 0}).x(), 400); // the columns have been scrolled
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Model");
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), "Category");
    press(Qt::Key_Left);
    EXPECT_EQ(focused(), "Model");
    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Tokens");
}

TEST_F(ScoresWindowTest, InAVeryWideWindowTheTablesKeepTogether) {
    scores.add("Zun", true, 500);
    openScores({2500, 800});

    EXPECT_EQ(find(QStringLiteral("Overall"), QAccessible::Table)->width(), 1100);
}

TEST_F(ScoresWindowTest, AnEmptySliceSaysSo) {
    const Category empty = scores.addCategory("Contracts");
    scores.add("Zun", true, 500);
    openScores({700, 800});
    auto* screen = qobject_cast<ScoresScreen*>(harness.root().screen());

    screen->setFilter(toQString(empty.id.text()));
    settle();

    EXPECT_NE(findText("Nothing in this slice yet."), nullptr);
    EXPECT_FALSE(findButton("Export CSV")->isEnabled());
    click(find(QStringLiteral("Include subcategories"), QAccessible::CheckBox));
    EXPECT_FALSE(screen->includeChildren());
}

} // namespace
} // namespace quorl::test

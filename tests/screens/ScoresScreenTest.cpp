#include "screens/ScoresScreen.h"

#include "screens/Strings.h"
#include "screens/WindowTest.h"
#include "support/FakeFileSaver.h"

#include <QAbstractItemModelTester>

namespace quorl::test {
namespace {

using Cells = QStringList;

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
                    std::optional<double> cost = std::nullopt) {
        QuorlRun run = makeRun();
        run.categoryID = category;
        harness.file().insertRun(run);
        ModelAnswer answer = makeAnswer(run.id);
        answer.modelName = model;
        answer.modelID = idOf(model);
        answer.accepted = accepted;
        answer.rating.reset();
        answer.latencyMS = latencyMS;
        answer.costUSD = cost;
        answer.inputTokens = 1200;
        answer.outputTokens = 35;
        harness.file().insertAnswer(answer);
        return answer;
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
    EXPECT_GE(std::abs(value(1, ScorePointListModel::TimeLabelRole).toDouble() -
                       value(2, ScorePointListModel::TimeLabelRole).toDouble()),
              0.07); // both are right all the time
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

#include "app/ScoreMath.h"

#include "support/Builders.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace quorl;
using namespace quorl::test;
using ScoreMath::Split;
using ScoreMath::Subcategories;

namespace {

ScoreInput makeInput(const UUID& modelID, std::string modelName = "Model") {
    ScoreInput input;
    input.modelID = modelID;
    input.modelName = std::move(modelName);
    input.state = AnswerState::done;
    return input;
}

class ScoreMathTest : public testing::Test {
protected:
    // Without a locale of the user's, ICU's order has the capitals first.
    void SetUp() override { useLocale("en_US"); }
    void TearDown() override { useLocale(former.getName()); }

    static void useLocale(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale(name), status);
        ASSERT_TRUE(U_SUCCESS(status));
    }

    ScoreInput& add(ScoreInput input) { return inputs.emplace_back(std::move(input)); }
    ScoreInput& add() { return add(makeInput(model)); }

    std::vector<ScoreRow> overall(const std::optional<UUID>& filter = std::nullopt,
                                  Subcategories subcategories = Subcategories::included) const {
        return ScoreMath::rows(inputs, categories, filter, subcategories, Split::none);
    }
    std::vector<ScoreRow> split(const std::optional<UUID>& filter = std::nullopt,
                                Subcategories subcategories = Subcategories::included) const {
        return ScoreMath::rows(inputs, categories, filter, subcategories, Split::byCategory);
    }
    // Of the inputs so far, which must be of one model.
    ScoreRow onlyRow() const {
        const auto rows = overall();
        EXPECT_EQ(rows.size(), 1u);
        return rows.empty() ? ScoreRow{} : rows.front();
    }
    std::optional<std::int64_t> percentOf(int correct, int judged) {
        inputs.clear();
        for (int i = 0; i < judged; ++i)
            add().accepted = i < correct;
        return onlyRow().correctPercent();
    }
    UUID addCategory(std::string name, std::optional<UUID> parentID = std::nullopt) {
        return categories.emplace_back(makeCategory(std::move(name), parentID)).id;
    }

    const icu::Locale former = icu::Locale::getDefault();
    const UUID model = UUID::random();
    std::vector<ScoreInput> inputs;
    std::vector<Category> categories;
};

TEST_F(ScoreMathTest, NoInputsGiveNoRows) {
    EXPECT_TRUE(overall().empty());
    EXPECT_TRUE(split().empty());
}

TEST_F(ScoreMathTest, ARowHasTheCountsAndSumsOfItsInputs) {
    ScoreInput first = makeInput(model, "Zun Large");
    first.accepted = true;
    first.rating = 7;
    first.latencyMS = 100;
    first.costUSD = 0.25;
    first.inputTokens = 10;
    first.outputTokens = 3;
    add(first);
    ScoreInput second = makeInput(model, "Zun Large");
    second.accepted = false;
    second.latencyMS = 101;
    second.costUSD = 0.5;
    second.inputTokens = 20;
    add(second);
    ScoreInput third = makeInput(model, "Zun Large");
    third.rating = 8;
    third.outputTokens = 4;
    add(third);

    ScoreRow expected;
    expected.id = model.text() + "|All categories";
    expected.modelID = model;
    expected.modelName = "Zun Large";
    expected.categoryName = "All categories";
    expected.answers = 3;
    expected.binaryJudged = 2;
    expected.binaryCorrect = 1;
    expected.ratingSum = 15;
    expected.ratingCount = 2;
    expected.latencySum = 201;
    expected.latencyCount = 2;
    expected.costSum = 0.75;
    expected.costCount = 2;
    expected.inputTokens = 30;
    expected.outputTokens = 7;
    EXPECT_EQ(overall(), std::vector{expected});
}

TEST_F(ScoreMathTest, ARunningAnswerDoesNotCount) {
    add().state = AnswerState::running;
    EXPECT_TRUE(overall().empty());
    EXPECT_TRUE(split().empty());

    add();
    EXPECT_EQ(onlyRow().answers, 1);
}

TEST_F(ScoreMathTest, AFailedAnswerCountsWithItsTimeAndCostButIsNotJudged) {
    auto& failed = add();
    failed.state = AnswerState::failed;
    failed.latencyMS = 30;
    failed.costUSD = 0.125;

    const ScoreRow row = onlyRow();
    EXPECT_EQ(row.answers, 1);
    EXPECT_EQ(row.latencySum, 30);
    EXPECT_EQ(row.latencyCount, 1);
    EXPECT_EQ(row.costSum, 0.125);
    EXPECT_EQ(row.costCount, 1);
    EXPECT_EQ(row.binaryJudged, 0);
    EXPECT_EQ(row.correctPercent(), std::nullopt);
}

TEST_F(ScoreMathTest, OnlyPositiveLatenciesCount) {
    add().latencyMS = 0;
    add().latencyMS = -5;
    add().latencyMS = 1;

    EXPECT_EQ(onlyRow().latencySum, 1);
    EXPECT_EQ(onlyRow().latencyCount, 1);
}

TEST_F(ScoreMathTest, ACostOfNothingCountsAndAnUnknownOneDoesNot) {
    add().costUSD = 0.0;
    add();

    EXPECT_EQ(onlyRow().costSum, 0);
    EXPECT_EQ(onlyRow().costCount, 1);
}

TEST_F(ScoreMathTest, ThePercentageIsRoundedToTheNearestAndHalvesUp) {
    EXPECT_EQ(percentOf(0, 1), 0);
    EXPECT_EQ(percentOf(1, 3), 33);
    EXPECT_EQ(percentOf(2, 3), 67);
    EXPECT_EQ(percentOf(1, 8), 13);
    EXPECT_EQ(percentOf(5, 8), 63);
    EXPECT_EQ(percentOf(4, 4), 100);
}

TEST_F(ScoreMathTest, WithoutAJudgementThereIsNoPercentage) {
    add().rating = 10;

    EXPECT_EQ(onlyRow().correctPercent(), std::nullopt);
    EXPECT_EQ(onlyRow().answers, 1);
}

TEST_F(ScoreMathTest, ARenamedModelGoesByTheNameInItsFirstAnswer) {
    add(makeInput(model, "New name"));
    add(makeInput(model, "Old name"));

    EXPECT_EQ(onlyRow().modelName, "New name");
    EXPECT_EQ(onlyRow().answers, 2);
}

TEST_F(ScoreMathTest, TheNameOfARunningAnswerIsNotTakenForTheFirst) {
    add(makeInput(model, "Running")).state = AnswerState::running;
    add(makeInput(model, "Done"));

    EXPECT_EQ(onlyRow().modelName, "Done");
}

TEST_F(ScoreMathTest, TwoModelsOfOneNameHaveARowEach) {
    add();
    add(makeInput(UUID::random()));

    EXPECT_EQ(overall().size(), 2u);
}

TEST_F(ScoreMathTest, OverallRowsOfAFilterAreOfThatCategory) {
    const UUID root = addCategory("Support");
    const UUID child = addCategory("Refunds", root);
    add().categoryID = child;

    const auto rows = overall(root);

    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].id, model.text() + "|" + root.text());
    EXPECT_EQ(rows[0].categoryID, root);
    EXPECT_EQ(rows[0].categoryName, "Support");
}

TEST_F(ScoreMathTest, SplitRowsAreOfTheCategoryOfTheirAnswers) {
    const UUID root = addCategory("Support");
    const UUID child = addCategory("Refunds", root);
    add().categoryID = child;
    add().categoryID = root;
    add().categoryID = child;

    const auto rows = split(root);

    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].id, model.text() + "|" + root.text());
    EXPECT_EQ(rows[0].categoryName, "Support");
    EXPECT_EQ(rows[0].answers, 1);
    EXPECT_EQ(rows[1].id, model.text() + "|" + child.text());
    EXPECT_EQ(rows[1].categoryID, child);
    EXPECT_EQ(rows[1].categoryName, "Support / Refunds");
    EXPECT_EQ(rows[1].answers, 2);
}

TEST_F(ScoreMathTest, SplitAnswersWithoutACategoryAreUncategorized) {
    add();

    const auto rows = split();

    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].id, model.text() + "|all");
    EXPECT_EQ(rows[0].categoryID, std::nullopt);
    EXPECT_EQ(rows[0].categoryName, "Uncategorized");
}

TEST_F(ScoreMathTest, AFilterWithoutSubcategoriesLeavesOutAnswersOfChildren) {
    const UUID root = addCategory("Support");
    const UUID child = addCategory("Refunds", root);
    const UUID grandchild = addCategory("Late", child);
    add().categoryID = root;
    add().categoryID = child;
    add().categoryID = grandchild;

    EXPECT_EQ(overall(root, Subcategories::leftOut).at(0).answers, 1);
    EXPECT_EQ(overall(root, Subcategories::included).at(0).answers, 3);
    EXPECT_EQ(overall(child, Subcategories::included).at(0).answers, 2);
    EXPECT_EQ(overall(std::nullopt, Subcategories::leftOut).at(0).answers, 3);
}

TEST_F(ScoreMathTest, AFilterNeverIncludesAnswersWithoutACategory) {
    const UUID root = addCategory("Support");
    add();

    EXPECT_TRUE(overall(root).empty());
    EXPECT_TRUE(split(root).empty());
    EXPECT_TRUE(overall(root, Subcategories::leftOut).empty());
}

TEST_F(ScoreMathTest, AFilterThatNoCategoryHasStillFindsItsAnswers) {
    const UUID gone = UUID::random();
    add().categoryID = gone;

    ASSERT_EQ(overall(gone).size(), 1u);
    EXPECT_EQ(overall(gone)[0].categoryName, "");
}

TEST_F(ScoreMathTest, RowsStandByCategoryThenByModelWhateverTheirCase) {
    const UUID late = addCategory("beta");
    const UUID early = addCategory("Alpha");
    const UUID zun = UUID::random();
    const UUID arc = UUID::random();
    add(makeInput(zun, "Zun")).categoryID = late;
    add(makeInput(arc, "arc")).categoryID = late;
    add(makeInput(zun, "Zun")).categoryID = early;
    add(makeInput(arc, "arc")).categoryID = early;
    add(makeInput(arc, "arc"));

    std::vector<std::string> shown;
    for (const ScoreRow& row : split())
        shown.push_back(row.categoryName + ": " + row.modelName);

    EXPECT_EQ(shown, (std::vector<std::string>{"Alpha: arc", "Alpha: Zun", "beta: arc", "beta: Zun",
                                               "Uncategorized: arc"}));
}

TEST_F(ScoreMathTest, CategoriesThatDifferOnlyInCaseAreNotMixed) {
    const UUID upper = addCategory("Support");
    const UUID lower = addCategory("support");
    for (const char* name : {"C", "A", "B"}) {
        const UUID id = UUID::random();
        add(makeInput(id, name)).categoryID = lower;
        add(makeInput(id, name)).categoryID = upper;
    }

    std::vector<std::string> shown;
    for (const ScoreRow& row : split())
        shown.push_back(row.categoryName + ": " + row.modelName);

    EXPECT_EQ(shown, (std::vector<std::string>{"Support: A", "Support: B", "Support: C", "support: A",
                                               "support: B", "support: C"}));
}

// Powers of ten apart, so that a plain sum differs with the order.
TEST_F(ScoreMathTest, AnswersInAnotherOrderGiveTheSameRows) {
    const UUID root = addCategory("Support");
    addCategory("support");
    std::mt19937 random(5);
    const std::vector<UUID> models{UUID::random(), UUID::random(), UUID::random()};
    for (std::size_t i = 0; i < 3000; ++i) {
        auto& input = add(makeInput(models[i % 3], i % 3 == 2 ? "model" : "Model"));
        input.categoryID = i % 7 < 6 ? std::optional(i % 7 < 3 ? root : categories[1].id) : std::nullopt;
        input.costUSD = std::pow(10.0, static_cast<int>(random() % 12) - 8) * 1.1;
        input.latencyMS = static_cast<std::int64_t>(random() % 1000);
    }
    const auto overallRows = overall();
    const auto splitRows = split();

    for (int round = 0; round < 20; ++round) {
        std::ranges::shuffle(inputs, random);

        EXPECT_EQ(overall(), overallRows);
        EXPECT_EQ(split(), splitRows);
    }
}

TEST_F(ScoreMathTest, ASumPastTheLargestNumberStaysThere) {
    add().inputTokens = std::numeric_limits<std::int64_t>::max();
    add().inputTokens = 1;

    EXPECT_EQ(onlyRow().inputTokens, std::numeric_limits<std::int64_t>::max());
}

TEST_F(ScoreMathTest, AnInfiniteCostGivesAnInfiniteSum) {
    add().costUSD = std::numeric_limits<double>::infinity();
    add().costUSD = 1;

    EXPECT_EQ(onlyRow().costSum, std::numeric_limits<double>::infinity());
}

TEST_F(ScoreMathTest, DescendantsAreTheIdItselfAndAllBelowIt) {
    const UUID root = addCategory("Root");
    const UUID child = addCategory("Child", root);
    const UUID grandchild = addCategory("Grandchild", child);
    addCategory("Other");

    EXPECT_EQ(ScoreMath::descendantIDs(root, categories), (std::set{root, child, grandchild}));
    EXPECT_EQ(ScoreMath::descendantIDs(grandchild, categories), std::set{grandchild});
}

TEST_F(ScoreMathTest, CategoriesThatAreEachOthersParentsEndTheirWalk) {
    const UUID first = addCategory("First");
    const UUID second = addCategory("Second", first);
    categories[0].parentID = second;

    EXPECT_EQ(ScoreMath::descendantIDs(first, categories), (std::set{first, second}));
    EXPECT_EQ(ScoreMath::categoryName(first, categories),
              "Second / First / Second / First / Second / First / Second / First");
}

TEST_F(ScoreMathTest, ACategoryIsShownWithItsPath) {
    const UUID root = addCategory("Root");
    const UUID child = addCategory("Child", root);
    const UUID orphan = addCategory("Orphan", UUID::random());

    EXPECT_EQ(ScoreMath::categoryName(std::nullopt, categories), "Uncategorized");
    EXPECT_EQ(ScoreMath::categoryName(UUID::random(), categories), "");
    EXPECT_EQ(ScoreMath::categoryName(root, categories), "Root");
    EXPECT_EQ(ScoreMath::categoryName(child, categories), "Root / Child");
    EXPECT_EQ(ScoreMath::categoryName(orphan, categories), "Orphan");
}

TEST_F(ScoreMathTest, OfAChainNineDeepTheLowestEightNamesAreShown) {
    std::optional<UUID> last;
    for (int level = 1; level <= 9; ++level)
        last = addCategory(std::to_string(level), last);

    EXPECT_EQ(ScoreMath::categoryName(last, categories), "2 / 3 / 4 / 5 / 6 / 7 / 8 / 9");
}

} // namespace

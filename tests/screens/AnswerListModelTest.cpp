#include "screens/AnswerListModel.h"

#include "support/Builders.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <algorithm>

namespace quorl::test {
namespace {

class AnswerListModelTest : public testing::Test {
protected:
    QVariant shown(int row, int role) { return model.data(model.index(row), role); }

    std::vector<ModelAnswer> makeAnswers(int count) {
        std::vector<ModelAnswer> answers;
        for (int i = 0; i < count; ++i)
            answers.push_back(makeAnswer(run, i));
        return answers;
    }

    std::vector<UUID> shownIDs() {
        std::vector<UUID> ids;
        for (int row = 0; row < model.rowCount(); ++row)
            ids.push_back(*UUID::parse(shown(row, AnswerListModel::AnswerIDRole).toString().toStdString()));
        return ids;
    }

    static std::vector<UUID> idsOf(const std::vector<ModelAnswer>& answers) {
        std::vector<UUID> ids;
        for (const ModelAnswer& answer : answers)
            ids.push_back(answer.id);
        return ids;
    }

    const UUID run = UUID::random();
    AnswerListModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Warning};
};

TEST_F(AnswerListModelTest, SpeaksTheWordsOfTheCard) {
    ModelAnswer answer = makeAnswer(run);
    answer.modelName = "GPT-4.1";
    answer.text = "That way.";
    answer.latencyMS = 1234;
    answer.inputTokens = 1200;
    answer.outputTokens = 35;
    answer.tokensEstimated = true;
    answer.costUSD = 0;
    model.setRows(std::vector{answer}, QuorlKind::generation);

    EXPECT_EQ(shown(0, AnswerListModel::ModelNameRole), QStringLiteral("GPT-4.1"));
    EXPECT_EQ(shown(0, AnswerListModel::AnswerStateRole).toInt(), int(AnswerListModel::State::Done));
    EXPECT_EQ(shown(0, AnswerListModel::AnswerTextRole), QStringLiteral("That way."));
    EXPECT_EQ(shown(0, AnswerListModel::ErrorRole), QString());
    EXPECT_EQ(shown(0, AnswerListModel::TimeRole), QStringLiteral("Time: 1.2 s"));
    EXPECT_EQ(shown(0, AnswerListModel::TokensRole), QStringLiteral("Tokens: ~1.2k in · ~35 out"));
    EXPECT_EQ(shown(0, AnswerListModel::CostRole), QStringLiteral("Cost: $0"));
}

TEST_F(AnswerListModelTest, ADecisionShowsInLinesWhatItsTextHolds) {
    ModelAnswer answer = makeAnswer(run);
    answer.text = R"({"answers":{"is_it_wet":{"type":"noul","noul":0.875}},"model":"local"})";
    model.setRows(std::vector{answer}, QuorlKind::decision);

    EXPECT_EQ(shown(0, AnswerListModel::AnswerTextRole), QStringLiteral("local\nis_it_wet  ·  88% yes"));
}

TEST_F(AnswerListModelTest, AnUnknownCostIsNotSpokenOf) {
    ModelAnswer answer = makeAnswer(run);
    answer.costUSD = std::nullopt;
    model.setRows(std::vector{answer}, QuorlKind::generation);

    EXPECT_EQ(shown(0, AnswerListModel::CostRole), QString());
}

TEST_F(AnswerListModelTest, AFailureHasItsSentence) {
    ModelAnswer answer = makeAnswer(run);
    answer.state = AnswerState::failed;
    answer.errorMessage = "Rate limit %1 reached.";
    model.setRows(std::vector{answer}, QuorlKind::generation);

    EXPECT_EQ(shown(0, AnswerListModel::AnswerStateRole).toInt(), int(AnswerListModel::State::Failed));
    EXPECT_EQ(shown(0, AnswerListModel::ErrorRole), QStringLiteral("Rate limit %1 reached."));
}

TEST_F(AnswerListModelTest, BytesThatAreNotUTF8AreReplaced) {
    ModelAnswer answer = makeAnswer(run);
    answer.text = "a\xFFz";
    model.setRows(std::vector{answer}, QuorlKind::generation);

    EXPECT_EQ(shown(0, AnswerListModel::AnswerTextRole).toString(), QStringLiteral("a\uFFFDz"));
}

TEST_F(AnswerListModelTest, OnlyTheRowThatDiffersIsToldOf) {
    auto answers = makeAnswers(3);
    model.setRows(answers, QuorlKind::generation);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    answers[1].text = "The other way.";
    model.setRows(answers, QuorlKind::generation);

    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 1);
    EXPECT_EQ(inserted.size() + removed.size() + reset.size(), 0);
    EXPECT_EQ(shown(1, AnswerListModel::AnswerTextRole), QStringLiteral("The other way."));
}

TEST_F(AnswerListModelTest, RowsAreTakenAwayAddedAndMovedToTheirPlaces) {
    auto answers = makeAnswers(6);
    model.setRows(answers, QuorlKind::generation);

    answers.erase(answers.begin() + 4);
    answers.erase(answers.begin());
    std::reverse(answers.begin(), answers.end());
    answers.insert(answers.begin() + 1, makeAnswer(run, 9));
    answers.push_back(makeAnswer(run, 10));
    model.setRows(answers, QuorlKind::generation);

    EXPECT_EQ(shownIDs(), idsOf(answers));
}

TEST_F(AnswerListModelTest, AnotherRunReplacesAllRows) {
    model.setRows(makeAnswers(4), QuorlKind::generation);
    const auto others = makeAnswers(2);

    model.setRows(others, QuorlKind::generation);
    EXPECT_EQ(shownIDs(), idsOf(others));

    model.setRows({}, QuorlKind::generation);
    EXPECT_EQ(model.rowCount(), 0);
}

} // namespace
} // namespace quorl::test

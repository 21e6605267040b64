#include "screens/AnswerCardListModel.h"

#include "screens/AnswersHarness.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>

#include <algorithm>

namespace quorl::test {
namespace {

class AnswerCardListModelTest : public testing::Test {
protected:
    AnswerCardModel* card(int row) {
        return list.data(list.index(row), AnswerCardListModel::CardRole).value<AnswerCardModel*>();
    }

    std::vector<ModelAnswer> makeAnswers(int count) {
        std::vector<ModelAnswer> answers;
        for (int i = 0; i < count; ++i)
            answers.push_back(makeAnswer(run.id, i));
        return answers;
    }

    std::vector<UUID> shownIDs() {
        std::vector<UUID> ids;
        for (int row = 0; row < list.rowCount(); ++row)
            ids.push_back(card(row)->record().id);
        return ids;
    }

    static std::vector<UUID> idsOf(const std::vector<ModelAnswer>& answers) {
        std::vector<UUID> ids;
        for (const ModelAnswer& answer : answers)
            ids.push_back(answer.id);
        return ids;
    }

    AnswersHarness harness;
    AppModel& model = harness.start();
    const QuorlRun run = makeRun();
    AnswerCardListModel list{model, harness.clipboard};
    QAbstractItemModelTester tester{&list, QAbstractItemModelTester::FailureReportingMode::Warning};
};

TEST_F(AnswerCardListModelTest, ACardStaysTheSameWhenItsAnswerChanges) {
    auto answers = makeAnswers(3);
    list.showRun(&run, answers);
    const AnswerCardModel* const before = card(1);
    QSignalSpy data(&list, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&list, &QAbstractItemModel::modelReset);

    answers[1].text = "The other way.";
    list.showRun(&run, answers);

    EXPECT_EQ(card(1), before);
    EXPECT_EQ(card(1)->text(), QStringLiteral("The other way."));
    EXPECT_EQ(data.size() + reset.size(), 0);
}

TEST_F(AnswerCardListModelTest, RowsAreTakenAwayAddedAndMovedToTheirPlaces) {
    auto answers = makeAnswers(6);
    list.showRun(&run, answers);

    answers.erase(answers.begin() + 4);
    answers.erase(answers.begin());
    std::reverse(answers.begin(), answers.end());
    answers.insert(answers.begin() + 1, makeAnswer(run.id, 9));
    answers.push_back(makeAnswer(run.id, 10));
    list.showRun(&run, answers);

    EXPECT_EQ(shownIDs(), idsOf(answers));
}

TEST_F(AnswerCardListModelTest, AnotherRunReplacesAllRows) {
    list.showRun(&run, makeAnswers(4));
    QuorlRun other = makeRun(QuorlKind::decision);
    other.scoringMode = ScoringMode::scale;
    const auto others = makeAnswers(2);

    list.showRun(&other, others);
    EXPECT_EQ(shownIDs(), idsOf(others));
    EXPECT_TRUE(card(0)->isDecision());
    EXPECT_TRUE(card(0)->isRated1To10());

    list.showRun(nullptr, {});
    EXPECT_EQ(list.rowCount(), 0);
}

TEST_F(AnswerCardListModelTest, ACardThatIsGoneStaysUntilTheEndOfTheTurn) {
    const auto answers = makeAnswers(2);
    list.showRun(&run, answers);
    const QPointer<AnswerCardModel> gone = card(1);

    list.showRun(&run, std::span(answers).first(1));
    EXPECT_NE(gone, nullptr);

    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(gone, nullptr);
}

TEST_F(AnswerCardListModelTest, TellsWhichAnswersHaveCome) {
    auto answers = makeAnswers(3);
    for (ModelAnswer& answer : answers)
        answer.state = AnswerState::running;
    EXPECT_TRUE(list.showRun(&run, answers).empty());

    answers[0].state = AnswerState::done;
    answers[2].state = AnswerState::failed;
    EXPECT_EQ(list.showRun(&run, answers), (std::vector<const AnswerCardModel*>{card(0), card(2)}));
    EXPECT_TRUE(list.showRun(&run, answers).empty());
}

} // namespace
} // namespace quorl::test

#include "screens/QuestionListModel.h"

#include "decision/Veritor.h"
#include "screens/ScreenHarness.h"

#include <QAbstractItemModelTester>

namespace quorl::test {
namespace {

class QuestionListModelTest : public testing::Test {
protected:
    // The list of a draft of those questions.
    QuestionListModel& show(const std::vector<DecisionQuestion>& questions = {makeQuestion()}) {
        harness.defaults.setString("draft.questions", Veritor::archive(questions));
        return *harness.show().draft()->questions();
    }

    static DecisionQuestion makeQuestion() {
        DecisionQuestion question = DecisionQuestion::starter();
        question.instructions = "Which room?";
        question.options[0].label = "The large one";
        question.options[1].label = "The small one";
        question.levels = {"bad", "good"};
        question.yesMeans = "There is one";
        question.noMeans = "There is none";
        return question;
    }

    static QString idOf(const DecisionQuestion& question) {
        return QString::fromStdString(question.id.text());
    }
    static QVariant read(QuestionListModel& list, int role, int row = 0) {
        return list.data(list.index(row), role);
    }

    const std::vector<DecisionQuestion>& draft() { return *harness.model().draftQuestions; }

    ScreenHarness harness;
};

TEST_F(QuestionListModelTest, ShowsEachQuestionWithAllThatAnyTypeNeeds) {
    const DecisionQuestion question = makeQuestion();
    QuestionListModel& list = show({question});

    ASSERT_EQ(list.rowCount(), 1);
    EXPECT_EQ(read(list, QuestionListModel::QuestionIDRole), idOf(question));
    EXPECT_EQ(read(list, QuestionListModel::QuestionTypeRole).toInt(), int(QuestionListModel::Type::Choice));
    EXPECT_EQ(read(list, QuestionListModel::InstructionsRole), QStringLiteral("Which room?"));
    EXPECT_EQ(read(list, QuestionListModel::OptionLabelsRole),
              QStringList({QStringLiteral("The large one"), QStringLiteral("The small one")}));
    EXPECT_EQ(read(list, QuestionListModel::LevelsRole),
              QStringList({QStringLiteral("bad"), QStringLiteral("good")}));
    EXPECT_EQ(read(list, QuestionListModel::CanAddLevelRole), true);
    EXPECT_EQ(read(list, QuestionListModel::YesMeansRole), QStringLiteral("There is one"));
    EXPECT_EQ(read(list, QuestionListModel::NoMeansRole), QStringLiteral("There is none"));
}

TEST_F(QuestionListModelTest, EveryEditReachesItsFieldOfTheDraftAndTheSettings) {
    DecisionQuestion expected = makeQuestion();
    QuestionListModel& list = show({expected});
    const QString id = idOf(expected);

    list.editInstructions(id, QStringLiteral("Où?"));
    list.editOption(id, QString::fromStdString(expected.options[1].id.text()), QStringLiteral("Neither"));
    list.editLevel(id, 0, QStringLiteral("worst"));
    list.editYesMeans(id, QStringLiteral("Oui"));
    list.editNoMeans(id, QStringLiteral("Non"));
    list.setType(id, QuestionListModel::Type::Score);
    ScreenHarness::endTurn();

    expected.instructions = "Où?";
    expected.options[1].label = "Neither";
    expected.levels[0] = "worst";
    expected.yesMeans = "Oui";
    expected.noMeans = "Non";
    expected.type = DecisionQuestionType::score;
    EXPECT_EQ(draft(), std::vector{expected});
    EXPECT_EQ(harness.defaults.string("draft.questions"), Veritor::archive({expected}));
    EXPECT_EQ(read(list, QuestionListModel::InstructionsRole), QStringLiteral("Où?"));
}

TEST_F(QuestionListModelTest, AnotherTypeLosesNothing) {
    const DecisionQuestion question = makeQuestion();
    QuestionListModel& list = show({question});

    for (const auto type :
         {QuestionListModel::Type::YesNo, QuestionListModel::Type::Score, QuestionListModel::Type::Choice})
        list.setType(idOf(question), type);

    EXPECT_EQ(draft(), std::vector{question});
}

TEST_F(QuestionListModelTest, AnEditOfWhatHasGoneChangesNothing) {
    const DecisionQuestion question = makeQuestion();
    const QString gone = QString::fromStdString(UUID::random().text());
    QuestionListModel& list = show({question});

    list.editInstructions(gone, QStringLiteral("x"));
    list.editOption(idOf(question), gone, QStringLiteral("x"));
    list.editLevel(idOf(question), 2, QStringLiteral("x"));
    list.editLevel(idOf(question), -1, QStringLiteral("x"));
    list.addOption(gone);
    list.addLevel(QStringLiteral("no identifier"));
    list.setType(gone, QuestionListModel::Type::YesNo);
    list.removeQuestion(gone);

    EXPECT_EQ(draft(), std::vector{question});
}

TEST_F(QuestionListModelTest, WhatAnEditorMakesOfATextByItselfIsNoEdit) {
    DecisionQuestion question = makeQuestion();
    question.instructions = "one\r\ntwo";
    QuestionListModel& list = show({question});

    list.editInstructions(idOf(question), QStringLiteral("one\ntwo"));

    EXPECT_EQ(draft()[0].instructions, "one\r\ntwo");
}

TEST_F(QuestionListModelTest, QuestionsAreAddedAtTheEndAndRemovedByTheirId) {
    const DecisionQuestion first = makeQuestion();
    const DecisionQuestion second = makeQuestion();
    QuestionListModel& list = show({first, second});
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Warning);

    list.addQuestion();
    ScreenHarness::endTurn();
    EXPECT_EQ(list.rowCount(), 3);
    EXPECT_EQ(draft()[2].instructions, "");
    EXPECT_EQ(draft()[2].options.size(), 2u);

    list.removeQuestion(idOf(second));
    ScreenHarness::endTurn();
    EXPECT_EQ(list.rowCount(), 2);
    EXPECT_EQ(draft()[0], first);
}

TEST_F(QuestionListModelTest, TheLastQuestionStays) {
    const DecisionQuestion question = makeQuestion();
    QuestionListModel& list = show({question});

    list.removeQuestion(idOf(question));

    EXPECT_EQ(draft(), std::vector{question});
}

TEST_F(QuestionListModelTest, ChoicesAreAdded) {
    QuestionListModel& list = show();

    list.addOption(read(list, QuestionListModel::QuestionIDRole).toString());
    ScreenHarness::endTurn();

    EXPECT_EQ(draft()[0].options.size(), 3u);
    EXPECT_EQ(read(list, QuestionListModel::OptionIDsRole).toStringList().size(), 3);
}

TEST_F(QuestionListModelTest, LevelsAreAddedUpToTen) {
    QuestionListModel& list = show();
    const QString id = read(list, QuestionListModel::QuestionIDRole).toString();

    for (int i = 0; i < 9; ++i)
        list.addLevel(id);
    ScreenHarness::endTurn();

    EXPECT_EQ(draft()[0].levels.size(), 10u);
    EXPECT_EQ(read(list, QuestionListModel::CanAddLevelRole), false);
}

} // namespace
} // namespace quorl::test

#include "screens/QuestionEditor.h"

#include "decision/Veritor.h"
#include "screens/ScreenHarness.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace quorl::test {
namespace {

// The same editor serves a question of the draft and the template of the bulk list.
class QuestionEditorTest : public testing::Test {
protected:
    // The editor of a draft of that question and a neighbour.
    QuestionEditor& show(const DecisionQuestion& question = makeQuestion()) {
        harness.defaults.setString("draft.questions", Veritor::archive({question, neighbour}));
        return *harness.show().draft()->questions()->editorAt(0);
    }

    static DecisionQuestion makeQuestion() {
        DecisionQuestion question = DecisionQuestion::starter();
        question.instructions = "Which room?";
        question.name = "room";
        question.options[0].label = "The large one";
        question.options[1].label = "The small one";
        question.options[1].detail = "With one window";
        question.levels = {"bad", "good"};
        question.yesMeans = "There is one";
        question.noMeans = "There is none";
        return question;
    }

    static QString option(QuestionEditor& editor, int row, int role) {
        return editor.options()->data(editor.options()->index(row), role).toString();
    }
    static QString levelID(QuestionEditor& editor, int row) {
        return editor.levels()
            ->data(editor.levels()->index(row), ScoreLevelListModel::LevelIDRole)
            .toString();
    }
    static std::vector<QString> levelIDs(QuestionEditor& editor) {
        std::vector<QString> ids;
        for (int row = 0; row < editor.levels()->rowCount(); ++row)
            ids.push_back(levelID(editor, row));
        return ids;
    }

    const DecisionQuestion& draft() { return harness.model().draftQuestions->front(); }

    const DecisionQuestion neighbour = makeQuestion();
    ScreenHarness harness;
};

TEST_F(QuestionEditorTest, ShowsAllThatAnyTypeNeeds) {
    QuestionEditor& editor = show();

    EXPECT_EQ(editor.type(), QuestionEditor::Type::Choice);
    EXPECT_EQ(editor.instructions(), QStringLiteral("Which room?"));
    EXPECT_EQ(editor.name(), QStringLiteral("room"));
    ASSERT_EQ(editor.options()->rowCount(), 2);
    EXPECT_EQ(option(editor, 0, OptionListModel::LabelRole), QStringLiteral("The large one"));
    EXPECT_EQ(option(editor, 1, OptionListModel::DetailRole), QStringLiteral("With one window"));
    ASSERT_EQ(editor.levels()->rowCount(), 2);
    EXPECT_EQ(editor.levels()->data(editor.levels()->index(1), ScoreLevelListModel::LevelTextRole),
              QStringLiteral("good"));
    EXPECT_EQ(editor.yesMeans(), QStringLiteral("There is one"));
    EXPECT_EQ(editor.noMeans(), QStringLiteral("There is none"));
}

TEST_F(QuestionEditorTest, EveryEditReachesItsFieldOfTheDraftAndTheSettings) {
    DecisionQuestion expected = makeQuestion();
    QuestionEditor& editor = show(expected);

    editor.editInstructions(QStringLiteral("Où?"));
    editor.editName(QStringLiteral("place"));
    editor.editOption(option(editor, 1, OptionListModel::OptionIDRole), QStringLiteral("Neither"));
    editor.editOptionDetail(option(editor, 0, OptionListModel::OptionIDRole), QStringLiteral("Forty seats"));
    editor.editLevel(levelID(editor, 0), QStringLiteral("worst"));
    editor.editYesMeans(QStringLiteral("Oui"));
    editor.editNoMeans(QStringLiteral("Non"));
    editor.setType(QuestionEditor::Type::Score);
    ScreenHarness::endTurn();

    expected.instructions = "Où?";
    expected.name = "place";
    expected.options[1].label = "Neither";
    expected.options[0].detail = "Forty seats";
    expected.levels[0] = "worst";
    expected.yesMeans = "Oui";
    expected.noMeans = "Non";
    expected.type = DecisionQuestionType::score;
    EXPECT_EQ(*harness.model().draftQuestions, (std::vector{expected, neighbour}));
    EXPECT_EQ(harness.defaults.string("draft.questions"), Veritor::archive({expected, neighbour}));
    EXPECT_EQ(editor.instructions(), QStringLiteral("Où?"));
}

TEST_F(QuestionEditorTest, AnotherTypeLosesNothing) {
    const DecisionQuestion question = makeQuestion();
    QuestionEditor& editor = show(question);

    for (const auto type :
         {QuestionEditor::Type::YesNo, QuestionEditor::Type::Score, QuestionEditor::Type::Choice})
        editor.setType(type);

    EXPECT_EQ(draft(), question);
}

TEST_F(QuestionEditorTest, WhatAnEditorMakesOfATextByItselfIsNoEdit) {
    DecisionQuestion question = makeQuestion();
    question.instructions = "one\r\ntwo";
    QuestionEditor& editor = show(question);

    editor.editInstructions(QStringLiteral("one\ntwo"));

    EXPECT_EQ(draft().instructions, "one\r\ntwo");
}

TEST_F(QuestionEditorTest, AnEditOfAnOptionOrLevelThatHasGoneChangesNothing) {
    const DecisionQuestion question = makeQuestion();
    QuestionEditor& editor = show(question);

    for (const QString& gone :
         {QString::fromStdString(UUID::random().text()), QStringLiteral("no identifier")}) {
        editor.editOption(gone, QStringLiteral("x"));
        editor.editOptionDetail(gone, QStringLiteral("x"));
        editor.removeOption(gone);
        editor.editLevel(gone, QStringLiteral("x"));
        editor.removeLevel(gone);
    }

    EXPECT_EQ(draft(), question);
}

TEST_F(QuestionEditorTest, ChoicesAreAddedAndRemovedButTwoRemain) {
    QuestionEditor& editor = show();
    const QAbstractItemModelTester tester(editor.options(),
                                          QAbstractItemModelTester::FailureReportingMode::Warning);
    EXPECT_FALSE(editor.canRemoveOption());

    editor.addOption();
    EXPECT_TRUE(editor.canRemoveOption());
    EXPECT_EQ(option(editor, 2, OptionListModel::LabelRole), QString());

    editor.removeOption(option(editor, 0, OptionListModel::OptionIDRole));
    EXPECT_EQ(option(editor, 0, OptionListModel::LabelRole), QStringLiteral("The small one"));
    EXPECT_FALSE(editor.canRemoveOption());

    editor.removeOption(option(editor, 0, OptionListModel::OptionIDRole));
    EXPECT_EQ(draft().options.size(), 2u);
}

TEST_F(QuestionEditorTest, LevelsAreAddedUpToTenAndRemovedDownToTwo) {
    QuestionEditor& editor = show();
    const QAbstractItemModelTester tester(editor.levels(),
                                          QAbstractItemModelTester::FailureReportingMode::Warning);
    EXPECT_FALSE(editor.canRemoveLevel());

    for (int presses = 0; presses < 9; ++presses)
        editor.addLevel();
    EXPECT_EQ(draft().levels.size(), 10u);
    EXPECT_FALSE(editor.canAddLevel());
    EXPECT_TRUE(editor.canRemoveLevel());

    for (int presses = 0; presses < 9; ++presses)
        editor.removeLevel(levelID(editor, editor.levels()->rowCount() - 1));
    EXPECT_EQ(draft().levels, (std::vector<std::string>{"bad", "good"}));
    EXPECT_TRUE(editor.canAddLevel());
    EXPECT_FALSE(editor.canRemoveLevel());
}

TEST_F(QuestionEditorTest, ALevelKeepsItsIdentityWhenALowerOneGoes) {
    DecisionQuestion question = makeQuestion();
    question.levels = {"", "", "", "best"};
    QuestionEditor& editor = show(question);
    const std::vector<QString> before = levelIDs(editor);

    editor.removeLevel(before[1]);
    EXPECT_EQ(levelIDs(editor), (std::vector{before[0], before[2], before[3]}));

    editor.editLevel(before[1], QStringLiteral("x"));
    EXPECT_EQ(draft().levels, (std::vector<std::string>{"", "", "best"}));
    editor.editLevel(before[2], QStringLiteral("middle"));
    ScreenHarness::endTurn();
    EXPECT_EQ(draft().levels, (std::vector<std::string>{"", "middle", "best"}));
    EXPECT_EQ(levelIDs(editor), (std::vector{before[0], before[2], before[3]}));
}

TEST_F(QuestionEditorTest, LevelsFromElsewhereKeepTheIdentityOfThoseThatAreTheSame) {
    DecisionQuestion question = makeQuestion();
    question.levels = {"bad", "fair", "good"};
    QuestionEditor& editor = show(question);
    const std::vector<QString> before = levelIDs(editor);

    question.levels = {"bad", "fair", "fine", "good"};
    harness.model().draftQuestions = std::vector{question};
    ScreenHarness::endTurn();

    const std::vector<QString> after = levelIDs(editor);
    ASSERT_EQ(after.size(), 4u);
    EXPECT_EQ((std::vector{after[0], after[1], after[3]}), before);
}

TEST_F(QuestionEditorTest, NumbersReplaceTheLevels) {
    QuestionEditor& editor = show();

    editor.useNumbers(5);
    EXPECT_EQ(draft().levels, (std::vector<std::string>{"1", "2", "3", "4", "5"}));
    editor.useNumbers(10);
    EXPECT_EQ(draft().levels.size(), 10u);
    EXPECT_EQ(draft().levels[9], "10");
    editor.useNumbers(5);
    EXPECT_EQ(draft().levels.size(), 5u);
}

TEST_F(QuestionEditorTest, TheTemplateOfTheBulkListIsEditedInTheDraft) {
    QuestionEditor& editor = show();
    QuestionEditor& bulkTemplate = *harness.root().draft()->bulkTemplate();

    bulkTemplate.setType(QuestionEditor::Type::Score);
    bulkTemplate.editLevel(levelID(bulkTemplate, 0), QStringLiteral("low"));
    ScreenHarness::endTurn();

    EXPECT_EQ(harness.model().draftBulkTemplate->type, DecisionQuestionType::score);
    EXPECT_EQ(harness.model().draftBulkTemplate->levels[0], "low");
    EXPECT_EQ(harness.defaults.string("draft.bulkTemplate"),
              Veritor::archive({*harness.model().draftBulkTemplate}));
    EXPECT_EQ(editor.type(), QuestionEditor::Type::Choice);
}

TEST_F(QuestionEditorTest, AnotherTemplateHasOtherLevelsAndTakesNoEditOfTheOldOnes) {
    show();
    QuestionEditor& editor = *harness.root().draft()->bulkTemplate();
    const QString old = levelID(editor, 0);
    QSignalSpy typeChanged(&editor, &QuestionEditor::typeChanged);

    DecisionQuestion next = makeQuestion();
    next.type = DecisionQuestionType::noul;
    harness.model().draftBulkTemplate = next;
    editor.addLevel(); // of a question that is no longer there
    EXPECT_EQ(*harness.model().draftBulkTemplate, next);
    ScreenHarness::endTurn();
    editor.editLevel(old, QStringLiteral("x"));

    EXPECT_EQ(*harness.model().draftBulkTemplate, next);
    EXPECT_EQ(typeChanged.size(), 1);
    EXPECT_EQ(editor.type(), QuestionEditor::Type::YesNo);
}

} // namespace
} // namespace quorl::test

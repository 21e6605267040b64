#include "screens/QuestionListModel.h"

#include "decision/Veritor.h"
#include "screens/ScreenHarness.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>

namespace quorl::test {
namespace {

class QuestionListModelTest : public testing::Test {
protected:
    // The list of a draft of those questions.
    QuestionListModel& show(const std::vector<DecisionQuestion>& questions) {
        harness.defaults.setString("draft.questions", Veritor::archive(questions));
        return *harness.show().draft()->questions();
    }

    static DecisionQuestion makeQuestion(const char* instructions) {
        DecisionQuestion question = DecisionQuestion::starter();
        question.instructions = instructions;
        return question;
    }

    static QString idOf(const DecisionQuestion& question) {
        return QString::fromStdString(question.id.text());
    }

    const std::vector<DecisionQuestion>& draft() { return *harness.model().draftQuestions; }

    ScreenHarness harness;
};

TEST_F(QuestionListModelTest, EachQuestionHasItsEditor) {
    const DecisionQuestion first = makeQuestion("Which room?");
    const DecisionQuestion second = makeQuestion("Which day?");
    QuestionListModel& list = show({first, second});

    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_EQ(list.data(list.index(1), QuestionListModel::QuestionIDRole), idOf(second));
    EXPECT_EQ(list.data(list.index(1), QuestionListModel::EditorRole).value<QuestionEditor*>(),
              list.editorAt(1));
    EXPECT_EQ(list.editorAt(1)->instructions(), QStringLiteral("Which day?"));
    EXPECT_EQ(list.first()->instructions(), QStringLiteral("Which room?"));
}

TEST_F(QuestionListModelTest, QuestionsAreAddedAtTheEndAndRemovedByTheirId) {
    const DecisionQuestion first = makeQuestion("Which room?");
    const DecisionQuestion second = makeQuestion("Which day?");
    QuestionListModel& list = show({first, second});
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Warning);
    QSignalSpy added(&list, &QuestionListModel::questionAdded);

    list.addQuestion();
    EXPECT_EQ(list.rowCount(), 3);
    EXPECT_EQ(draft()[2].instructions, "");
    EXPECT_EQ(draft()[2].options.size(), 2u);
    ASSERT_EQ(added.size(), 1);
    EXPECT_EQ(added[0][0], 2);

    list.removeQuestion(idOf(second));
    EXPECT_EQ(list.rowCount(), 2);
    EXPECT_EQ(draft()[0], first);
    ScreenHarness::endTurn();
    EXPECT_EQ(harness.defaults.string("draft.questions"), Veritor::archive(draft()));
}

TEST_F(QuestionListModelTest, TheLastQuestionStays) {
    const DecisionQuestion question = makeQuestion("Which room?");
    QuestionListModel& list = show({question});

    list.removeQuestion(idOf(question));
    list.removeQuestion(QStringLiteral("no identifier"));

    EXPECT_EQ(draft(), std::vector{question});
}

TEST_F(QuestionListModelTest, TheEditorOfARemovedQuestionShowsItStillAndWritesNowhere) {
    const DecisionQuestion first = makeQuestion("Which room?");
    const DecisionQuestion second = makeQuestion("Which day?");
    QuestionListModel& list = show({first, second});
    const QPointer<QuestionEditor> gone = list.editorAt(0);

    list.removeQuestion(idOf(first));
    ASSERT_NE(gone, nullptr);
    gone->editInstructions(QStringLiteral("x"));
    gone->editName(QStringLiteral("x"));
    gone->setType(QuestionEditor::Type::Score);
    gone->addOption();
    gone->addLevel();

    EXPECT_EQ(gone->instructions(), QStringLiteral("Which room?"));
    EXPECT_EQ(draft(), std::vector{second});
    QCoreApplication::sendPostedEvents(gone, QEvent::DeferredDelete);
    EXPECT_EQ(gone, nullptr);
}

TEST_F(QuestionListModelTest, TheFirstOneIsToldWhenItIsAnother) {
    const DecisionQuestion second = makeQuestion("Which day?");
    const DecisionQuestion first = makeQuestion("Which room?");
    QuestionListModel& list = show({first, second});
    QSignalSpy firstChanged(&list, &QuestionListModel::firstChanged);

    list.editorAt(1)->editInstructions(QStringLiteral("When?"));
    EXPECT_EQ(firstChanged.size(), 0);

    list.removeQuestion(idOf(first));
    EXPECT_EQ(firstChanged.size(), 1);
    EXPECT_EQ(list.first()->instructions(), QStringLiteral("When?"));
}

TEST_F(QuestionListModelTest, QuestionsFromElsewhereTakeThePlaceOfTheOthers) {
    QuestionListModel& list = show({makeQuestion("Which room?")});
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Warning);

    harness.model().draftQuestions = std::vector{makeQuestion("Who?"), makeQuestion("When?")};
    ScreenHarness::endTurn();

    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_EQ(list.editorAt(0)->instructions(), QStringLiteral("Who?"));
    EXPECT_EQ(list.editorAt(1)->instructions(), QStringLiteral("When?"));
}

} // namespace
} // namespace quorl::test

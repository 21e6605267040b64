#include "screens/BulkQuestionListModel.h"

#include "screens/ScreenHarness.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace quorl::test {
namespace {

class BulkQuestionListModelTest : public testing::Test {
protected:
    BulkQuestionListModel& show(const std::vector<std::string>& texts) {
        std::vector<BulkQuestion> questions;
        for (const std::string& text : texts)
            questions.push_back({UUID::random(), text});
        harness.defaults.setBytes("draft.bulkQuestions", Veritor::archiveBulk(questions));
        harness.defaults.setBoolean("draft.bulk", true);
        return *harness.show().draft()->bulkQuestions();
    }

    QString idAt(std::size_t place) {
        return QString::fromStdString(harness.model().draftBulkQuestions->at(place).id.text());
    }

    std::vector<std::string> texts() {
        std::vector<std::string> result;
        for (const BulkQuestion& question : *harness.model().draftBulkQuestions)
            result.push_back(question.text);
        return result;
    }

    ScreenHarness harness;
};

using Texts = std::vector<std::string>;

TEST_F(BulkQuestionListModelTest, AnEditGoesToItsRowAndIntoTheSettings) {
    BulkQuestionListModel& list = show({"one", "two"});
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Warning);

    list.edit(idAt(1), QStringLiteral("zwei "));
    ScreenHarness::endTurn();

    EXPECT_EQ(texts(), (Texts{"one", "zwei "}));
    EXPECT_EQ(harness.defaults.bytes("draft.bulkQuestions"),
              Veritor::archiveBulk(*harness.model().draftBulkQuestions));
    EXPECT_EQ(list.data(list.index(1), BulkQuestionListModel::TextRole), QStringLiteral("zwei "));
    EXPECT_EQ(list.data(list.index(1), BulkQuestionListModel::BulkIDRole), idAt(1));
}

TEST_F(BulkQuestionListModelTest, ARowThatHasGoneTakesNoEdit) {
    BulkQuestionListModel& list = show({"one", "two"});
    const QString gone = idAt(0);
    list.remove(gone);

    list.edit(gone, QStringLiteral("x"));
    list.duplicate(gone);
    list.advance(gone);
    list.remove(gone);

    EXPECT_EQ(texts(), Texts{"two"});
}

TEST_F(BulkQuestionListModelTest, ACopyIsAppendedWithAnIdOfItsOwn) {
    BulkQuestionListModel& list = show({"one", "two"});

    list.duplicate(idAt(0));

    EXPECT_EQ(texts(), (Texts{"one", "two", "one"}));
    EXPECT_NE(idAt(2), idAt(0));
}

TEST_F(BulkQuestionListModelTest, EvenTheLastRowCanGo) {
    BulkQuestionListModel& list = show({"one"});

    list.remove(idAt(0));
    EXPECT_EQ(list.count(), 0);

    list.add();
    EXPECT_EQ(texts(), Texts{""});
}

TEST_F(BulkQuestionListModelTest, TheTwoHundredthRowIsTheLast) {
    BulkQuestionListModel& list = show(Texts(199, "why"));
    EXPECT_TRUE(list.canAdd());

    list.add();
    EXPECT_FALSE(list.canAdd());
    list.add();
    list.duplicate(idAt(0));
    list.advance(idAt(199));

    EXPECT_EQ(list.count(), 200);
}

TEST_F(BulkQuestionListModelTest, ReturnGoesOnToTheNextRowAndFromTheLastToANewOne) {
    BulkQuestionListModel& list = show({"one", "two"});
    QSignalSpy caret(&list, &BulkQuestionListModel::caretRequested);

    list.advance(idAt(0));
    list.advance(idAt(1));

    EXPECT_EQ(texts(), (Texts{"one", "two", ""}));
    ASSERT_EQ(caret.size(), 2);
    EXPECT_EQ(caret[0][0], 1);
    EXPECT_EQ(caret[1][0], 2);
}

TEST_F(BulkQuestionListModelTest, SeveralLinesPastedIntoARowBecomeRows) {
    BulkQuestionListModel& list = show({"first", "", "last"});
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Warning);
    QSignalSpy caret(&list, &BulkQuestionListModel::caretRequested);

    list.edit(idAt(1), QStringLiteral("one\r\n\n  two\u2028three\n"));

    EXPECT_EQ(texts(), (Texts{"first", "one", "two", "three", "last"}));
    ASSERT_EQ(caret.size(), 1);
    EXPECT_EQ(caret[0][0], 3);
}

TEST_F(BulkQuestionListModelTest, LinesWithoutRoomAreLostNowhere) {
    BulkQuestionListModel& list = show(Texts(199, "why"));
    PastedQuestions& pasted = *harness.root().draft()->pasted();
    pasted.edit(QStringLiteral("from before"));

    list.edit(idAt(0), QStringLiteral("one\ntwo\nthree"));

    EXPECT_EQ(list.count(), 199);
    EXPECT_EQ(texts()[0], "one");
    EXPECT_TRUE(pasted.isOpen());
    EXPECT_EQ(pasted.text(), QStringLiteral("from before\ntwo\nthree"));
}

TEST_F(BulkQuestionListModelTest, AQuestionThatHasSeveralLinesAlreadyStaysOne) {
    BulkQuestionListModel& list = show({"one\ntwo"});

    list.edit(idAt(0), QStringLiteral("one\ntwo!"));

    EXPECT_EQ(texts(), Texts{"one\ntwo!"});
}

TEST_F(BulkQuestionListModelTest, RowsFromElsewhereAreShown) {
    BulkQuestionListModel& list = show({"one"});
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Warning);
    QSignalSpy countChanged(&list, &BulkQuestionListModel::countChanged);

    harness.model().draftBulkQuestions = std::vector<BulkQuestion>(7);
    ScreenHarness::endTurn();

    EXPECT_EQ(list.count(), 7);
    EXPECT_EQ(countChanged.size(), 1);
}

} // namespace
} // namespace quorl::test

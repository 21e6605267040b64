#include "screens/PastedQuestions.h"

#include "screens/ScreenHarness.h"

#include <QSignalSpy>

namespace quorl::test {
namespace {

class PastedQuestionsTest : public testing::Test {
protected:
    PastedQuestions& show(std::size_t filled, std::size_t blank) {
        std::vector<BulkQuestion> questions(filled, BulkQuestion{UUID::random(), "why"});
        for (BulkQuestion& question : questions)
            question.id = UUID::random();
        for (std::size_t i = 0; i < blank; ++i)
            questions.push_back({UUID::random(), i % 2 ? "" : " \t"});
        harness.defaults.setBytes("draft.bulkQuestions", Veritor::archiveBulk(questions));
        return *harness.show().draft()->pasted();
    }

    const QString tooLong = QStringLiteral("A batch can hold up to 200 questions.");

    static QString lines(int count) { return QStringLiteral("how\n").repeated(count); }

    const std::vector<BulkQuestion>& draft() { return *harness.model().draftBulkQuestions; }

    ScreenHarness harness;
};

TEST_F(PastedQuestionsTest, CountsTheLinesThatSaySomething) {
    PastedQuestions& pasted = show(0, 1);
    EXPECT_EQ(pasted.addLabel(), QStringLiteral("Add 0 questions"));
    EXPECT_FALSE(pasted.canAdd());

    pasted.edit(QStringLiteral(" one \r\n\r\n\u2003\n\ttwo\rthree\u2029four\n"));

    EXPECT_EQ(pasted.addLabel(), QStringLiteral("Add 4 questions"));
    EXPECT_TRUE(pasted.canAdd());
    EXPECT_EQ(pasted.problem(), QString());
}

TEST_F(PastedQuestionsTest, ASingleLineIsCountedInTheSameWords) {
    PastedQuestions& pasted = show(0, 1);

    pasted.edit(QStringLiteral("one"));

    EXPECT_EQ(pasted.addLabel(), QStringLiteral("Add 1 questions"));
}

TEST_F(PastedQuestionsTest, AddingTakesThePlaceOfTheBlankRowsAndClosesTheSheet) {
    PastedQuestions& pasted = show(1, 2);
    pasted.open();
    pasted.edit(QStringLiteral("  one\ntwo  "));

    pasted.add();

    ASSERT_EQ(draft().size(), 3u);
    EXPECT_EQ(draft()[0].text, "why");
    EXPECT_EQ(draft()[1].text, "one");
    EXPECT_EQ(draft()[2].text, "two");
    EXPECT_NE(draft()[1].id, draft()[2].id);
    EXPECT_EQ(pasted.text(), QString());
    EXPECT_EQ(pasted.addLabel(), QStringLiteral("Add 0 questions"));
    EXPECT_FALSE(pasted.isOpen());
    ScreenHarness::endTurn();
    EXPECT_EQ(harness.defaults.bytes("draft.bulkQuestions"), Veritor::archiveBulk(draft()));
}

TEST_F(PastedQuestionsTest, AFreshListEndsWithJustTheLines) {
    PastedQuestions& pasted = *harness.show().draft()->pasted();
    pasted.edit(lines(3));

    pasted.add();

    EXPECT_EQ(draft().size(), 3u);
}

TEST_F(PastedQuestionsTest, TooManyTogetherAreSaidAndCannotBeAdded) {
    PastedQuestions& pasted = show(60, 3);
    pasted.open();
    pasted.edit(lines(150));
    EXPECT_EQ(pasted.problem(), tooLong);
    EXPECT_FALSE(pasted.canAdd());

    pasted.add();
    EXPECT_EQ(draft().size(), 63u);
    EXPECT_TRUE(pasted.isOpen());

    pasted.edit(lines(140));
    EXPECT_EQ(pasted.problem(), QString());
    pasted.add();
    EXPECT_EQ(draft().size(), 200u);
}

TEST_F(PastedQuestionsTest, CancellingKeepsTheText) {
    PastedQuestions& pasted = show(0, 1);
    pasted.open();
    pasted.edit(QStringLiteral("one"));

    pasted.close();
    pasted.open();

    EXPECT_EQ(pasted.text(), QStringLiteral("one"));
    EXPECT_EQ(draft().size(), 1u);
}

TEST_F(PastedQuestionsTest, ALongerListIsCountedWhenTheSheetOpensAgain) {
    PastedQuestions& pasted = show(1, 0);
    pasted.edit(lines(150));
    ASSERT_TRUE(pasted.canAdd());
    QSignalSpy linesChanged(&pasted, &PastedQuestions::linesChanged);

    harness.model().draftBulkQuestions = std::vector<BulkQuestion>(51, BulkQuestion{UUID::random(), "why"});
    ScreenHarness::endTurn();
    pasted.open();

    EXPECT_EQ(pasted.problem(), tooLong);
    EXPECT_GE(linesChanged.size(), 1);
}

TEST_F(PastedQuestionsTest, WhatIsWrongIsReadOnceAndAgainWhenTheSheetOpens) {
    PastedQuestions& pasted = show(60, 0);
    const Announcer& announcer = *harness.root().announcer();
    const QSignalSpy announced(&announcer, &Announcer::announced);
    pasted.open();
    pasted.edit(lines(140));
    EXPECT_EQ(announced.count(), 0);

    pasted.edit(lines(141));
    EXPECT_EQ(announcer.words(), tooLong);
    pasted.edit(lines(142));
    EXPECT_EQ(announced.count(), 1);

    pasted.close();
    pasted.open();
    EXPECT_EQ(announced.count(), 2);
}

} // namespace
} // namespace quorl::test

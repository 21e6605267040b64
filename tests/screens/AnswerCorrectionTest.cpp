#include "screens/AnswerCorrection.h"

#include "base/Json.h"
#include "decision/VeritorResults.h"
#include "screens/AnswersHarness.h"

#include <QSignalSpy>

namespace quorl::test {
namespace {

constexpr const char* twoChoices = R"({"answers":{"size":{"choice":"Large","type":"choice"},)"
                                   R"("tone":{"choice":"Warm","type":"choice"}}})";

class AnswerCorrectionTest : public testing::Test {
protected:
    // Opens it on the only answer of a run of those questions.
    AnswerCorrection& open(const std::vector<DecisionQuestion>& questions, const std::string& text) {
        harness.startOn(harness.addDecision(questions, text));
        correction = std::make_unique<AnswerCorrection>(harness.model());
        correction->open(harness.answer(), Veritor::decisionResults(text, questions));
        return *correction;
    }

    AnswerCorrection& openByHand() { return open({}, "Not JSON."); }

    const DatasetExample* example() {
        const auto& id = harness.answer().datasetID;
        return id ? harness.model().library.findExample(*id) : nullptr;
    }

    static QString prompt(const QVariant& question) {
        return question.toMap()[QStringLiteral("prompt")].toString();
    }
    static QStringList options(const QVariant& question) {
        QStringList labels;
        for (const QVariant& option : question.toMap()[QStringLiteral("options")].toList())
            labels.append(option.toMap()[QStringLiteral("value")].toString());
        return labels;
    }

    AnswersHarness harness;
    std::unique_ptr<AnswerCorrection> correction;
};

TEST_F(AnswerCorrectionTest, AsksForTheChoicesOnly) {
    const AnswerCorrection& sheet = open(
        {makeChoice("tone", {"Warm", "Cold"}), makeScore("goodwill")},
        R"({"answers":{"goodwill":{"score":2,"type":"score"},"tone":{"choice":"Warm","type":"choice"}}})");

    EXPECT_EQ(sheet.form(), AnswerCorrection::Form::ByChoice);
    ASSERT_EQ(sheet.questions().size(), 1);
    EXPECT_EQ(prompt(sheet.questions()[0]), QStringLiteral("tone"));
    EXPECT_EQ(options(sheet.questions()[0]), (QStringList{QStringLiteral("Warm"), QStringLiteral("Cold")}));
}

TEST_F(AnswerCorrectionTest, ScoresAreCorrectedByHand) {
    EXPECT_EQ(open({makeScore("goodwill")}, R"({"answers":{"goodwill":{"score":2,"type":"score"}}})").form(),
              AnswerCorrection::Form::ByHand);
}

TEST_F(AnswerCorrectionTest, AChoiceAmongOneIsNone) {
    EXPECT_EQ(open({makeChoice("tone", {"Warm"})}, choiceText).form(), AnswerCorrection::Form::ByHand);
}

TEST_F(AnswerCorrectionTest, IsSavedOnceEveryQuestionHasItsAnswer) {
    AnswerCorrection& sheet =
        open({makeChoice("tone", {"Warm", "Cold"}), makeChoice("size", {"Large", "Small"})}, twoChoices);
    EXPECT_FALSE(sheet.canSave());

    sheet.choose(0, QStringLiteral("Small"));
    EXPECT_FALSE(sheet.canSave());
    sheet.save();
    EXPECT_EQ(example(), nullptr);

    sheet.choose(1, QStringLiteral("Cold"));
    EXPECT_TRUE(sheet.canSave());
    EXPECT_EQ(sheet.choices(), (QStringList{QStringLiteral("Small"), QStringLiteral("Cold")}));
    sheet.save();

    ASSERT_NE(example(), nullptr);
    const auto kept = Json::parseObject(example()->completion);
    ASSERT_TRUE(kept);
    EXPECT_EQ((*kept)["answers"]["size"]["choice"], "Small");
    EXPECT_EQ((*kept)["answers"]["tone"]["choice"], "Cold");
    EXPECT_EQ(example()->accepted, true);
    EXPECT_EQ(harness.answer().accepted, false);
    EXPECT_EQ(harness.answer().text, twoChoices);
    EXPECT_EQ(sheet.form(), AnswerCorrection::Form::None);
}

TEST_F(AnswerCorrectionTest, ATextByHandIsSavedTrimmedInPlaceOfTheAnswer) {
    AnswerCorrection& sheet = openByHand();
    for (const char* blank : {"", " \n\t\u2003 "}) {
        sheet.edit(QString::fromUtf8(blank));
        EXPECT_FALSE(sheet.canSave());
    }

    sheet.edit(QStringLiteral(" The right way.\n"));
    EXPECT_TRUE(sheet.canSave());
    sheet.save();

    ASSERT_NE(example(), nullptr);
    EXPECT_EQ(example()->completion, "The right way.");
    EXPECT_EQ(example()->accepted, true);
    EXPECT_EQ(harness.answer().accepted, false);
    EXPECT_EQ(sheet.form(), AnswerCorrection::Form::None);
    EXPECT_EQ(sheet.text(), QString());
}

TEST_F(AnswerCorrectionTest, IsTold) {
    AnswerCorrection& sheet = openByHand();
    sheet.edit(QStringLiteral("One."));
    sheet.save();
    sheet.open(harness.answer(), {});
    sheet.edit(QStringLiteral("Another."));
    sheet.save();

    ASSERT_TRUE(*harness.model().feedback);
    EXPECT_EQ((*harness.model().feedback)->title, "Correction saved");
}

TEST_F(AnswerCorrectionTest, WhatCannotBeAppliedIsToldAndChangesNothing) {
    AnswerCorrection& sheet = open({makeChoice("tone", {"Warm", "Cold"})}, choiceText);
    sheet.choose(0, QStringLiteral("Cold"));
    harness.change(0, [](ModelAnswer& answer) { answer.text = "Not JSON."; });

    sheet.save();

    EXPECT_EQ(*harness.model().alertMessage, "Couldn't apply that correction.");
    EXPECT_EQ(harness.answer().accepted, std::nullopt);
    EXPECT_EQ(example(), nullptr);
}

TEST_F(AnswerCorrectionTest, ASaveThatFailsKeepsWhatWasTyped) {
    AnswerCorrection& sheet = openByHand();
    sheet.edit(QStringLiteral("The right way."));
    harness.file().exec("DROP TABLE dataset");

    sheet.save();

    EXPECT_NE(*harness.model().alertMessage, std::nullopt);
    EXPECT_EQ(sheet.form(), AnswerCorrection::Form::ByHand);
    EXPECT_EQ(sheet.text(), QStringLiteral("The right way."));
}

TEST_F(AnswerCorrectionTest, CancellingForgets) {
    AnswerCorrection& sheet = openByHand();
    sheet.edit(QStringLiteral("The right way."));
    QSignalSpy changed(&sheet, &AnswerCorrection::changed);

    sheet.cancel();

    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(sheet.form(), AnswerCorrection::Form::None);
    EXPECT_EQ(sheet.text(), QString());
    EXPECT_EQ(harness.answer().accepted, std::nullopt);
}

TEST_F(AnswerCorrectionTest, GoesWithItsAnswer) {
    AnswerCorrection& sheet = openByHand();
    sheet.follow();
    EXPECT_EQ(sheet.form(), AnswerCorrection::Form::ByHand);

    harness.change(0, [](ModelAnswer& answer) { answer.state = AnswerState::running; });
    sheet.follow();

    EXPECT_EQ(sheet.form(), AnswerCorrection::Form::None);
}

} // namespace
} // namespace quorl::test

#pragma once

#include "app/Harness.h"
#include "decision/Veritor.h"
#include "screens/Announcer.h"
#include "screens/ModelAdapter.h"

#include <QCoreApplication>

namespace quorl::test {

/// A choice between those labels, asked under that name.
inline DecisionQuestion makeChoice(const std::string& name, const std::vector<std::string>& labels) {
    DecisionQuestion question = DecisionQuestion::starter();
    question.name = name;
    question.instructions = "Which " + name + "?";
    question.options.clear();
    for (const std::string& label : labels)
        question.options.push_back({UUID::random(), label, ""});
    return question;
}

inline DecisionQuestion makeScore(const std::string& name) {
    DecisionQuestion question = DecisionQuestion::starter();
    question.name = name;
    question.instructions = "How much " + name + "?";
    question.type = DecisionQuestionType::score;
    question.levels = {"none", "some", "much"};
    return question;
}

// A library with a run in it, and what the screens that show answers are made of.
class AnswersHarness : public Harness {
public:
    /// Written to the library before the program starts.
    QuorlRun add(QuorlRun run, std::vector<ModelAnswer> answers) {
        file().insertRun(run);
        for (ModelAnswer& answer : answers) {
            answer.runID = run.id;
            file().insertAnswer(answer);
            answersAdded.push_back(answer);
        }
        return run;
    }

    QuorlRun addDecision(const std::vector<DecisionQuestion>& questions, const std::string& answerText) {
        QuorlRun run = makeRun(QuorlKind::decision);
        run.questionsJSON = Veritor::archive(questions);
        ModelAnswer answer = makeAnswer(run.id);
        answer.modelName = "Zun";
        answer.provider = ProviderKind::zun;
        answer.text = answerText;
        return add(run, {answer});
    }

    /// The program, with that run on show.
    AppModel& startOn(const QuorlRun& run) {
        AppModel& started = start();
        started.activeRunID = run.id;
        adapter = std::make_unique<ModelAdapter>(started);
        return started;
    }

    /// As the library has it now.
    const ModelAnswer& answer(std::size_t place = 0) {
        return *model().library.findAnswer(answersAdded.at(place).id);
    }

    /// A change that comes from elsewhere, told to the screens.
    void change(std::size_t place, const std::function<void(ModelAnswer&)>& edit) {
        ModelAnswer next = answer(place);
        edit(next);
        model().library.replaceAnswer(next);
        endTurn();
    }

    static void endTurn() { QCoreApplication::processEvents(); }

    FakeClipboard clipboard;
    Announcer announcer;
    std::unique_ptr<ModelAdapter> adapter;

private:
    std::vector<ModelAnswer> answersAdded;
};

inline constexpr const char* choiceText = R"({
  "answers" : {
    "tone" : {
      "choice" : "Warm",
      "confidence" : 0.5,
      "probabilities" : {"Warm" : 0.71, "Factual" : 0.18, "Cold" : 0.08, "Curt" : 0.03},
      "type" : "choice"
    }
  }
})";

} // namespace quorl::test

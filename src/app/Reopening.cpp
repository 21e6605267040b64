#include "app/AppModel.h"

#include "decision/Veritor.h"

#include <utility>

namespace quorl {

namespace {

// What the draft takes from a run, but for the fields of its category. Answers the run's questions, none
// where they are damaged; then the draft keeps its own.
std::vector<DecisionQuestion> takeOver(AppModel& model, const QuorlRun& run) {
    model.draftKind = run.kind;
    model.draftPrompt = run.prompt;
    model.draftSystem = run.systemPrompt;
    model.draftCategoryID = run.categoryID;
    auto questions = Veritor::restore(run.questionsJSON);
    if (!questions.empty())
        model.draftQuestions = questions;
    model.draftScoring = run.scoringMode;
    std::set<UUID> asked;
    for (const ModelAnswer& answer : model.library.answersOfRun(run.id))
        asked.insert(answer.modelID);
    if (!asked.empty())
        model.draftModelIDs = std::move(asked);
    return questions;
}

// The run's line of the list that it was asked in.
BulkQuestion makeLine(const QuorlRun& run) {
    const auto questions = Veritor::restore(run.questionsJSON);
    return {UUID::random(), questions.empty() ? run.prompt : questions.front().instructions};
}

} // namespace

void AppModel::openComparison(const QuorlRun& run) {
    auto questions = takeOver(*this, run);
    fillCategoryFields(run.categoryID);
    std::vector<BulkQuestion> lines;
    if (run.kind == QuorlKind::decision && run.batchID && library.findBatch(*run.batchID)) {
        for (const QuorlRun* sibling : library.runsOfBatch(*run.batchID))
            lines.push_back(makeLine(*sibling));
    }
    draftIsBulk = !lines.empty();
    if (!lines.empty()) {
        draftBulkTemplate = questions.empty() ? DecisionQuestion::starter() : std::move(questions.front());
        draftBulkQuestions = std::move(lines);
        bulkTemplateInitialized = true;
    }
    activeRunID = run.id;
    activeBatchID = run.batchID;
    destination = Screen::draft;
    persistDraft();
}

void AppModel::variation(const QuorlRun& from) {
    draftIsBulk = false;
    takeOver(*this, from);
    fillCategoryFields(from.categoryID);
    persistDraft();
    newComparison();
}

} // namespace quorl

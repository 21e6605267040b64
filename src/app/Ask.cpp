#include "app/AppModel.h"

#include "base/Text.h"
#include "decision/Veritor.h"
#include "store/QuorlStore.h"
#include "store/SupportPaths.h"
#include "transports/DecisionRouter.h"

#include <unordered_map>

namespace quorl {

namespace {

// Two presses within this time are one.
constexpr std::chrono::duration<double> debounce{0.8};

} // namespace

bool AppModel::isSecondPress() const {
    return platform.clock.now() - *lastAsk <= debounce;
}

// What stops a press, in order; only a blank generation prompt and a quick second press stop it without a
// word.
bool AppModel::draftIsComplete() {
    const std::string_view prompt = Text::trimmed(*draftPrompt);
    if (*draftKind == QuorlKind::decision) {
        if (auto problem = Veritor::validate(prompt, *draftQuestions)) {
            alertMessage = std::move(problem);
            return false;
        }
    } else if (prompt.empty()) {
        return false;
    }
    if (!Text::isBlank(*draftSubcategoryText) && Text::isBlank(*draftCategoryText)) {
        alertMessage = "Type a category before a subcategory.";
        return false;
    }
    return !isSecondPress();
}

void AppModel::ask() {
    if (!draftIsComplete())
        return;
    const std::vector<ModelProfile> selected = selectedModels();
    if (selected.empty())
        return;
    lastAsk = platform.clock.now();

    const bool isDecision = *draftKind == QuorlKind::decision;
    QuorlRun run;
    run.id = UUID::random();
    run.kind = *draftKind;
    run.prompt = Text::trimmed(*draftPrompt);
    run.systemPrompt = isDecision ? "" : *draftSystem;
    run.categoryID = resolveCategoryID();
    run.scoringMode = *draftScoring;
    run.createdAt = platform.clock.now();
    run.questionsJSON = isDecision ? Veritor::archive(*draftQuestions) : "";
    run.origin = RunOrigin::app;
    persistDraft();

    alertOnFailure([&] { store->insertRun(run); });
    const std::vector<Job> jobs = insertAnswers(run, selected);
    reload();
    activeRunID = run.id;
    activeBatchID = std::nullopt;
    destination = Screen::draft;

    // Read before the first request leaves, so that an edit of a key does not touch a run that has started.
    std::unordered_map<UUID, ModelSecret> credentials;
    for (const Job& job : jobs)
        credentials.try_emplace(job.model.id, secrets.load(job.model.id));
    for (const Job& job : jobs) {
        // A generation carries the draft's questions too; its transports do not look at them.
        start({run.prompt, run.systemPrompt, run.kind, job.model, *draftQuestions},
              credentials.at(job.model.id), [answerID = job.answerID](AppModel& model, const auto& outcome) {
                  model.finish(answerID, outcome);
              });
    }
}

ModelAnswer AppModel::makeAnswer(const QuorlRun& run, const ModelProfile& model, std::int64_t position) {
    ModelAnswer answer;
    answer.id = UUID::random();
    answer.runID = run.id;
    answer.modelID = model.id;
    answer.modelName = model.name;
    answer.provider = model.provider;
    answer.position = position;
    answer.state = AnswerState::running;
    return answer;
}

std::vector<AppModel::Job> AppModel::insertAnswers(const QuorlRun& run,
                                                   const std::vector<ModelProfile>& models) {
    std::vector<Job> jobs;
    for (const ModelProfile& model : models) {
        const ModelAnswer answer = makeAnswer(run, model, static_cast<std::int64_t>(jobs.size()));
        // The model is asked even if its row could not be written; `finish` then finds no answer and drops
        // the outcome.
        alertOnFailure([&] { store->insertAnswer(answer); });
        jobs.push_back({model, answer.id});
    }
    return jobs;
}

void AppModel::start(DecisionRequest request, ModelSecret secret, Finished finished) {
    inBackground([&router = router, request = std::move(request), secret = std::move(secret),
                  scratch = SupportPaths::scratch(directory), finished = std::move(finished)]() -> OnMain {
        return [outcome = router.complete(request, secret, scratch), finished](AppModel& model) {
            finished(model, outcome);
        };
    });
}

void AppModel::finish(const UUID& answerID, const DecisionOutcome& outcome) {
    const ModelAnswer* found = library.findAnswer(answerID);
    if (!found)
        return; // deleted meanwhile
    ModelAnswer answer = *found;
    answer.state = outcome.errorMessage ? AnswerState::failed : AnswerState::done;
    answer.text = outcome.text;
    answer.latencyMS = outcome.latencyMS;
    answer.inputTokens = outcome.inputTokens;
    answer.outputTokens = outcome.outputTokens;
    answer.tokensEstimated = outcome.tokensEstimated;
    answer.costUSD = outcome.costUSD;
    answer.errorMessage = outcome.errorMessage;
    library.replaceAnswer(answer);
    alertOnFailure([&] { store->updateOutcome(answer); });
    if (const QuorlRun* run = library.findRun(answer.runID); run && run->batchID)
        refreshBatchStatus(UUID(*run->batchID));
}

void AppModel::retry(const UUID& answerID) {
    const ModelAnswer* found = library.findAnswer(answerID);
    if (!found)
        return;
    const QuorlRun* run = library.findRun(found->runID);
    const ModelProfile* model = library.findModel(found->modelID);
    if (!run || !model)
        return;
    // Tokens, cost and judgement stay until the new outcome comes.
    ModelAnswer answer = *found;
    answer.state = AnswerState::running;
    answer.text.clear();
    answer.errorMessage.reset();
    answer.latencyMS = 0;
    library.replaceAnswer(answer);
    alertOnFailure([&] { store->updateOutcome(answer); });
    start({run->prompt, run->systemPrompt, run->kind, *model, Veritor::restore(run->questionsJSON)},
          secrets.load(model->id),
          [answerID](AppModel& self, const auto& outcome) { self.finish(answerID, outcome); });
}

} // namespace quorl

#include "app/AppModel.h"

#include "base/Text.h"
#include "decision/Veritor.h"
#include "store/QuorlStore.h"

#include <algorithm>
#include <array>

namespace quorl {

namespace {

constexpr std::array<std::size_t, 5> milestones{1, 10, 25, 50, 100};

// What the model was really asked: of a decision the typed questions in the form they were sent in.
std::string systemPromptOf(const QuorlRun& run) {
    if (run.kind != QuorlKind::decision)
        return run.systemPrompt;
    const auto questions = Veritor::restore(run.questionsJSON);
    if (questions.empty())
        return run.systemPrompt;
    // Questions that came out of a JSON text are UTF-8, so they always have a wire form.
    return Veritor::wireJSON(questions).value();
}

DatasetExample makeExample(const QuorlRun& run, const ModelAnswer& answer, Date createdAt) {
    DatasetExample example;
    example.id = UUID::random();
    example.createdAt = createdAt;
    example.categoryID = run.categoryID;
    example.kind = run.kind;
    example.prompt = run.prompt;
    example.systemPrompt = systemPromptOf(run);
    example.modelName = answer.modelName;
    example.provider = answer.provider;
    example.rating = answer.rating;
    example.answerID = answer.id;
    return example;
}

} // namespace

void AppModel::saveToDataset(UUID answerID, const std::optional<std::string>& completion,
                             std::optional<bool> datasetAccepted,
                             const std::optional<std::string>& feedbackTitle) {
    const ModelAnswer* found = library.findAnswer(answerID);
    if (!found || found->state != AnswerState::done || found->text.empty())
        return;
    const QuorlRun* run = library.findRun(found->runID);
    if (!run)
        return;
    // An answer is kept to the byte, as the model gave it; only what a person typed is trimmed.
    std::string text = completion ? std::string(Text::trimmed(*completion)) : found->text;
    if (text.empty())
        return;
    const ModelAnswer answer = *found;
    const auto accepted = datasetAccepted ? datasetAccepted : answer.accepted;
    if (const DatasetExample* linked = answer.datasetID ? library.findExample(*answer.datasetID) : nullptr) {
        DatasetExample example = *linked;
        example.completion = std::move(text);
        example.rating = answer.rating;
        example.accepted = accepted;
        updateExample(answer, example, feedbackTitle);
    } else {
        DatasetExample example = makeExample(*run, answer, platform.clock.now());
        example.completion = std::move(text);
        example.accepted = accepted;
        createExample(answer, std::move(example), feedbackTitle);
    }
}

void AppModel::updateExample(const ModelAnswer& answer, const DatasetExample& example,
                             const std::optional<std::string>& feedbackTitle) {
    try {
        writeTogether([&] {
            store->updateDatasetExample(example.id, example.completion, example.rating, example.accepted);
            store->updateJudgment(answer);
        });
    } catch (const StoreError& error) {
        alertMessage = "Couldn't update this dataset example. " + error.message();
        return;
    }
    library.replaceExample(example);
    if (feedbackTitle)
        announce(*feedbackTitle, "Your dataset stays up to date.", "checkmark", false);
}

void AppModel::createExample(ModelAnswer answer, DatasetExample example,
                             const std::optional<std::string>& feedbackTitle) {
    answer.datasetID = example.id;
    try {
        writeTogether([&] {
            store->insertDataset(example);
            store->updateJudgment(answer);
        });
    } catch (const StoreError& error) {
        alertMessage = "Couldn't save this answer. " + error.message();
        return;
    }
    library.replaceAnswer(answer);
    library.prependExample(std::move(example));
    if (feedbackTitle)
        announceDatasetSave(*feedbackTitle);
}

void AppModel::removeFromDataset(UUID answerID) {
    const ModelAnswer* answer = library.findAnswer(answerID);
    if (answer && answer->datasetID)
        removeExample(*answer->datasetID);
}

// Against the end of the process between two writes, not against other threads.
void AppModel::writeTogether(const std::function<void()>& work) {
    store->exec("BEGIN IMMEDIATE");
    try {
        work();
        store->exec("COMMIT");
    } catch (...) {
        try {
            store->exec("ROLLBACK");
        } catch (const StoreError&) {
            // The first error is the one to be told; after some of them SQLite has rolled back by itself.
        }
        throw;
    }
}

void AppModel::announceDatasetSave(const std::string& title) {
    const std::size_t count = library.dataset().size();
    if (std::ranges::find(milestones, count) == milestones.end())
        return announce(title, "Ready for the next question.", "checkmark", false);
    const std::string number = std::to_string(count);
    announce(number + " examples logged", // also of 1: the same words at every milestone
             count == 1 ? "Your first benchmark example is logged."
                        : number + " examples now strengthen this benchmark.",
             "sparkle", true);
}

} // namespace quorl

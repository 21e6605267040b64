#include "app/AppModel.h"

#include "store/QuorlStore.h"

namespace quorl {

// The three judgements of an answer. Each is one row written on its own: memory changes first and keeps the
// change even where the file did not take it.

void AppModel::setAccepted(UUID answerID, std::optional<bool> value) {
    const ModelAnswer* found = library.findAnswer(answerID);
    if (!found)
        return;
    ModelAnswer answer = *found;
    answer.accepted = value;
    // A yes may fall on any answer of the run, so it moves no preference; an answer that is not accepted
    // cannot be the preferred one.
    if (!value.value_or(false))
        answer.chosenCorrect = false;
    library.replaceAnswer(answer);
    alertOnFailure([&] { store->updateJudgment(answer); });
    syncDataset(answer);
}

void AppModel::setRating(UUID answerID, std::optional<std::int64_t> value) {
    const ModelAnswer* found = library.findAnswer(answerID);
    if (!found)
        return;
    ModelAnswer answer = *found;
    answer.rating = value;
    library.replaceAnswer(answer);
    alertOnFailure([&] { store->updateJudgment(answer); });
    syncDataset(answer);
    if (value)
        announce("Rating recorded", "Keep going while the comparison is in view.", "star.fill", false);
}

// To prefer one answer is to judge the whole run: the others become refused, not unjudged. Taking the
// preference back leaves all of them unjudged, whatever they were before.
void AppModel::markCorrect(UUID answerID) {
    const ModelAnswer* found = library.findAnswer(answerID);
    if (!found)
        return;
    const UUID runID = found->runID;
    const bool wasCorrect = found->chosenCorrect;
    const auto ofRun = library.answersOfRun(runID);
    std::vector<ModelAnswer> answers(ofRun.begin(), ofRun.end());
    for (ModelAnswer& answer : answers) {
        const bool matches = answer.id == answerID;
        answer.chosenCorrect = !wasCorrect && matches;
        answer.accepted = wasCorrect ? std::nullopt : std::optional(matches);
        alertOnFailure([&] { store->updateJudgment(answer); });
        syncDataset(answer);
    }
    // All at once, so that nobody sees a run with two preferred answers.
    library.replaceAnswersOfRun(runID, std::move(answers));
    announce("Preferred answer updated", "The comparison now reflects your choice.", "checkmark", false);
}

// The completion stays, and so does a correction in it; but the verdict on the corrected text gives way to
// that on the answer, even when it is only the rating that was changed.
void AppModel::syncDataset(const ModelAnswer& answer) {
    if (!answer.datasetID)
        return;
    const DatasetExample* found = library.findExample(*answer.datasetID);
    if (!found)
        return;
    DatasetExample example = *found;
    example.accepted = answer.accepted;
    example.rating = answer.rating;
    library.replaceExample(example);
    alertOnFailure([&] { store->updateDatasetJudgment(example.id, example.rating, example.accepted); });
}

} // namespace quorl

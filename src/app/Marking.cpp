#include "app/AppModel.h"

#include "app/HTTPMessage.h"
#include "base/Json.h"

namespace quorl {

// The judgements of Judging.cpp and Dataset.cpp, put to programs. A failure of the library shows in the
// alert, as for a person; the replies tell what memory holds.

namespace {

constexpr const char* unknownAnswer = "No answer with that id.";
// Also for a failed answer: to a client, both are answers that cannot be judged.
constexpr const char* notDone = "This answer is still running.";

bool holdsJudgement(const Json::Value& request) {
    return Json::find(request, "chosen_correct") || Json::find(request, "accepted") ||
           Json::find(request, "rating");
}

} // namespace

HTTPResponse AppModel::markAPIAnswer(const UUID& id, std::string_view body) {
    const ModelAnswer* found = library.findAnswer(id);
    if (!found)
        return makeErrorReply(404, unknownAnswer);
    if (found->state != AnswerState::done)
        return makeErrorReply(409, notDone);
    const auto request = Json::parseObject(body);
    if (!request)
        return makeErrorReply(400, "Send a JSON object.");
    if (!holdsJudgement(*request))
        return makeErrorReply(400, "Send chosen_correct, accepted, or rating.");

    if (const auto chosen = Json::boolean(Json::find(*request, "chosen_correct"))) {
        // The operation toggles; a client states what it wants, and may state it twice.
        if (*chosen != found->chosenCorrect)
            markCorrect(id);
    }
    if (const Json::Value* accepted = Json::find(*request, "accepted")) {
        const auto verdict = Json::boolean(accepted);
        if (!verdict && !accepted->is_null())
            return makeErrorReply(400, "accepted must be true, false, or null.");
        setAccepted(id, verdict);
    }
    if (const Json::Value* rating = Json::find(*request, "rating")) {
        const auto stars = Json::wholeNumber(rating);
        if (!rating->is_null() && (!stars || *stars < 1 || *stars > 10))
            return makeErrorReply(400, "rating must be from 1 to 10, or null.");
        setRating(id, stars);
    }

    const ModelAnswer* judged = library.findAnswer(id);
    const QuorlRun* run = judged ? library.findRun(judged->runID) : nullptr;
    if (!run)
        return makeErrorReply(404, unknownAnswer);
    return makeReply(200, answerJSON(*judged, run->kind));
}

HTTPResponse AppModel::saveAPIAnswer(const UUID& id) {
    const ModelAnswer* answer = library.findAnswer(id);
    if (!answer)
        return makeErrorReply(404, unknownAnswer);
    if (answer->state != AnswerState::done)
        return makeErrorReply(409, notDone);
    if (!answer->datasetID)
        saveToDataset(id, std::nullopt, std::nullopt, std::nullopt);

    const ModelAnswer* saved = library.findAnswer(id);
    if (!saved || !saved->datasetID)
        return makeErrorReply(400, "This answer has nothing to save.");
    return makeReply(200, {{"answer_id", id.text()}, {"dataset_id", saved->datasetID->text()}});
}

} // namespace quorl

#include "app/AppModel.h"

#include "app/HTTPMessage.h"
#include "base/Json.h"
#include "base/Text.h"
#include "decision/Veritor.h"

#include <algorithm>
#include <utility>

namespace quorl {

namespace {

constexpr std::size_t charactersInName = 60;
constexpr const char* notWritable = "The questions can't be written as JSON."; // they are not UTF-8
constexpr std::int64_t accepted = 202;

std::string batchName(const std::vector<DecisionQuestion>& questions) {
    if (questions.empty())
        return "Bulk · Questions";
    return "Bulk · " + std::string(Text::firstCharacters(questions.front().instructions, charactersInName));
}

// One item of a batch for each question, as a client of the API would write it.
Json::Value makeItems(const std::string& state, const std::vector<DecisionQuestion>& questions) {
    auto items = Json::Value::array();
    for (const DecisionQuestion& question : questions) {
        const auto wire = Veritor::wireJSON({question});
        auto parsed = wire ? Json::parseObject(*wire) : std::nullopt;
        if (!parsed)
            throw StoreError(notWritable);
        items.push_back({{"state", state}, {"questions", std::move(*parsed)}});
    }
    return items;
}

QuestionSnapshots snapshots(const std::vector<DecisionQuestion>& questions) {
    QuestionSnapshots all;
    for (const DecisionQuestion& question : questions)
        all.push_back({question});
    return all;
}

std::string refusal(const HTTPResponse& response) {
    const auto body = Json::parseObject(response.body);
    const std::string* error = body ? Json::text(Json::find(*body, "error")) : nullptr;
    return error ? *error : "Couldn't start the questions.";
}

} // namespace

void AppModel::askBulk() {
    if (isSecondPress())
        return;
    try {
        const auto questions = Veritor::bulkQuestions(*draftPrompt, *draftBulkTemplate, *draftBulkQuestions);
        auto ids = Json::Value::array();
        for (const ModelProfile& model : library.models()) {
            // Not `selectedModels`: a list is a decision, whatever the draft's kind.
            if (draftModelIDs->contains(model.id) && family(model.provider) == QuorlKind::decision &&
                readiness(model).state == Readiness::State::ready)
                ids.push_back(model.id.text());
        }
        if (ids.empty())
            throw StoreError("Choose at least one ready model.");
        const auto body = Json::write({{"kind", rawString(QuorlKind::decision)},
                                       {"name", batchName(questions)},
                                       {"models", std::move(ids)},
                                       {"items", makeItems(*draftPrompt, questions)},
                                       {"category", *draftCategoryText},
                                       {"subcategory", *draftSubcategoryText},
                                       {"scoring", rawString(*draftScoring)}});
        if (!body)
            throw StoreError(notWritable);
        // Beside the wire form, which does not carry all of a question.
        const auto response = createAPIBatch(*body, RunOrigin::app, snapshots(questions));
        if (response.status != accepted)
            throw StoreError(refusal(response));
    } catch (const StoreError& error) {
        alertMessage = error.message();
        return;
    }
    lastAsk = platform.clock.now(); // a refused list can be sent again at once
    persistDraft();
}

void AppModel::nextQuestion() {
    if (*activeBatchID && *activeRunID) {
        const auto list = library.runsOfBatch(**activeBatchID);
        const auto shown = std::ranges::find(list, **activeRunID, &QuorlRun::id);
        if (shown == list.end() || std::next(shown) == list.end())
            return newComparison();
        activeRunID = (*std::next(shown))->id;
        return;
    }
    if (const QuorlRun* run = *activeRunID ? library.findRun(**activeRunID) : nullptr)
        variation(*run);
    switch (*draftKind) {
    case QuorlKind::decision: { // the context is shared by all questions and stays
        auto questions = *draftQuestions;
        for (DecisionQuestion& question : questions)
            question.instructions.clear();
        draftQuestions = std::move(questions);
        break;
    }
    case QuorlKind::generation:
        draftPrompt = "";
        break;
    }
    newComparison();
    persistDraft();
}

} // namespace quorl

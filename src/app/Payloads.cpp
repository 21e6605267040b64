#include "app/AppModel.h"

#include "app/ScoreMath.h"
#include "base/Json.h"
#include "decision/VeritorResults.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quorl {

// The shapes that clients see. Judgements are always there and null where nobody has judged; measurements
// are missing where they are not known.

namespace {

// Four digits of the year are all that readers of RFC 3339 take.
constexpr double firstSecond = -62167219200; // 0000-01-01T00:00:00Z
constexpr double lastSecond = 253402300799;  // 9999-12-31T23:59:59Z

// The second that the moment lies in, before 1970 as well as after it: rounding would show a batch as made
// later than it was.
std::string isoText(Date date) {
    const double seconds = std::floor(std::clamp(secondsSince1970(date), firstSecond, lastSecond));
    const std::chrono::sys_seconds moment{std::chrono::seconds(static_cast<std::int64_t>(seconds))};
    const auto midnight = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day day(midnight);
    const std::chrono::hh_mm_ss time(moment - midnight);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text;
}

template <class Value>
Json::Value orNull(const std::optional<Value>& value) {
    return value ? Json::Value(*value) : Json::Value(nullptr);
}

// The JSON library would write a whole amount as "2.0".
Json::Value shortest(double amount) {
    if (amount == std::trunc(amount) && std::abs(amount) < 0x1p53)
        return static_cast<std::int64_t>(amount);
    return amount;
}

Json::Value reasonOf(const Readiness& readiness) {
    switch (readiness.state) {
    case Readiness::State::ready:
        return nullptr;
    case Readiness::State::disabled:
        return "Disabled";
    case Readiness::State::blocked:
        return readiness.message;
    }
    __builtin_unreachable();
}

// A run that nobody was asked is not complete either.
bool isComplete(std::span<const ModelAnswer> answers) {
    return !answers.empty() &&
           std::ranges::find(answers, AnswerState::running, &ModelAnswer::state) == answers.end();
}

Json::Value itemJSON(const QuorlRun& run, const Library& library) {
    const auto answersOfRun = library.answersOfRun(run.id);
    Json::Value answers = Json::Value::array();
    for (const ModelAnswer& answer : answersOfRun)
        answers.push_back(AppModel::answerJSON(answer, run.kind));
    return {{"id", run.id.text()},
            {"state", run.prompt},
            {"prompt", run.prompt}, // clients may post under either key, and find both
            {"category", ScoreMath::categoryName(run.categoryID, library.categories())},
            {"complete", isComplete(answersOfRun)},
            {"answers", std::move(answers)}};
}

} // namespace

Json::Value AppModel::apiModels() const {
    Json::Value models = Json::Value::array();
    for (const ModelProfile& model : library.models()) {
        const Readiness state = readiness(model);
        models.push_back({{"id", model.id.text()},
                          {"name", model.name},
                          {"provider", rawString(model.provider)},
                          {"model", model.modelIdentifier},
                          {"serves", rawString(family(model.provider))},
                          {"ready", state.state == Readiness::State::ready},
                          {"reason", reasonOf(state)}});
    }
    return models;
}

Json::Value AppModel::batchSummary(const QuorlBatch& batch) const {
    const std::string id = batch.id.text();
    return {{"id", id},
            {"name", batch.name},
            {"source", rawString(batch.source)},
            {"kind", rawString(batch.kind)},
            {"status", rawString(batch.status)},
            {"created_at", isoText(batch.createdAt)},
            {"items", library.runCountOfBatch(batch.id)},
            {"url", *apiBase + "/v1/batches/" + id}};
}

std::optional<Json::Value> AppModel::batchPayload(const UUID& id) const {
    const QuorlBatch* batch = library.findBatch(id);
    if (!batch)
        return std::nullopt;
    Json::Value items = Json::Value::array();
    for (const QuorlRun* run : library.runsOfBatch(id))
        items.push_back(itemJSON(*run, library));
    Json::Value payload = batchSummary(*batch);
    payload["items"] = std::move(items);
    return payload;
}

Json::Value AppModel::answerJSON(const ModelAnswer& answer, QuorlKind kind) {
    Json::Value json{{"id", answer.id.text()},
                     {"model", answer.modelName},
                     {"model_id", answer.modelID.text()},
                     {"state", rawString(answer.state)},
                     {"text", answer.text},
                     {"summary", kind == QuorlKind::decision ? Veritor::summary(answer.text) : answer.text},
                     {"latency_ms", answer.latencyMS},
                     {"tokens_estimated", answer.tokensEstimated},
                     {"chosen_correct", answer.chosenCorrect},
                     {"accepted", orNull(answer.accepted)},
                     {"rating", orNull(answer.rating)},
                     {"dataset_id", answer.datasetID ? Json::Value(answer.datasetID->text()) : nullptr}};
    if (answer.inputTokens)
        json["input_tokens"] = *answer.inputTokens;
    if (answer.outputTokens)
        json["output_tokens"] = *answer.outputTokens;
    if (answer.costUSD)
        json["cost_usd"] = shortest(*answer.costUSD);
    if (answer.errorMessage)
        json["error"] = *answer.errorMessage;
    return json;
}

} // namespace quorl

#include "domain/RecordsJSON.h"

#include "base/RecordFields.h"

namespace quorl {

static constexpr auto fieldsOf(const ModelProfile*) {
    return std::tuple{Field{"id", &ModelProfile::id},
                      Field{"name", &ModelProfile::name},
                      Field{"provider", &ModelProfile::provider, providerKindFrom},
                      Field{"modelIdentifier", &ModelProfile::modelIdentifier},
                      Field{"endpoint", &ModelProfile::endpoint},
                      Field{"executablePath", &ModelProfile::executablePath},
                      Field{"inputPricePerMillion", &ModelProfile::inputPricePerMillion},
                      Field{"outputPricePerMillion", &ModelProfile::outputPricePerMillion},
                      Field{"maxOutputTokens", &ModelProfile::maxOutputTokens},
                      Field{"enabled", &ModelProfile::enabled},
                      Field{"notes", &ModelProfile::notes},
                      Field{"sortIndex", &ModelProfile::sortIndex}};
}

static constexpr auto fieldsOf(const Category*) {
    return std::tuple{Field{"id", &Category::id}, Field{"name", &Category::name},
                      Field{"parentID", &Category::parentID}, Field{"sortIndex", &Category::sortIndex}};
}

static constexpr auto fieldsOf(const QuorlRun*) {
    return std::tuple{Field{"id", &QuorlRun::id},
                      Field{"kind", &QuorlRun::kind, quorlKindFrom},
                      Field{"prompt", &QuorlRun::prompt},
                      Field{"systemPrompt", &QuorlRun::systemPrompt},
                      Field{"categoryID", &QuorlRun::categoryID},
                      Field{"scoringMode", &QuorlRun::scoringMode, scoringModeFrom},
                      Field{"createdAt", &QuorlRun::createdAt},
                      Field{"questionsJSON", &QuorlRun::questionsJSON},
                      Field{"batchID", &QuorlRun::batchID},
                      Field{"origin", &QuorlRun::origin, runOriginFrom}};
}

static constexpr auto fieldsOf(const QuorlBatch*) {
    return std::tuple{Field{"id", &QuorlBatch::id},
                      Field{"name", &QuorlBatch::name},
                      Field{"source", &QuorlBatch::source, runOriginFrom},
                      Field{"kind", &QuorlBatch::kind, quorlKindFrom},
                      Field{"createdAt", &QuorlBatch::createdAt},
                      Field{"status", &QuorlBatch::status, batchStatusFrom}};
}

static constexpr auto fieldsOf(const ModelAnswer*) {
    return std::tuple{Field{"id", &ModelAnswer::id},
                      Field{"runID", &ModelAnswer::runID},
                      Field{"modelID", &ModelAnswer::modelID},
                      Field{"modelName", &ModelAnswer::modelName},
                      Field{"provider", &ModelAnswer::provider, providerKindFrom},
                      Field{"position", &ModelAnswer::position},
                      Field{"state", &ModelAnswer::state, answerStateFrom},
                      Field{"text", &ModelAnswer::text},
                      Field{"latencyMS", &ModelAnswer::latencyMS},
                      Field{"inputTokens", &ModelAnswer::inputTokens},
                      Field{"outputTokens", &ModelAnswer::outputTokens},
                      Field{"tokensEstimated", &ModelAnswer::tokensEstimated},
                      Field{"costUSD", &ModelAnswer::costUSD},
                      Field{"errorMessage", &ModelAnswer::errorMessage},
                      Field{"chosenCorrect", &ModelAnswer::chosenCorrect},
                      Field{"accepted", &ModelAnswer::accepted},
                      Field{"rating", &ModelAnswer::rating},
                      Field{"datasetID", &ModelAnswer::datasetID}};
}

static constexpr auto fieldsOf(const DatasetExample*) {
    return std::tuple{Field{"id", &DatasetExample::id},
                      Field{"createdAt", &DatasetExample::createdAt},
                      Field{"categoryID", &DatasetExample::categoryID},
                      Field{"kind", &DatasetExample::kind, quorlKindFrom},
                      Field{"prompt", &DatasetExample::prompt},
                      Field{"systemPrompt", &DatasetExample::systemPrompt},
                      Field{"completion", &DatasetExample::completion},
                      Field{"modelName", &DatasetExample::modelName},
                      Field{"provider", &DatasetExample::provider, providerKindFrom},
                      Field{"rating", &DatasetExample::rating},
                      Field{"accepted", &DatasetExample::accepted},
                      Field{"answerID", &DatasetExample::answerID}};
}

Json::Value toJSON(const ModelProfile& model) {
    return encodeRecord(model);
}

Json::Value toJSON(const Category& category) {
    return encodeRecord(category);
}

Json::Value toJSON(const QuorlRun& run) {
    return encodeRecord(run);
}

Json::Value toJSON(const QuorlBatch& batch) {
    return encodeRecord(batch);
}

Json::Value toJSON(const ModelAnswer& answer) {
    return encodeRecord(answer);
}

Json::Value toJSON(const DatasetExample& example) {
    return encodeRecord(example);
}

template <>
std::optional<ModelProfile> fromJSON(const Json::Value& value) {
    return decodeRecord<ModelProfile>(value);
}

template <>
std::optional<Category> fromJSON(const Json::Value& value) {
    return decodeRecord<Category>(value);
}

template <>
std::optional<QuorlRun> fromJSON(const Json::Value& value) {
    return decodeRecord<QuorlRun>(value);
}

template <>
std::optional<QuorlBatch> fromJSON(const Json::Value& value) {
    return decodeRecord<QuorlBatch>(value);
}

template <>
std::optional<ModelAnswer> fromJSON(const Json::Value& value) {
    return decodeRecord<ModelAnswer>(value);
}

template <>
std::optional<DatasetExample> fromJSON(const Json::Value& value) {
    return decodeRecord<DatasetExample>(value);
}

} // namespace quorl

std::size_t std::hash<quorl::ModelProfile>::operator()(const quorl::ModelProfile& model) const {
    return quorl::hashRecord(model);
}

std::size_t std::hash<quorl::Category>::operator()(const quorl::Category& category) const {
    return quorl::hashRecord(category);
}

std::size_t std::hash<quorl::QuorlRun>::operator()(const quorl::QuorlRun& run) const {
    return quorl::hashRecord(run);
}

std::size_t std::hash<quorl::QuorlBatch>::operator()(const quorl::QuorlBatch& batch) const {
    return quorl::hashRecord(batch);
}

std::size_t std::hash<quorl::ModelAnswer>::operator()(const quorl::ModelAnswer& answer) const {
    return quorl::hashRecord(answer);
}

std::size_t std::hash<quorl::DatasetExample>::operator()(const quorl::DatasetExample& example) const {
    return quorl::hashRecord(example);
}

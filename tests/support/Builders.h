#pragma once

#include "domain/Records.h"

// Complete, plausible records; a test spells out only what it is about.
namespace quorl::test {

inline ModelProfile makeModel(ProviderKind provider = ProviderKind::openAICompatible) {
    ModelProfile model;
    model.id = UUID::random();
    model.name = "Test model";
    model.provider = provider;
    model.modelIdentifier = "test-1";
    model.endpoint = "http://127.0.0.1:9/v1";
    model.inputPricePerMillion = 2;
    model.outputPricePerMillion = 8;
    model.maxOutputTokens = 1024;
    model.enabled = true;
    model.notes = "For tests.";
    model.sortIndex = 20;
    return model;
}

inline QuorlRun makeRun(QuorlKind kind = QuorlKind::generation) {
    QuorlRun run;
    run.id = UUID::random();
    run.kind = kind;
    run.prompt = "Which way is up?";
    run.systemPrompt = "Answer directly.";
    run.createdAt = dateFromSeconds(1'790'000'000.5);
    return run;
}

inline ModelAnswer makeAnswer(const UUID& runID, std::int64_t position = 0) {
    ModelAnswer answer;
    answer.id = UUID::random();
    answer.runID = runID;
    answer.modelID = UUID::random();
    answer.modelName = "Test model";
    answer.provider = ProviderKind::openAICompatible;
    answer.position = position;
    answer.state = AnswerState::done;
    answer.text = "That way.";
    answer.latencyMS = 420;
    answer.inputTokens = 12;
    answer.outputTokens = 3;
    answer.costUSD = 0.000048;
    return answer;
}

inline QuorlBatch makeBatch() {
    QuorlBatch batch;
    batch.id = UUID::random();
    batch.name = "Nightly";
    batch.kind = QuorlKind::generation;
    batch.createdAt = dateFromSeconds(1'790'000'000.5);
    return batch;
}

inline Category makeCategory(std::string name = "Support", std::optional<UUID> parentID = std::nullopt) {
    Category category;
    category.id = UUID::random();
    category.name = std::move(name);
    category.parentID = parentID;
    return category;
}

inline DatasetExample makeExample(const UUID& answerID = UUID::random()) {
    DatasetExample example;
    example.id = UUID::random();
    example.createdAt = dateFromSeconds(1'790'000'100.5);
    example.kind = QuorlKind::generation;
    example.prompt = "Which way is up?";
    example.systemPrompt = "Answer directly.";
    example.completion = "That way.";
    example.modelName = "Test model";
    example.provider = ProviderKind::openAICompatible;
    example.answerID = answerID;
    return example;
}

} // namespace quorl::test

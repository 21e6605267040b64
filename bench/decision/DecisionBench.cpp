// Reading a decision response of five kilobytes, beside what the JSON library alone takes for the same bytes.

#include "decision/DecisionQuestion.h"
#include "decision/VeritorResults.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace quorl::bench {

namespace {

constexpr std::size_t questionCount = 18; // makes five kilobytes

DecisionQuestion makeQuestion(std::size_t number) {
    auto question = DecisionQuestion::starter();
    question.name = "Verdict " + std::to_string(number);
    question.instructions = "What becomes of the refund that was asked for?";
    question.options = {{UUID::random(), "Approve", ""}, {UUID::random(), "Refuse", ""}};
    return question;
}

std::vector<DecisionQuestion> makeQuestions() {
    std::vector<DecisionQuestion> questions;
    for (std::size_t number = 1; number <= questionCount; ++number)
        questions.push_back(makeQuestion(number));
    return questions;
}

// As a service sends it: compact.
std::string makeResponse() {
    nlohmann::json response{{"model", "zun-1-large"},
                            {"usage", {{"input_tokens", 2210}, {"output_tokens", 431}}}};
    for (std::size_t number = 1; number <= questionCount; ++number) {
        const double share = static_cast<double>(number) / 100;
        response["answers"]["verdict_" + std::to_string(number)] = {
            {"type", "choice"},
            {"choice", "Approve"},
            {"probabilities",
             {{"Approve", 0.5123 + share},
              {"Refuse", 0.25 - share / 2},
              {"Ask the customer", 0.125},
              {"Hand over to a colleague", 0.1127 - share / 2}}},
            {"confidence", 0.5123 + share},
            {"action", {{"act_probability", 0.8125}}},
            {"note", "The condition of thirty days is met."},
        };
    }
    return response.dump();
}

// What is stored of an answer when it arrives.
void interpretResponse(benchmark::State& state) {
    const auto response = makeResponse();
    for (auto _ : state)
        benchmark::DoNotOptimize(Veritor::interpret(response));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * response.size()));
}

void parseAndDump(benchmark::State& state) {
    const auto response = makeResponse();
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::json::parse(response).dump(2));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * response.size()));
}

// What an answer's card shows, from what is stored.
void readTypedResults(benchmark::State& state) {
    const auto questions = makeQuestions();
    const auto stored = Veritor::interpret(makeResponse()).pretty;
    for (auto _ : state)
        benchmark::DoNotOptimize(Veritor::decisionResults(stored, questions));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * stored.size()));
}

void parseStored(benchmark::State& state) {
    const auto stored = Veritor::interpret(makeResponse()).pretty;
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::json::parse(stored));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * stored.size()));
}

BENCHMARK(parseAndDump);
BENCHMARK(interpretResponse);
BENCHMARK(parseStored);
BENCHMARK(readTypedResults);

} // namespace
} // namespace quorl::bench

BENCHMARK_MAIN();

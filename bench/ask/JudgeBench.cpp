// Judging one answer in a library of 100,000 runs with 500,000 answers beside the same in one with a single
// run, on a real file, with the commit that each judgement makes.

#include "ask/Program.h"
#include "library/LargeLibrary.h"
#include "support/TempFolder.h"

#include <benchmark/benchmark.h>

#include <map>

using namespace quorl;
using namespace quorl::bench;

namespace {

constexpr int models = 5;

enum Size { empty, large };

// Loading the large library takes seconds; each is made once.
struct World {
    explicit World(Size size) {
        endpoint.answer("bench", sample::Completion{.text = "up", .inputTokens = 9, .outputTokens = 1});
        const auto file = SupportPaths::directory(folder.path()) / "quorl.sqlite";
        if (size == large)
            std::filesystem::copy_file(largeLibrary(100'000), file);
        program = std::make_unique<Program>(folder.path(), models, endpoint);
        program->ask();
        program->runUntilAnswered();
        answer = program->model->library.answersOfRun(**program->model->activeRunID).front().id;
    }

    test::TempFolder folder;
    sample::SampleEndpoint endpoint{{.record = sample::Record::drop}};
    std::unique_ptr<Program> program;
    UUID answer;
};

World& world(const benchmark::State& state) {
    static std::map<std::int64_t, std::unique_ptr<World>> worlds;
    auto& made = worlds[state.range(0)];
    if (!made)
        made = std::make_unique<World>(static_cast<Size>(state.range(0)));
    return *made;
}

// The toasts' timers gather in the loop; they are run down outside the measured time.
void dropToasts(benchmark::State& state, World& subject) {
    state.PauseTiming();
    subject.program->loop.advance(std::chrono::seconds(3));
    state.ResumeTiming();
}

void BM_SetRating(benchmark::State& state) {
    World& subject = world(state);
    std::int64_t rating = 0;
    for (auto _ : state) {
        subject.program->model->setRating(subject.answer, 1 + ++rating % 10);
        dropToasts(state, subject);
    }
}

// All five answers of the run, one commit each.
void BM_MarkCorrect(benchmark::State& state) {
    World& subject = world(state);
    for (auto _ : state) {
        subject.program->model->markCorrect(subject.answer);
        dropToasts(state, subject);
    }
}

void BM_SaveAndRemove(benchmark::State& state) {
    World& subject = world(state);
    for (auto _ : state) {
        subject.program->model->saveToDataset(subject.answer, std::nullopt, std::nullopt, std::nullopt);
        subject.program->model->removeFromDataset(subject.answer);
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("large")->Arg(empty)->Arg(large)->Unit(benchmark::kMicrosecond)->UseRealTime();
}

BENCHMARK(BM_SetRating)->Apply(sizes);
BENCHMARK(BM_MarkCorrect)->Apply(sizes);
BENCHMARK(BM_SaveAndRemove)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();

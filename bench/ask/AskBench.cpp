// `ask`, `retry` and `finish` in a library of 100,000 runs with 500,000 answers beside the same in an empty
// one, each with five models, on a real file, with the commits that each of them makes.

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
    }

    test::TempFolder folder;
    sample::SampleEndpoint endpoint{{.record = sample::Record::drop}};
    std::unique_ptr<Program> program;
};

Program& program(const benchmark::State& state) {
    static std::map<std::int64_t, std::unique_ptr<World>> worlds;
    auto& world = worlds[state.range(0)];
    if (!world)
        world = std::make_unique<World>(static_cast<Size>(state.range(0)));
    return *world->program;
}

// Until `ask` returns; the answers are taken in outside the measured time.
void BM_Ask(benchmark::State& state) {
    Program& subject = program(state);
    for (auto _ : state) {
        subject.ask();
        state.PauseTiming();
        subject.runUntilAnswered();
        state.ResumeTiming();
    }
}

// From a press of Retry until its outcome is in memory and in the file.
void BM_RetryAndFinish(benchmark::State& state) {
    Program& subject = program(state);
    subject.ask();
    subject.runUntilAnswered();
    const UUID answer = subject.model->library.answersOfRun(**subject.model->activeRunID).front().id;
    for (auto _ : state) {
        subject.model->retry(answer);
        subject.runUntilAnswered();
    }
}

// The five outcomes of a run, from the moment they wait on the loop.
void BM_FinishFive(benchmark::State& state) {
    Program& subject = program(state);
    for (auto _ : state) {
        state.PauseTiming();
        subject.ask();
        subject.loop.waitForPosted(models);
        state.ResumeTiming();
        subject.runUntilAnswered();
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("large")->Arg(empty)->Arg(large)->Unit(benchmark::kMicrosecond)->UseRealTime();
}

BENCHMARK(BM_Ask)->Apply(sizes);
BENCHMARK(BM_RetryAndFinish)->Apply(sizes);
BENCHMARK(BM_FinishFive)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();

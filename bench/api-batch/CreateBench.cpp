// What a client waits for beside its models, for a batch of 200 items by 5 models: creating it (the body
// read, the rows in one transaction, read back, and the reply) beside the bare transactions of the same rows,
// and reading it when it is done, in a library of 100,000 runs with 500,000 answers and in one without.

#include "api-batch/BareRows.h"
#include "app/HTTPMessage.h"
#include "ask/Program.h"
#include "base/Json.h"
#include "library/LargeLibrary.h"
#include "support/TempFolder.h"

#include <benchmark/benchmark.h>

#include <map>

using namespace quorl;
using namespace quorl::bench;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr int items = 200;
constexpr int models = 5;

enum Size { empty, large };

std::string makeLibrary(const std::filesystem::path& folder, std::int64_t size) {
    const auto file = SupportPaths::directory(folder) / "quorl.sqlite";
    if (size == large)
        std::filesystem::copy_file(largeLibrary(100'000), file);
    else
        const QuorlStore made(file.string());
    return file.string();
}

UUID insertFinishedBatch(const std::string& file) {
    QuorlStore store(file);
    const QuorlBatch batch = [] {
        QuorlBatch done = test::makeBatch();
        done.status = BatchStatus::done;
        return done;
    }();
    store.exec("BEGIN IMMEDIATE");
    store.saveBatch(batch);
    for (int item = 0; item < items; ++item) {
        QuorlRun run = test::makeRun();
        run.batchID = batch.id;
        run.createdAt += item * std::chrono::duration<double>(0.001);
        store.insertRun(run);
        for (int place = 0; place < models; ++place) {
            ModelAnswer answer = test::makeAnswer(run.id, place);
            answer.text = std::string(600, 'x');
            store.insertAnswer(answer);
        }
    }
    store.exec("COMMIT");
    return batch.id;
}

std::string makeBody() {
    Json::Value body{{"kind", "generation"}, {"items", Json::Value::array()}};
    for (int item = 0; item < items; ++item)
        body["items"].push_back({{"prompt", "Which way is up?"}});
    return body.dump();
}

// Loading the large library takes seconds; each is made once. No model ever answers, so that nothing but the
// creation happens.
struct World {
    explicit World(std::int64_t size) {
        endpoint.answer("bench", sample::Fault::neverAnswer());
        const std::string file = makeLibrary(folder.path(), size);
        finished = insertFinishedBatch(file);
        program = std::make_unique<Program>(folder.path(), models, endpoint);
    }

    test::TempFolder folder;
    sample::SampleEndpoint endpoint{{.record = sample::Record::drop}};
    std::unique_ptr<Program> program;
    UUID finished;
};

World& world(const benchmark::State& state) {
    static std::map<std::int64_t, std::unique_ptr<World>> worlds;
    auto& made = worlds[state.range(0)];
    if (!made)
        made = std::make_unique<World>(state.range(0));
    return *made;
}

void BM_Create(benchmark::State& state) {
    World& subject = world(state);
    const std::string body = makeBody();
    for (auto _ : state) {
        subject.program->clock.advance(std::chrono::seconds(1)); // no two batches are made at one moment
        const HTTPResponse response =
            subject.program->model->createAPIBatch(body, RunOrigin::api, std::nullopt);
        if (response.status != 202)
            state.SkipWithError(response.body.c_str());
    }
}

void BM_BareTransaction(benchmark::State& state) {
    const test::TempFolder folder;
    BareRows rows(makeLibrary(folder.path(), state.range(0)));
    for (auto _ : state)
        rows.insertBatch(items, models);
}

// The same by the store.
void BM_StoreTransaction(benchmark::State& state) {
    const test::TempFolder folder;
    QuorlStore store(makeLibrary(folder.path(), state.range(0)));
    for (auto _ : state) {
        const QuorlBatch batch = test::makeBatch();
        std::vector<AnsweredRun> runs;
        for (int item = 0; item < items; ++item) {
            QuorlRun run = test::makeRun();
            run.batchID = batch.id;
            std::vector<ModelAnswer> answers;
            for (int place = 0; place < models; ++place)
                answers.push_back(test::makeAnswer(run.id, place));
            runs.push_back({std::move(run), std::move(answers)});
        }
        store.exec("BEGIN IMMEDIATE");
        store.saveBatch(batch);
        store.insertRuns(runs);
        store.exec("COMMIT");
    }
}

void BM_Read(benchmark::State& state) {
    World& subject = world(state);
    std::size_t bytes = 0;
    for (auto _ : state)
        bytes = makeReply(200, subject.program->model->batchPayload(subject.finished).value()).body.size();
    state.counters["bytes"] = static_cast<double>(bytes);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("large")->Arg(empty)->Arg(large)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(BM_Read)->Apply(sizes);
BENCHMARK(BM_BareTransaction)->Apply(sizes)->Iterations(25);
BENCHMARK(BM_StoreTransaction)->Apply(sizes)->Iterations(25);
BENCHMARK(BM_Create)->Apply(sizes)->Iterations(25);

} // namespace

BENCHMARK_MAIN();

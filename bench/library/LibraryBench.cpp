#include "app/Library.h"
#include "library/LargeLibrary.h"
#include "store/QuorlStore.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <malloc.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace quorl::bench {

namespace {

constexpr std::int64_t largeRuns = 100'000;
constexpr std::int64_t millionAnswers = 200'000; // runs of five

// A line of /proc/self/status, in bytes.
double statusBytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == name + ":" && status >> kibibytes)
            return kibibytes * 1024;
    }
    return 0;
}

// Lets a peak be measured from here on (proc(5), clear_refs).
void forgetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
}

// Time by the clock and of the processor, of which only the second is free of what else the machine does.
class Stopwatch {
public:
    [[nodiscard]] double wall() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    [[nodiscard]] double processor() const {
        return static_cast<double>(std::clock() - processorStart) / CLOCKS_PER_SEC;
    }

private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    std::clock_t processorStart = std::clock();
};

std::string columnText(sqlite3_stmt* row, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return text ? text : "";
}

UUID columnID(sqlite3_stmt* row, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return text ? UUID::parse(text).value_or(UUID()) : UUID();
}

template <class Read>
auto optionalColumn(sqlite3_stmt* row, int column, Read read) -> std::optional<decltype(read(row, column))> {
    if (sqlite3_column_type(row, column) == SQLITE_NULL)
        return std::nullopt;
    return read(row, column);
}

// The least that a load can do: the same statement, row by row, into the same records, one behind the other.
std::vector<ModelAnswer> loadBare(const std::string& path) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    sqlite3_stmt* row = nullptr;
    sqlite3_prepare_v2(
        db,
        "SELECT id, run_id, model_id, model_name, provider, position, state, text, latency_ms, "
        "input_tokens, output_tokens, tokens_estimated, cost_usd, error, chosen_correct, accepted, "
        "rating, dataset_id FROM answers ORDER BY position",
        -1, &row, nullptr);
    std::vector<ModelAnswer> answers;
    while (sqlite3_step(row) == SQLITE_ROW) {
        ModelAnswer answer;
        answer.id = columnID(row, 0);
        answer.runID = columnID(row, 1);
        answer.modelID = columnID(row, 2);
        answer.modelName = columnText(row, 3);
        answer.provider = providerKindFrom(columnText(row, 4)).value_or(ProviderKind::openAI);
        answer.position = sqlite3_column_int64(row, 5);
        answer.state = answerStateFrom(columnText(row, 6)).value_or(AnswerState::failed);
        answer.text = columnText(row, 7);
        answer.latencyMS = sqlite3_column_int64(row, 8);
        answer.inputTokens = optionalColumn(row, 9, sqlite3_column_int64);
        answer.outputTokens = optionalColumn(row, 10, sqlite3_column_int64);
        answer.tokensEstimated = sqlite3_column_int64(row, 11) != 0;
        answer.costUSD = optionalColumn(row, 12, sqlite3_column_double);
        answer.errorMessage = optionalColumn(row, 13, columnText);
        answer.chosenCorrect = sqlite3_column_int64(row, 14) != 0;
        if (const auto accepted = optionalColumn(row, 15, sqlite3_column_int64))
            answer.accepted = *accepted != 0;
        answer.rating = optionalColumn(row, 16, sqlite3_column_int64);
        answer.datasetID = optionalColumn(row, 17, columnID);
        answers.push_back(std::move(answer));
    }
    sqlite3_finalize(row);
    sqlite3_close(db);
    return answers;
}

// The whole first load of a library, groups and indices included, against bare loops over its runs and its
// answers; in turn, so that both meet the same machine.
void FirstLoad(benchmark::State& state) {
    const auto runs = static_cast<std::size_t>(state.range(0));
    const auto answers = static_cast<double>(runs * answersPerRun);
    const std::string path = largeLibrary(runs).string();
    double bareWall = 0;
    double bareProcessor = 0;
    double processor = 0;
    double textBytes = 0;
    double barePeak = 0;
    double ownPeak = 0;
    for (auto _ : state) {
        forgetPeak();
        double before = statusBytes("VmRSS");
        textBytes = 0;
        {
            const Stopwatch stopwatch;
            const auto loadedRuns = QuorlStore(path).loadRuns(); // as bare as the other
            const auto loaded = loadBare(path);
            bareWall += stopwatch.wall();
            bareProcessor += stopwatch.processor();
            barePeak = statusBytes("VmHWM") - before;
            for (const ModelAnswer& answer : loaded)
                textBytes += static_cast<double>(answer.text.size());
        }
        forgetPeak();
        before = statusBytes("VmRSS");
        Observers observers;
        Library library(observers);
        QuorlStore store(path);
        const Stopwatch stopwatch;
        library.reload(store);
        state.SetIterationTime(stopwatch.wall());
        processor += stopwatch.processor();
        ownPeak = statusBytes("VmHWM") - before;
        benchmark::DoNotOptimize(library.runCount());
    }
    const auto iterations = static_cast<double>(state.iterations());
    state.counters["bareLoop_s"] = bareWall / iterations;
    state.counters["bareLoopCPU_s"] = bareProcessor / iterations;
    state.counters["loadCPU_s"] = processor / iterations;
    state.counters["textBytesPerAnswer"] = textBytes / answers;
    state.counters["peakBytesPerAnswer"] = ownPeak / answers;
    state.counters["bareBytesPerAnswer"] = barePeak / answers;
    state.counters["recordBytes"] = sizeof(ModelAnswer);
}
BENCHMARK(FirstLoad)
    ->Arg(largeRuns)
    ->Arg(millionAnswers)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

// A library that is loaded and can be written to.
struct Loaded {
    explicit Loaded(std::int64_t runs) : copy(static_cast<std::size_t>(runs)) {
        store.exec("PRAGMA synchronous = OFF"); // what the disk takes for a commit is not what is measured
        library.reload(store);
    }

    QuorlRun insertRun() {
        QuorlRun run;
        run.id = UUID::random();
        run.prompt = "Which way is up?";
        run.createdAt = dateFromSeconds(now += 1);
        store.insertRun(run);
        return run;
    }

    ModelAnswer insertAnswer(const UUID& runID, std::int64_t position) {
        ModelAnswer answer;
        answer.id = UUID::random();
        answer.runID = runID;
        answer.modelName = "Model";
        answer.position = position;
        store.insertAnswer(answer);
        return answer;
    }

    LibraryCopy copy;
    QuorlStore store{copy.path()};
    Observers observers;
    Library library{observers};
    double now = 1'900'000'000;
};

void ReloadAfterAnAsk(benchmark::State& state) {
    Loaded loaded(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        const QuorlRun run = loaded.insertRun();
        for (std::int64_t position = 0; position < 5; ++position)
            loaded.insertAnswer(run.id, position);
        state.ResumeTiming();
        if (loaded.library.reload(loaded.store) != ReloadExtent::touchedRows)
            state.SkipWithError("everything was read");
    }
}
BENCHMARK(ReloadAfterAnAsk)->Arg(0)->Arg(largeRuns)->Unit(benchmark::kMicrosecond);

void ReloadAfterNothing(benchmark::State& state) {
    Loaded loaded(state.range(0));
    for (auto _ : state)
        loaded.library.reload(loaded.store);
}
BENCHMARK(ReloadAfterNothing)->Arg(0)->Arg(largeRuns)->Unit(benchmark::kMicrosecond);

void ReloadAfterABatchOf200(benchmark::State& state) {
    Loaded loaded(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        loaded.store.exec("BEGIN IMMEDIATE");
        for (int i = 0; i < 200; ++i) {
            const QuorlRun run = loaded.insertRun();
            for (std::int64_t position = 0; position < 5; ++position)
                loaded.insertAnswer(run.id, position);
        }
        loaded.store.exec("COMMIT");
        state.ResumeTiming();
        loaded.library.reload(loaded.store);
    }
}
BENCHMARK(ReloadAfterABatchOf200)->Arg(0)->Arg(largeRuns)->Unit(benchmark::kMicrosecond);

void ReloadAfterAForeignWrite(benchmark::State& state) {
    Loaded loaded(state.range(0));
    QuorlStore foreign(loaded.copy.path());
    for (auto _ : state) {
        state.PauseTiming();
        foreign.exec("UPDATE models SET notes = notes || '.'");
        state.ResumeTiming();
        loaded.library.reload(loaded.store);
    }
}
BENCHMARK(ReloadAfterAForeignWrite)->Arg(largeRuns)->Iterations(2)->Unit(benchmark::kMillisecond);

// Places all over the library, the same for every benchmark.
std::vector<std::size_t> somePlaces(std::size_t bound) {
    std::mt19937_64 random(7);
    std::vector<std::size_t> places(1024);
    for (auto& place : places)
        place = random() % bound;
    return places;
}

void FindRunAndAnswer(benchmark::State& state) {
    Loaded loaded(state.range(0));
    std::vector<std::pair<UUID, UUID>> ids;
    for (const std::size_t place : somePlaces(loaded.library.runCount())) {
        const UUID runID = loaded.library.runAt(place).id;
        ids.emplace_back(runID, loaded.library.answersOfRun(runID)[3].id);
    }
    std::size_t next = 0;
    for (auto _ : state) {
        const auto& [runID, answerID] = ids[next++ % ids.size()];
        benchmark::DoNotOptimize(loaded.library.findRun(runID));
        benchmark::DoNotOptimize(loaded.library.findAnswer(answerID));
    }
}
BENCHMARK(FindRunAndAnswer)->Arg(1000)->Arg(largeRuns);

void ReplaceAnswer(benchmark::State& state) {
    Loaded loaded(state.range(0));
    std::vector<ModelAnswer> answers;
    for (const std::size_t place : somePlaces(loaded.library.runCount()))
        answers.push_back(loaded.library.answersOfRun(loaded.library.runAt(place).id)[2]);
    std::size_t next = 0;
    for (auto _ : state) {
        ModelAnswer& answer = answers[next++ % answers.size()];
        ++answer.latencyMS;
        loaded.library.replaceAnswer(answer);
    }
}
BENCHMARK(ReplaceAnswer)->Arg(1000)->Arg(largeRuns);

// The run in the middle of the list goes, with its answers.
void RemoveRun(benchmark::State& state) {
    Loaded loaded(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        const UUID id = loaded.library.runAt(loaded.library.runCount() / 2).id;
        state.ResumeTiming();
        loaded.library.removeRun(id);
    }
}
BENCHMARK(RemoveRun)->Arg(1000)->Arg(largeRuns)->Iterations(500);

} // namespace

} // namespace quorl::bench

BENCHMARK_MAIN();

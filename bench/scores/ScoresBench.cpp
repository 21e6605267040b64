// The score table over a million judged answers, beside a bare loop over the same columns of the same array;
// the exports of 100,000 rows, beside writing the same bytes. Each pair in turn, so that both meet the same
// machine.

#include "app/AtomicFile.h"
#include "app/ExportData.h"
#include "app/ScoreMath.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace quorl::bench {

namespace {

constexpr std::size_t answerCount = 1'000'000;
constexpr std::size_t exportedRows = 100'000;
constexpr std::size_t modelCount = 12;
constexpr std::size_t categoryCount = 40;

class Stopwatch {
public:
    [[nodiscard]] double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }

private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

struct Judged {
    std::vector<Category> categories;
    std::vector<ScoreInput> answers;
};

// Every model answers every question, as a comparison has it; the questions come from all categories.
Judged makeJudged() {
    std::mt19937_64 random(11);
    Judged judged;
    for (std::size_t i = 0; i < categoryCount; ++i) {
        Category category{UUID::random(), "Category " + std::to_string(i), std::nullopt, 0};
        if (i >= categoryCount / 4)
            category.parentID = judged.categories[i % (categoryCount / 4)].id;
        judged.categories.push_back(category);
    }
    std::vector<UUID> models;
    for (std::size_t i = 0; i < modelCount; ++i)
        models.push_back(UUID::random());
    judged.answers.reserve(answerCount);
    UUID category;
    for (std::size_t i = 0; i < answerCount; ++i) {
        if (i % modelCount == 0)
            category = judged.categories[random() % categoryCount].id;
        ScoreInput& input = judged.answers.emplace_back();
        input.modelID = models[i % modelCount];
        input.modelName = "Model number " + std::to_string(i % modelCount) + " of the twelve";
        input.categoryID = category;
        input.state = AnswerState::done;
        input.accepted = random() % 3 != 0;
        input.rating = static_cast<std::int64_t>(random() % 10 + 1);
        input.latencyMS = static_cast<std::int64_t>(random() % 9000 + 1);
        input.costUSD = static_cast<double>(random() % 1000) / 1'000'000;
        input.inputTokens = static_cast<std::int64_t>(random() % 4000);
        input.outputTokens = static_cast<std::int64_t>(random() % 800);
    }
    return judged;
}

// The columns of a row, added up over everything without a question asked.
ScoreRow sumBare(const std::vector<ScoreInput>& answers) {
    ScoreRow row;
    for (const ScoreInput& input : answers) {
        if (input.state == AnswerState::running)
            continue;
        ++row.answers;
        row.binaryJudged += input.accepted.has_value();
        row.binaryCorrect += input.accepted.value_or(false);
        row.ratingSum += input.rating.value_or(0);
        row.ratingCount += input.rating.has_value();
        row.latencySum += input.latencyMS;
        row.latencyCount += input.latencyMS > 0;
        row.costSum += input.costUSD.value_or(0);
        row.costCount += input.costUSD.has_value();
        row.inputTokens += input.inputTokens.value_or(0);
        row.outputTokens += input.outputTokens.value_or(0);
    }
    return row;
}

// Reports what `own` takes, and beside it what `bare` does and how often the one goes into the other.
template <class Own, class Bare>
void compare(benchmark::State& state, Own own, Bare bare) {
    double ownSeconds = 0;
    double bareSeconds = 0;
    for (auto _ : state) {
        const Stopwatch bareWatch;
        bare();
        bareSeconds += bareWatch.seconds();
        const Stopwatch ownWatch;
        own();
        const double seconds = ownWatch.seconds();
        ownSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    state.counters["bare_ms"] = bareSeconds * 1000 / static_cast<double>(state.iterations());
    state.counters["timesBare"] = ownSeconds / bareSeconds;
}

const Judged& judged() {
    static const Judged made = makeJudged();
    return made;
}

void table(benchmark::State& state, const std::optional<UUID>& filter, ScoreMath::Split split) {
    const Judged& given = judged();
    compare(
        state,
        [&] {
            benchmark::DoNotOptimize(ScoreMath::rows(given.answers, given.categories, filter,
                                                     ScoreMath::Subcategories::included, split));
        },
        [&] { benchmark::DoNotOptimize(sumBare(given.answers)); });
}

void Overall(benchmark::State& state) {
    table(state, std::nullopt, ScoreMath::Split::none);
}
void SplitByCategory(benchmark::State& state) {
    table(state, std::nullopt, ScoreMath::Split::byCategory);
}
// A category with three below it: most answers are left out.
void OverallOfACategory(benchmark::State& state) {
    table(state, judged().categories.front().id, ScoreMath::Split::none);
}
BENCHMARK(Overall)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(SplitByCategory)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(OverallOfACategory)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);

// A file that is gone with the object.
class ExportFile {
public:
    ExportFile() {
        std::string name = "quorl-bench.XXXXXX";
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no folder to write to");
        folder = std::filesystem::absolute(name);
    }
    ~ExportFile() { std::filesystem::remove_all(folder); }
    ExportFile(const ExportFile&) = delete;
    ExportFile& operator=(const ExportFile&) = delete;

    void write(const std::string& bytes) const {
        if (!AtomicFile::write(folder / "export", bytes))
            throw std::runtime_error("not written");
    }

private:
    std::filesystem::path folder;
};

template <class MakeBytes>
void exportBeside(benchmark::State& state, MakeBytes makeBytes) {
    const ExportFile file;
    const std::string bytes = makeBytes();
    double making = 0;
    compare(
        state,
        [&] {
            const Stopwatch watch;
            const std::string made = makeBytes();
            making += watch.seconds();
            file.write(made);
        },
        [&] { file.write(bytes); });
    state.counters["bytes"] = static_cast<double>(bytes.size());
    state.counters["making_ms"] = making * 1000 / static_cast<double>(state.iterations());
}

void ExportScores(benchmark::State& state) {
    std::mt19937_64 random(3);
    std::vector<ScoreRow> rows(exportedRows);
    for (ScoreRow& row : rows) {
        row.modelName = "Model number " + std::to_string(random() % modelCount);
        row.categoryName = "Category, number / " + std::to_string(random() % categoryCount);
        row.answers = static_cast<std::int64_t>(random() % 1000 + 1);
        row.binaryJudged = row.answers;
        row.binaryCorrect = row.answers / 3;
        row.ratingCount = row.answers;
        row.ratingSum = row.answers * 7 / 2;
        row.latencyCount = row.answers;
        row.latencySum = row.answers * 1234;
        row.costCount = row.answers;
        row.costSum = static_cast<double>(row.answers) * 0.001234567;
        row.inputTokens = row.answers * 800;
        row.outputTokens = row.answers * 90;
    }
    exportBeside(state, [&] { return ExportData::scoresCSV(rows); });
}
BENCHMARK(ExportScores)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);

std::string textOf(std::size_t bytes, std::mt19937_64& random) {
    static const std::vector<std::string> words{"refund", "the ",    "order ",      "\"late\"\n",
                                                "für ",   "and/or ", "thirty days "};
    std::string text;
    while (text.size() < bytes)
        text += words[random() % words.size()];
    return text;
}

void ExportDataset(benchmark::State& state) {
    std::mt19937_64 random(3);
    std::vector<DatasetExample> examples(exportedRows);
    std::vector<const DatasetExample*> pointers;
    for (DatasetExample& example : examples) {
        example.systemPrompt = "Answer directly.";
        example.prompt = textOf(200, random);
        example.completion = textOf(600, random);
        pointers.push_back(&example);
    }
    exportBeside(state, [&] { return ExportData::fineTuneJSONL(pointers).value(); });
}
BENCHMARK(ExportDataset)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace quorl::bench

BENCHMARK_MAIN();

// From the start of `ask` until the last of N requests has arrived at the endpoint, beside a bare program on
// libcurl's multi interface that sends the same N requests. The library lies in memory where the name says
// so: on a disk, most of the time is the disk's, one commit a row.

#include "ask/Program.h"
#include "support/TempFolder.h"

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace quorl;
using namespace quorl::bench;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr const char* body =
    R"({"max_tokens":1024,"messages":[{"content":"Answer directly. Do not use tools.","role":"system"},)"
    R"({"content":"Which way is up?","role":"user"}],"model":"bench"})";

// Counts what arrives and keeps the time of the latest.
class Arrivals {
public:
    void note(const sample::Request& request) {
        last.store(request.arrival.time_since_epoch().count());
        count.fetch_add(1);
    }
    void expect(int number) {
        count.store(0);
        expected = number;
    }
    // The endpoint's answers go on while this waits.
    double secondsSince(SteadyClock::time_point start) const {
        while (count.load() < expected)
            std::this_thread::yield();
        const SteadyClock::time_point end{SteadyClock::duration(last.load())};
        return std::chrono::duration<double>(end - start).count();
    }
    bool areAllIn() const { return count.load() >= expected; }

private:
    std::atomic<SteadyClock::rep> last = 0;
    std::atomic<int> count = 0;
    int expected = 0;
};

struct Endpoint {
    Endpoint() {
        server.answer("bench", sample::Completion{.text = "up", .inputTokens = 9, .outputTokens = 1});
    }

    Arrivals arrivals;
    sample::SampleEndpoint server{
        {.record = sample::Record::drop,
         .onRequest = [this](const sample::Request& request) { arrivals.note(request); }}};
};

std::size_t discard(char*, std::size_t size, std::size_t count, void*) {
    return size * count;
}

// The floor: one thread, one multi handle, nothing but the requests.
class BareProgram {
public:
    explicit BareProgram(std::string address) : url(std::move(address)) {
        raiseDescriptorLimit();
        for (const char* header : {"Authorization: Bearer key", "Content-Type: application/json", "Expect:"})
            headers = curl_slist_append(headers, header);
        curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, 1024L);
    }
    ~BareProgram() {
        for (CURL* easy : handles)
            curl_easy_cleanup(easy);
        curl_multi_cleanup(multi);
        curl_slist_free_all(headers);
    }

    void start(int number) {
        while (handles.size() < static_cast<std::size_t>(number)) {
            CURL* easy = curl_easy_init();
            curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
            curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
            curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, discard);
            curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
            handles.push_back(easy);
        }
        for (CURL* easy : handles) {
            curl_easy_setopt(easy, CURLOPT_POSTFIELDS, body);
            curl_multi_add_handle(multi, easy);
        }
    }

    void run() {
        int running = 1;
        while (running > 0) {
            curl_multi_perform(multi, &running);
            if (running > 0)
                curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
        }
        for (CURL* easy : handles)
            curl_multi_remove_handle(multi, easy);
    }

private:
    const std::string url;
    CURLM* multi = curl_multi_init();
    curl_slist* headers = nullptr;
    std::vector<CURL*> handles;
};

enum Connections { kept, fresh };

void BM_BareMulti(benchmark::State& state) {
    const int number = static_cast<int>(state.range(0));
    Endpoint endpoint;
    auto program = std::make_unique<BareProgram>(endpoint.server.baseURL() + "/chat/completions");
    const auto round = [&] {
        endpoint.arrivals.expect(number);
        const auto start = SteadyClock::now();
        program->start(number);
        program->run();
        return endpoint.arrivals.secondsSince(start);
    };
    round();
    for (auto _ : state) {
        if (state.range(1) == fresh)
            program = std::make_unique<BareProgram>(endpoint.server.baseURL() + "/chat/completions");
        state.SetIterationTime(round());
    }
}

void askRounds(benchmark::State& state, bool inMemory) {
    const int number = static_cast<int>(state.range(0));
    const test::TempFolder folder;
    // A folder in the place of the library file cannot be opened, and then the library lies in memory.
    if (inMemory)
        std::filesystem::create_directories(SupportPaths::directory(folder.path()) / "quorl.sqlite");
    Endpoint endpoint;
    auto program = std::make_unique<Program>(folder.path(), number, endpoint.server);
    const auto round = [&] {
        endpoint.arrivals.expect(number);
        const auto start = SteadyClock::now();
        program->ask();
        const double seconds = endpoint.arrivals.secondsSince(start);
        program->runUntilAnswered();
        return seconds;
    };
    round();
    for (auto _ : state) {
        if (state.range(1) == fresh) {
            program.reset();
            program = std::make_unique<Program>(folder.path(), number, endpoint.server);
        }
        state.SetIterationTime(round());
    }
}

void BM_AskInMemory(benchmark::State& state) {
    askRounds(state, true);
}

void BM_AskOnDisk(benchmark::State& state) {
    askRounds(state, false);
}

// The rows of one `ask` and nothing else, with a statement prepared for each as the store does.
void BM_BareRows(benchmark::State& state) {
    QuorlStore store(":memory:");
    for (auto _ : state) {
        const QuorlRun run = test::makeRun();
        std::vector<ModelAnswer> answers;
        for (std::int64_t i = 0; i < state.range(0); ++i)
            answers.push_back(test::makeAnswer(run.id, i));
        const auto start = SteadyClock::now();
        store.insertRun(run);
        for (const ModelAnswer& answer : answers)
            store.insertAnswer(answer);
        state.SetIterationTime(std::chrono::duration<double>(SteadyClock::now() - start).count());
    }
}

// N requests through the workers, the router and the session, with no row written.
void BM_ConnectionTests(benchmark::State& state) {
    const int number = static_cast<int>(state.range(0));
    const test::TempFolder folder;
    std::filesystem::create_directories(SupportPaths::directory(folder.path()) / "quorl.sqlite");
    Endpoint endpoint;
    Program program(folder.path(), number, endpoint.server);
    const auto round = [&] {
        endpoint.arrivals.expect(number);
        const auto start = SteadyClock::now();
        for (const ModelProfile& profile : program.model->library.models())
            program.model->test(profile);
        const double seconds = endpoint.arrivals.secondsSince(start);
        program.loop.waitForPosted(static_cast<std::size_t>(number));
        program.loop.runPosted();
        return seconds;
    };
    round();
    for (auto _ : state)
        state.SetIterationTime(round());
}

void arguments(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"requests", "fresh"})
        ->ArgsProduct({{5, 50, 500}, {kept, fresh}})
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(15)
        ->Repetitions(3)
        ->ReportAggregatesOnly();
}

void numbers(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("requests")
        ->Arg(5)
        ->Arg(50)
        ->Arg(500)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(15)
        ->Repetitions(3)
        ->ReportAggregatesOnly();
}

BENCHMARK(BM_BareMulti)->Apply(arguments);
BENCHMARK(BM_BareRows)->Apply(numbers);
BENCHMARK(BM_ConnectionTests)->Apply(numbers);
BENCHMARK(BM_AskInMemory)->Apply(arguments);
BENCHMARK(BM_AskOnDisk)->Args({5, kept})->Args({50, kept})->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

// A batch of 200 items by 5 models, from its creation until it is done, beside a bare program on libcurl's
// multi interface that sends the same 1,000 requests in the same order, five at a time, and writes the same
// rows by the same commits. The endpoint and each run are processes of their own, and the two kinds take
// turns. With TMPDIR on a file system in memory the disk is left out.

#include "api-batch/BareRows.h"
#include "app/HTTPMessage.h"
#include "ask/Program.h"
#include "base/Json.h"
#include "support/TempFolder.h"

#include <curl/curl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

using namespace quorl;
using namespace quorl::bench;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr int items = 200;
constexpr int models = 5;
constexpr int rounds = 5;
constexpr const char* prompt = "Which way is up?";
constexpr const char* requestBody =
    R"({"max_tokens":1024,"messages":[{"content":"Which way is up?","role":"user"}],"model":"bench",)"
    R"("temperature":0})";

// --- The roles of the process ---

int serve(int delayMS) {
    sample::SampleEndpoint endpoint{{.record = sample::Record::drop}};
    endpoint.answer("bench", sample::Completion{.text = "up",
                                                .inputTokens = 9,
                                                .outputTokens = 1,
                                                .delay = std::chrono::milliseconds(delayMS)});
    std::printf("%s\n", endpoint.baseURL().c_str());
    std::fflush(stdout);
    std::getchar(); // until the one who asked is gone
    return EXIT_SUCCESS;
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Wall time and processor time since the construction and the peak memory of the process, in milliseconds
// and MiB.
class Meter {
public:
    void print() const {
        const double wall = std::chrono::duration<double, std::milli>(SteadyClock::now() - start).count();
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("%f %f %f\n", wall, (processorSeconds() - processorStart) * 1000,
                    static_cast<double>(usage.ru_maxrss) / 1024);
    }

private:
    SteadyClock::time_point start = SteadyClock::now();
    double processorStart = processorSeconds();
};

int runProgram(const std::string& url, const std::string& folder) {
    Program program(folder, models, url);
    Json::Value body{{"kind", "generation"}, {"items", Json::Value::array()}};
    for (int item = 0; item < items; ++item)
        body["items"].push_back({{"prompt", prompt}});
    const std::string text = body.dump();

    const Meter meter;
    const HTTPResponse response = program.model->createAPIBatch(text, RunOrigin::api, std::nullopt);
    const UUID batch = program.model->selectedBatchID->value_or(UUID());
    program.loop.runUntil(
        [&] { return program.model->library.findBatch(batch)->status == BatchStatus::done; });
    meter.print();
    return response.status == 202 ? EXIT_SUCCESS : EXIT_FAILURE;
}

std::size_t append(char* bytes, std::size_t size, std::size_t count, void* text) {
    static_cast<std::string*>(text)->append(bytes, size * count);
    return size * count;
}

class BareProgram {
public:
    BareProgram(const std::string& baseURL, const std::string& library)
        : url(baseURL + "/chat/completions"), rows(library) {
        for (const char* header : {"Authorization: Bearer key", "Content-Type: application/json", "Expect:"})
            headers = curl_slist_append(headers, header);
        for (Slot& slot : slots) {
            slot.easy = curl_easy_init();
            curl_easy_setopt(slot.easy, CURLOPT_URL, url.c_str());
            curl_easy_setopt(slot.easy, CURLOPT_HTTPHEADER, headers);
            curl_easy_setopt(slot.easy, CURLOPT_WRITEFUNCTION, append);
            curl_easy_setopt(slot.easy, CURLOPT_WRITEDATA, &slot.reply);
            curl_easy_setopt(slot.easy, CURLOPT_PRIVATE, &slot);
            curl_easy_setopt(slot.easy, CURLOPT_POSTFIELDS, requestBody);
            curl_easy_setopt(slot.easy, CURLOPT_NOSIGNAL, 1L);
        }
    }
    ~BareProgram() {
        for (const Slot& slot : slots)
            curl_easy_cleanup(slot.easy);
        curl_multi_cleanup(multi);
        curl_slist_free_all(headers);
    }

    void run() {
        rows.insertBatch(items, models);
        for (int item = 0; item < items; ++item)
            askItem(static_cast<std::size_t>(item));
        rows.endBatch();
    }

private:
    struct Slot {
        CURL* easy = nullptr;
        std::string reply;
        std::size_t answer = 0;
    };

    void askItem(std::size_t item) {
        for (std::size_t place = 0; place < models; ++place) {
            slots[place].answer = item * models + place;
            slots[place].reply.clear();
            curl_multi_add_handle(multi, slots[place].easy);
        }
        int running = 1;
        while (running > 0) {
            curl_multi_perform(multi, &running);
            takeFinished();
            if (running > 0)
                curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
        }
    }

    void takeFinished() {
        int left = 0;
        while (const CURLMsg* message = curl_multi_info_read(multi, &left)) {
            Slot* slot = nullptr;
            CURL* easy = message->easy_handle;
            curl_easy_getinfo(easy, CURLINFO_PRIVATE, &slot);
            curl_multi_remove_handle(multi, easy);
            rows.finish(slot->answer, "up");
        }
    }

    const std::string url;
    BareRows rows;
    CURLM* multi = curl_multi_init();
    curl_slist* headers = nullptr;
    std::array<Slot, models> slots;
};

int runBare(const std::string& url, const std::string& folder) {
    const std::string library = (SupportPaths::directory(folder) / "quorl.sqlite").string();
    { const QuorlStore made(library); }
    BareProgram program(url, library);
    const Meter meter;
    program.run();
    meter.print();
    return EXIT_SUCCESS;
}

// --- The comparison ---

struct Figures {
    double wall = 0;
    double processor = 0;
    double memory = 0;
};

class EndpointProcess {
public:
    EndpointProcess(const std::string& self, int delayMS) {
        int toChild[2];
        int fromChild[2];
        if (pipe(toChild) != 0 || pipe(fromChild) != 0)
            std::exit(EXIT_FAILURE);
        pid = fork();
        if (pid == 0) {
            dup2(toChild[0], STDIN_FILENO);
            dup2(fromChild[1], STDOUT_FILENO);
            close(toChild[1]);
            execl(self.c_str(), self.c_str(), "endpoint", std::to_string(delayMS).c_str(), nullptr);
            _exit(EXIT_FAILURE);
        }
        close(toChild[0]);
        close(fromChild[1]);
        life = toChild[1];
        std::FILE* output = fdopen(fromChild[0], "r");
        char line[256] = "";
        if (std::fgets(line, sizeof line, output))
            url = std::string_view(line).substr(0, std::string_view(line).find('\n'));
        std::fclose(output);
    }
    ~EndpointProcess() {
        close(life);
        waitpid(pid, nullptr, 0);
    }
    EndpointProcess(const EndpointProcess&) = delete;
    EndpointProcess& operator=(const EndpointProcess&) = delete;

    std::string url;

private:
    pid_t pid = 0;
    int life = -1; // the endpoint ends when it closes
};

Figures measure(const std::string& self, const char* role, const std::string& url) {
    const test::TempFolder folder;
    const std::string command = self + " " + role + " " + url + " " + folder.path().string();
    std::FILE* output = popen(command.c_str(), "r");
    Figures figures;
    if (std::fscanf(output, "%lf %lf %lf", &figures.wall, &figures.processor, &figures.memory) != 3)
        std::fprintf(stderr, "%s gave no figures\n", role);
    pclose(output);
    return figures;
}

double median(const std::vector<Figures>& all, double Figures::*which) {
    std::vector<double> values;
    for (const Figures& one : all)
        values.push_back(one.*which);
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void report(const char* who, const std::vector<Figures>& all) {
    std::printf("%-8s wall %8.1f ms   processor %7.1f ms   peak memory %5.1f MiB\n", who,
                median(all, &Figures::wall), median(all, &Figures::processor), median(all, &Figures::memory));
}

void compare(const std::string& self, int delayMS) {
    const EndpointProcess endpoint(self, delayMS);
    std::vector<Figures> bare;
    std::vector<Figures> program;
    measure(self, "program", endpoint.url);
    for (int round = 0; round < rounds; ++round) {
        bare.push_back(measure(self, "bare", endpoint.url));
        program.push_back(measure(self, "program", endpoint.url));
    }
    std::printf("answers after %d ms, medians of %d\n", delayMS, rounds);
    report("bare", bare);
    report("program", program);
    std::printf("ratio    wall %8.2f\n", median(program, &Figures::wall) / median(bare, &Figures::wall));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view role = argc > 1 ? argv[1] : "";
    if (role == "endpoint" && argc == 3)
        return serve(std::atoi(argv[2]));
    if (role == "program" && argc == 4)
        return runProgram(argv[2], argv[3]);
    if (role == "bare" && argc == 4)
        return runBare(argv[2], argv[3]);
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    compare(self, 0);
    compare(self, 50);
    return EXIT_SUCCESS;
}

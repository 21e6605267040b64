// Running a tool for its one line beside a bare posix_spawn of the same, and what a launch spends on looking
// for tools.

#include "support/TempFolder.h"
#include "transports/ExecutableResolver.h"
#include "transports/NuvelLocal.h"
#include "transports/ProcessRunner.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

using namespace quorl;

namespace {

char executable[] = "/bin/echo";
char word[] = "one line";

// A pipe, the program, its line, its end: the least that anyone can do.
void BM_BareSpawn(benchmark::State& state) {
    std::array<char, 64> line{};
    for (auto _ : state) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            return state.SkipWithError("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
        char* arguments[] = {executable, word, nullptr};
        pid_t pid = 0;
        if (posix_spawn(&pid, executable, &actions, nullptr, arguments, environ) != 0)
            return state.SkipWithError("no child");
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        while (read(ends[0], line.data(), line.size()) > 0) {
        }
        close(ends[0]);
        int status = 0;
        waitpid(pid, &status, 0);
    }
}

void BM_ProcessRunner(benchmark::State& state) {
    const test::TempFolder scratch;
    ProcessRunner::Command command;
    command.executable = executable;
    command.arguments = {word};
    command.directory = scratch.path();
    for (auto _ : state) {
        if (ProcessRunner::run(command).standardOutput != "one line\n")
            return state.SkipWithError("another line");
    }
}

// Three tools, none of which is there: the longest search. The PATH has twenty folders.
void BM_FindToolsOfALaunch(benchmark::State& state) {
    const test::TempFolder folder;
    std::string path;
    for (int index = 0; index < 20; ++index) {
        const auto entry = folder.path() / ("bin" + std::to_string(index));
        std::filesystem::create_directory(entry);
        path += ':' + entry.string();
    }
    const std::string former = std::getenv("PATH");
    setenv("PATH", path.c_str(), 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ExecutableResolver::find(ProviderKind::claudeCode, ""));
        benchmark::DoNotOptimize(ExecutableResolver::find(ProviderKind::codex, ""));
        benchmark::DoNotOptimize(NuvelLocal::findExecutable(""));
    }
    setenv("PATH", former.c_str(), 1);
}

BENCHMARK(BM_BareSpawn)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ProcessRunner)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FindToolsOfALaunch)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();

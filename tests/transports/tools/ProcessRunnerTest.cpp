#include "transports/ProcessRunner.h"

#include "support/ScarceMemory.h"
#include "support/ToolStage.h"
#include "transports/CLIEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <sstream>
#include <thread>

namespace quorl::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct ProcessRunnerTest : testing::Test, ToolStage {
    [[nodiscard]] ProcessRunner::Command command(const std::string& executable) const {
        ProcessRunner::Command made;
        made.executable = executable;
        made.directory = scratch;
        made.timeout = 60s;
        return made;
    }

    [[nodiscard]] ProcessRunner::Result run(const std::string& body) const {
        return ProcessRunner::run(command(tool(body)));
    }

    [[nodiscard]] ProcessRunner::Result runWithin(std::chrono::milliseconds timeout,
                                                  const std::string& body) const {
        auto limited = command(tool(body));
        limited.timeout = timeout;
        return ProcessRunner::run(limited);
    }
};

bool hasChildren() {
    siginfo_t info{};
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0;
}

TEST_F(ProcessRunnerTest, GivesBackBothOutputsAndTheExitCode) {
    const auto result = run("echo out; echo err >&2; exit 7");

    EXPECT_EQ(result.code, 7);
    EXPECT_EQ(result.standardOutput, "out\n");
    EXPECT_EQ(result.standardError, "err\n");
    EXPECT_EQ(result.launchError, std::nullopt);
    EXPECT_FALSE(result.timedOut);
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(ProcessRunnerTest, ArgumentsArriveWordForWord) {
    auto asked = command(recordingTool(""));
    asked.arguments = {"--a", "", "two words", "new\nline", "$HOME `x` \"'\\", "größe", "*"};

    ASSERT_EQ(ProcessRunner::run(asked).code, 0);

    EXPECT_EQ(arguments(), asked.arguments);
}

TEST_F(ProcessRunnerTest, StandardInputArrivesAndEnds) {
    auto asked = command(recordingTool(""));
    asked.standardInput = std::string("a\0b\n", 4) + std::string(1'000'000, 'x');

    ASSERT_EQ(ProcessRunner::run(asked).code, 0);

    EXPECT_EQ(input(), asked.standardInput);
}

TEST_F(ProcessRunnerTest, WithoutInputTheChildSeesItsEndAtOnce) {
    const auto result = run("wc -c");

    EXPECT_EQ(result.standardOutput, "0\n");
    EXPECT_FALSE(result.timedOut);
}

TEST_F(ProcessRunnerTest, AChildThatEndsWithoutReadingItsInputDoesNoHarm) {
    struct sigaction formerAction {};
    sigaction(SIGPIPE, nullptr, &formerAction);
    struct sigaction deadly {};
    deadly.sa_handler = SIG_DFL;
    sigaction(SIGPIPE, &deadly, nullptr);
    auto asked = command(tool("exec <&-; echo done"));
    asked.standardInput = std::string(1'000'000, 'x');

    const auto result = ProcessRunner::run(asked);

    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
    sigset_t mask;
    pthread_sigmask(SIG_BLOCK, nullptr, &mask);
    EXPECT_EQ(sigismember(&mask, SIGPIPE), 0);
    sigaction(SIGPIPE, &formerAction, nullptr);
    EXPECT_EQ(result.standardOutput, "done\n");
    EXPECT_EQ(result.code, 0);
}

TEST_F(ProcessRunnerTest, AChildThatNeverReadsItsInputHitsTheDeadline) {
    auto asked = command(tool("exec sleep 1000"));
    asked.standardInput = std::string(1024 * 1024, 'x');
    asked.timeout = 300ms;

    const auto start = std::chrono::steady_clock::now();
    const auto result = ProcessRunner::run(asked);

    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.code, SIGTERM);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 60s);
}

TEST_F(ProcessRunnerTest, AGrandchildThatKeepsTheInputOpenDoesNotHoldTheRun) {
    auto asked = command(tool("exec 3<&0; sleep 1000 <&3 >/dev/null 2>&1 & echo $!"));
    asked.standardInput = std::string(1024 * 1024, 'x');

    const auto result = ProcessRunner::run(asked);

    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.code, 0);
    kill(std::stoi(result.standardOutput), SIGKILL);
}

TEST_F(ProcessRunnerTest, TheWorkingDirectoryIsTheOneGivenElseTheOutputFilesFolder) {
    auto asked = command(recordingTool(""));
    ASSERT_EQ(ProcessRunner::run(asked).code, 0);
    EXPECT_EQ(folder(), scratch.string());

    asked.workingDirectory = home;
    ASSERT_EQ(ProcessRunner::run(asked).code, 0);
    EXPECT_EQ(folder(), home.string());
}

TEST_F(ProcessRunnerTest, TheOutputFilesLieInTheFolderWhileItRuns) {
    const auto result = run("ls");

    EXPECT_THAT(result.standardOutput,
                testing::MatchesRegex("err-[0-9A-F-]{36}\\.txt\nout-[0-9A-F-]{36}\\.txt\n"));
}

TEST_F(ProcessRunnerTest, ARelativePathStartsAtOurOwnWorkingDirectory) {
    static_cast<void>(tool("echo found"));
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(top);

    const auto result = ProcessRunner::run(command("bin/tool"));
    const auto environment = ProcessRunner::childEnvironment("bin/tool");

    std::filesystem::current_path(former);
    EXPECT_EQ(result.standardOutput, "found\n");
    EXPECT_THAT(environment.at("PATH"), StartsWith(bin.string() + ":"));
}

TEST_F(ProcessRunnerTest, ABareNameIsNotLookedForOnThePATH) {
    static_cast<void>(tool("echo found"));

    EXPECT_EQ(ProcessRunner::run(command("tool")).launchError,
              "Couldn't start tool. No such file or directory");
}

TEST_F(ProcessRunnerTest, AGivenEnvironmentIsTheWholeEnvironment) {
    auto asked = command(recordingTool(""));
    asked.environment = {{"A", "1"}, {"B", "x=y z"}, {"EMPTY", ""}};

    ASSERT_EQ(ProcessRunner::run(asked).code, 0);

    EXPECT_EQ(environment(), *asked.environment);
}

TEST_F(ProcessRunnerTest, TheChildEnvironmentReachesToolsFoldersAndKeepsTheRest) {
    const ScopedVariable user("USER", "someone");
    const ScopedVariable other("QUORL_TEST_VARIABLE", "a=b");

    ASSERT_EQ(ProcessRunner::run(command(recordingTool(""))).code, 0);

    EXPECT_EQ(environment(), ProcessRunner::childEnvironment((bin / "tool").string()));
    EXPECT_EQ(environment().at("PATH"), bin.string() + ":" + home.string() +
                                            "/.local/bin:/opt/homebrew/bin:/usr/local/bin:" + bin.string());
    EXPECT_EQ(environment().at("HOME"), home.string());
    EXPECT_EQ(environment().at("USER"), "someone");
    EXPECT_EQ(environment().at("QUORL_TEST_VARIABLE"), "a=b");
}

TEST_F(ProcessRunnerTest, WithoutAPATHTheChildGetsTheSystemsFolders) {
    const ScopedVariable path("PATH", std::nullopt);

    EXPECT_EQ(ProcessRunner::childEnvironment("/opt/t/tool").at("PATH"),
              "/opt/t:" + home.string() + "/.local/bin:/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin");
}

TEST_F(ProcessRunnerTest, WithoutAHOMEThePasswordDatabasesIsSet) {
    const ScopedVariable unset("HOME", std::nullopt);

    EXPECT_THAT(ProcessRunner::childEnvironment("/t").at("HOME"), StartsWith("/"));
}

TEST_F(ProcessRunnerTest, ClaudesEnvironmentHasNoBlankKey) {
    const ScopedVariable key("ANTHROPIC_API_KEY", " \n");
    const ScopedVariable token("ANTHROPIC_AUTH_TOKEN", "");

    auto expected = ProcessRunner::childEnvironment("/t");
    expected.erase("ANTHROPIC_API_KEY");
    expected.erase("ANTHROPIC_AUTH_TOKEN");
    EXPECT_EQ(CLIEnvironment::claude("/t"), expected);
}

TEST_F(ProcessRunnerTest, ClaudesEnvironmentKeepsARealKey) {
    const ScopedVariable key("ANTHROPIC_API_KEY", " sk-real ");
    const ScopedVariable token("ANTHROPIC_AUTH_TOKEN", "t");

    EXPECT_EQ(CLIEnvironment::claude("/t"), ProcessRunner::childEnvironment("/t"));
    EXPECT_EQ(CLIEnvironment::claude("/t").at("ANTHROPIC_API_KEY"), " sk-real ");
}

TEST_F(ProcessRunnerTest, AMissingFileIsALaunchError) {
    const std::string missing = (bin / "missing").string();

    const auto result = ProcessRunner::run(command(missing));

    EXPECT_EQ(result.code, -1);
    EXPECT_EQ(result.launchError, "Couldn't start " + missing + ". No such file or directory");
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.standardError, "");
    EXPECT_FALSE(result.timedOut);
    EXPECT_THAT(namesIn(scratch), IsEmpty());
    EXPECT_FALSE(hasChildren());
}

TEST_F(ProcessRunnerTest, AFileWithoutTheRunBitIsALaunchError) {
    const std::string file = tool("");
    chmod(file.c_str(), 0644);

    EXPECT_EQ(ProcessRunner::run(command(file)).launchError,
              "Couldn't start " + file + ". Permission denied");
}

TEST_F(ProcessRunnerTest, AFolderIsALaunchError) {
    EXPECT_EQ(ProcessRunner::run(command(bin)).launchError,
              "Couldn't start " + bin.string() + ". Permission denied");
}

TEST_F(ProcessRunnerTest, AScriptThatNamesNoInterpreterIsNotHandedToAShell) {
    const std::string file = tool("");
    std::ofstream(file) << "echo from a shell\n";

    const auto result = ProcessRunner::run(command(file));

    EXPECT_EQ(result.launchError, "Couldn't start " + file + ". Exec format error");
    EXPECT_EQ(result.standardOutput, "");
}

TEST_F(ProcessRunnerTest, AMissingWorkingDirectoryIsALaunchError) {
    auto asked = command(tool(""));
    asked.workingDirectory = top / "missing";

    EXPECT_EQ(ProcessRunner::run(asked).launchError,
              "Couldn't start " + asked.executable + ". No such file or directory");
}

TEST_F(ProcessRunnerTest, AnArgumentLongerThanTheSystemTakesIsALaunchError) {
    auto asked = command(tool(""));
    asked.arguments = {std::string(4 * 1024 * 1024, 'x')};

    EXPECT_EQ(ProcessRunner::run(asked).launchError,
              "Couldn't start " + asked.executable + ". Argument list too long");
}

TEST_F(ProcessRunnerTest, AnArgumentThatWouldArriveCutIsALaunchError) {
    auto asked = command(tool(""));
    asked.arguments = {std::string("a\0b", 3)};

    EXPECT_EQ(ProcessRunner::run(asked).launchError,
              "Couldn't start " + asked.executable + ". Invalid argument");
}

TEST_F(ProcessRunnerTest, AnIntelBinaryThatDoesNotStartIsExplained) {
    const std::string binary = script(top / "vendor/x86_64-apple-darwin/codex/codex", "");
    std::ofstream(binary) << "\xCF\xFA\xED\xFE";

    EXPECT_EQ(ProcessRunner::run(command(binary)).launchError,
              "Couldn't start " + binary +
                  ". Exec format error This Codex build is Intel. On Apple silicon, install Rosetta or the "
                  "native CLI.");
}

TEST_F(ProcessRunnerTest, AFolderThatCannotTakeTheOutputIsALaunchError) {
    auto asked = command(tool(""));
    asked.directory = top / "missing";
    asked.workingDirectory = top;

    const auto result = ProcessRunner::run(asked);

    EXPECT_EQ(result.code, -1);
    EXPECT_EQ(result.launchError, "Couldn't write CLI output.");
    EXPECT_FALSE(result.timedOut);
}

TEST_F(ProcessRunnerTest, AMegabyteOfOutputArrivesWhole) {
    const auto result =
        run("head -c 1048576 /dev/zero | tr '\\0' o; head -c 1048576 /dev/zero | tr '\\0' e >&2");

    EXPECT_EQ(result.standardOutput, std::string(1048576, 'o'));
    EXPECT_EQ(result.standardError, std::string(1048576, 'e'));
}

TEST_F(ProcessRunnerTest, TwoHundredMegabytesOfOutputAreBorne) {
    const auto result = run("head -c 200000000 /dev/zero | tr '\\0' x");

    EXPECT_EQ(result.standardOutput.size(), 200'000'000u);
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(ProcessRunnerTest, ALongOutputIsHeldInMemoryOnce) {
    if (!ScarceMemory::isSurvived)
        GTEST_SKIP();
    const ScarceMemory scarce(300'000'000);

    const auto result = run("head -c 200000000 /dev/zero | tr '\\0' x");

    EXPECT_EQ(result.standardOutput.size(), 200'000'000u);
}

TEST_F(ProcessRunnerTest, OutputThatFindsNoMemoryCountsAsEmpty) {
    if (!ScarceMemory::isSurvived)
        GTEST_SKIP();
    const ScarceMemory scarce(100'000'000);

    const auto result = run("head -c 200000000 /dev/zero | tr '\\0' x; echo e >&2");

    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.standardError, "e\n");
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(ProcessRunnerTest, OutputBeyondAnyTextsLengthCountsAsEmpty) {
    const auto result = run("truncate -s 3G /dev/stdout 2>/dev/null || truncate -s 3G out-*; echo e >&2");

    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.standardError, "e\n");
}

TEST_F(ProcessRunnerTest, OutputThatIsNotUTF8CountsAsEmpty) {
    const auto result = run(R"(printf 'good\377'; printf 'gr\303\266\303\237e' >&2; exit 3)");

    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.standardError, "größe");
    EXPECT_EQ(result.code, 3);
}

TEST_F(ProcessRunnerTest, ASleeperIsAskedToEndAndItsOutputKept) {
    const auto result = runWithin(1500ms, "echo before; exec sleep 1000");

    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.code, SIGTERM);
    EXPECT_EQ(result.standardOutput, "before\n");
    EXPECT_EQ(result.launchError, std::nullopt);
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(ProcessRunnerTest, ATimeOutKeepsTheCodeThatTheChildEndedWith) {
    const auto result = runWithin(1500ms, "trap 'echo caught; exit 5' TERM; while :; do sleep 0.05; done");

    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.code, 5);
    EXPECT_THAT(result.standardOutput, testing::EndsWith("caught\n"));
}

TEST_F(ProcessRunnerTest, AChildThatIgnoresItsTerminationIsLeftToItselfAndReapedInTheEnd) {
    const auto gate = top / "gate";
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    const auto start = std::chrono::steady_clock::now();

    const auto result = runWithin(1000ms, "trap '' TERM; echo $$; read line < " + gate.string());

    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.code, -1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 6s);
    EXPECT_THAT(namesIn(scratch), IsEmpty());
    const pid_t pid = std::stoi(result.standardOutput);
    EXPECT_EQ(kill(pid, 0), 0) << "it was to be left alive";
    std::ofstream(gate) << "go\n";
    EXPECT_TRUE(eventually([&] { return kill(pid, 0) != 0 && errno == ESRCH; }));
}

TEST_F(ProcessRunnerTest, AChildThatClosesItsOutputAndLivesOnIsAwaited) {
    const auto result = run("echo early; exec >&- 2>&-; sleep 0.3; exit 4");

    EXPECT_EQ(result.standardOutput, "early\n");
    EXPECT_EQ(result.code, 4);
}

TEST_F(ProcessRunnerTest, AGrandchildThatKeepsTheOutputOpenIsNotAwaited) {
    const auto result = run("sleep 1000 & echo $!");

    EXPECT_EQ(result.code, 0);
    EXPECT_FALSE(result.timedOut);
    kill(std::stoi(result.standardOutput), SIGKILL);
}

TEST_F(ProcessRunnerTest, ADeadlyAccidentGivesTheSignalsNumber) {
    EXPECT_EQ(run("kill -KILL $$").code, SIGKILL);
    EXPECT_EQ(run("kill -SEGV $$").code, SIGSEGV);
}

TEST_F(ProcessRunnerTest, NoChildIsLeftBehind) {
    ASSERT_EQ(run("exit 1").code, 1);

    EXPECT_FALSE(hasChildren());
}

TEST_F(ProcessRunnerTest, NoDescriptorOfOursReachesTheChild) {
    // As a library might open it, without the flag that closes it on exec.
    const int careless = open("/dev/null", O_RDONLY);
    const int high = fcntl(careless, F_DUPFD, 500);

    const auto result = run("ls /proc/$$/fd");

    close(careless);
    close(high);
    // 10 is where the shell keeps the script that it reads.
    EXPECT_EQ(result.standardOutput, "0\n1\n10\n2\n");
}

TEST_F(ProcessRunnerTest, ClosedStandardStreamsOfOursDoNotMixUpTheChilds) {
    int former[3];
    for (int standard = 0; standard < 3; ++standard) {
        former[standard] = fcntl(standard, F_DUPFD_CLOEXEC, 100);
        close(standard);
    }
    auto asked = command(tool("read line; echo \"out $line\"; echo \"err $line\" >&2"));
    asked.standardInput = "given\n";

    const auto result = ProcessRunner::run(asked);

    for (int standard = 0; standard < 3; ++standard) {
        dup2(former[standard], standard);
        close(former[standard]);
    }
    EXPECT_EQ(result.standardOutput, "out given\n");
    EXPECT_EQ(result.standardError, "err given\n");
}

TEST_F(ProcessRunnerTest, SignalsAreNeitherIgnoredNorBlockedInTheChild) {
    struct sigaction ignored {};
    ignored.sa_handler = SIG_IGN;
    struct sigaction formerPipe {};
    struct sigaction formerHangup {};
    sigaction(SIGPIPE, &ignored, &formerPipe);
    sigaction(SIGHUP, &ignored, &formerHangup);
    sigset_t all;
    sigset_t formerMask;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &formerMask);

    auto reading = command("/bin/cat");
    reading.arguments = {"/proc/self/status"};
    const auto result = ProcessRunner::run(reading);

    pthread_sigmask(SIG_SETMASK, &formerMask, nullptr);
    sigaction(SIGPIPE, &formerPipe, nullptr);
    sigaction(SIGHUP, &formerHangup, nullptr);
    EXPECT_THAT(result.standardOutput, HasSubstr("SigBlk:\t0000000000000000\n"));
    // The C library itself lets a child ignore 32 and 33, which are its own.
    EXPECT_THAT(result.standardOutput, testing::ContainsRegex("SigIgn:\t0000000[01][08]0000000\n"));
    EXPECT_THAT(result.standardOutput, HasSubstr("SigCgt:\t0000000000000000\n"));
}

// In a process that has a terminal, the child must have none: no Control-C meant for us, and no questions
// asked where nobody looks.
TEST_F(ProcessRunnerTest, TheChildHasASessionOfItsOwnWithoutATerminal) {
    const std::string asking =
        tool("(exec 3< /dev/tty) 2>/dev/null && echo terminal; cut -d' ' -f1,5,6 /proc/$$/stat");
    int terminal = -1;
    const pid_t inTerminal = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (inTerminal == 0) {
        const auto result = ProcessRunner::run(command(asking));
        std::ofstream(notes / "answer") << result.standardOutput;
        _exit(0);
    }
    ASSERT_GT(inTerminal, 0);

    int status = 0;
    ASSERT_EQ(waitpid(inTerminal, &status, 0), inTerminal);
    close(terminal);
    ASSERT_EQ(status, 0);
    // Process, group and session are one.
    std::istringstream numbers(contentOf(notes / "answer"));
    int process = 0;
    int group = 0;
    int session = 0;
    numbers >> process >> group >> session;
    EXPECT_GT(process, 0) << contentOf(notes / "answer");
    EXPECT_EQ(group, process);
    EXPECT_EQ(session, process);
}

TEST_F(ProcessRunnerTest, TwoHundredAtOnceFitIntoTheUsualNumberOfDescriptors) {
    rlimit former{};
    getrlimit(RLIMIT_NOFILE, &former);
    const rlimit usual{std::min<rlim_t>(1024, former.rlim_max), former.rlim_max};
    setrlimit(RLIMIT_NOFILE, &usual);
    const auto gate = top / "gate";
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    // Each waits until all have begun: the fifo has no writer before that.
    const std::string waiting = tool("ls /proc/$$/fd; : > " + (notes / "begun-").string() +
                                     "$1; read line < " + gate.string() + "; cat");

    std::vector<ProcessRunner::Result> results(200);
    std::vector<std::thread> callers;
    for (std::size_t index = 0; index < results.size(); ++index) {
        callers.emplace_back([&, index] {
            auto asked = command(waiting);
            asked.arguments = {std::to_string(index)};
            asked.standardInput = "input " + std::to_string(index);
            asked.timeout = 200s;
            results[index] = ProcessRunner::run(asked);
        });
    }
    EXPECT_TRUE(eventually([&] { return namesIn(notes).size() == results.size(); }));
    const int opened = open(gate.c_str(), O_RDWR | O_CLOEXEC);
    const std::string lines(results.size(), '\n');
    EXPECT_EQ(write(opened, lines.data(), lines.size()), static_cast<ssize_t>(lines.size()));
    for (std::thread& caller : callers)
        caller.join();
    close(opened);
    setrlimit(RLIMIT_NOFILE, &former);

    for (std::size_t index = 0; index < results.size(); ++index) {
        EXPECT_EQ(results[index].launchError, std::nullopt);
        EXPECT_EQ(results[index].standardOutput, "0\n1\n10\n2\ninput " + std::to_string(index));
    }
    EXPECT_THAT(namesIn(scratch), IsEmpty());
    EXPECT_FALSE(hasChildren());
}

TEST_F(ProcessRunnerTest, WithoutADescriptorLeftARunFailsInWords) {
    rlimit former{};
    getrlimit(RLIMIT_NOFILE, &former);
    const std::string executable = tool("echo fine");
    const int next = dup(0);
    close(next);
    // From none to all that a run needs; each shortage is another one.
    std::set<std::string> problems;
    ProcessRunner::Result result;
    for (int spare = 0; spare < 20; ++spare) {
        const rlimit scarce{static_cast<rlim_t>(next + spare), former.rlim_max};
        setrlimit(RLIMIT_NOFILE, &scarce);
        result = ProcessRunner::run(command(executable));
        setrlimit(RLIMIT_NOFILE, &former);
        if (result.launchError)
            problems.insert(*result.launchError);
    }

    EXPECT_THAT(problems, ElementsAre("Couldn't start " + executable + ". Too many open files",
                                      "Couldn't write CLI output."));
    EXPECT_EQ(result.standardOutput, "fine\n");
    EXPECT_THAT(namesIn(scratch), IsEmpty());
    EXPECT_FALSE(hasChildren());
}

TEST_F(ProcessRunnerTest, AThousandRunsLeaveNothingBehind) {
    const auto asked = command(tool("echo x"));
    const auto descriptors = namesIn("/proc/self/fd");

    for (int count = 0; count < 1000; ++count)
        ASSERT_EQ(ProcessRunner::run(asked).standardOutput, "x\n");

    EXPECT_THAT(namesIn(scratch), IsEmpty());
    EXPECT_EQ(namesIn("/proc/self/fd").size(), descriptors.size());
    EXPECT_FALSE(hasChildren());
}

TEST_F(ProcessRunnerTest, WhatAKilledProgramLeavesBehindDoesNoHarm) {
    const auto gate = top / "gate";
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    const std::string waiting =
        tool("echo $$ > " + (notes / "pid.new").string() + "; mv " + (notes / "pid.new").string() + " " +
             (notes / "pid").string() + "; read line < " + gate.string());
    const pid_t us = fork();
    if (us == 0) {
        static_cast<void>(ProcessRunner::run(command(waiting)));
        _exit(0);
    }
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(notes / "pid"); }));
    kill(us, SIGKILL);
    waitpid(us, nullptr, 0);
    EXPECT_EQ(namesIn(scratch).size(), 2u);

    const auto result = run("echo next");

    EXPECT_EQ(result.standardOutput, "next\n");
    EXPECT_EQ(namesIn(scratch).size(), 2u);
    const pid_t orphan = std::stoi(contentOf(notes / "pid"));
    EXPECT_EQ(kill(orphan, 0), 0);
    kill(orphan, SIGKILL);
}

TEST_F(ProcessRunnerTest, TheOutputFilesAreForTheUserAlone) {
    const auto result = run("stat -c %a out-* err-*");

    EXPECT_EQ(result.standardOutput, "600\n600\n");
}

TEST_F(ProcessRunnerTest, OutputFilesThatTheChildDeletesAreReadAllTheSame) {
    const auto result = run("echo kept; rm out-* err-*");

    EXPECT_EQ(result.standardOutput, "kept\n");
}

} // namespace
} // namespace quorl::test

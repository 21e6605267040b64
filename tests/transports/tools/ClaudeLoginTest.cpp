#include "transports/ClaudeLogin.h"

#include "support/ToolStage.h"
#include "transports/Descriptor.h"
#include "transports/ProcessRunner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <thread>

namespace quorl::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct ClaudeLoginTest : testing::Test, ToolStage {
    [[nodiscard]] std::string login(const std::string& executable, const ClaudeLogin::Limits& limits = {}) {
        return ClaudeLogin::begin(
            executable, [this](const std::string& url) { opened.push_back(url); }, limits);
    }

    std::vector<std::string> opened;
};

TEST_F(ClaudeLoginTest, TheToolGetsItsWordsAndTheHome) {
    const ScopedVariable key("ANTHROPIC_API_KEY", " ");

    EXPECT_EQ(login(recordingTool("")), "Claude Code is logged in.");

    EXPECT_THAT(arguments(), ElementsAre("auth", "login", "--claudeai"));
    EXPECT_EQ(input(), "");
    EXPECT_EQ(folder(), home.string());
    auto expected = ProcessRunner::childEnvironment((bin / "tool").string());
    expected.erase("ANTHROPIC_API_KEY");
    EXPECT_EQ(environment(), expected);
}

TEST_F(ClaudeLoginTest, AURLOnEitherStreamIsOpenedWhileTheToolWaits) {
    const auto gate = top / "gate";
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    // The tool goes on only once its URL has been opened.
    const auto openedBy = [&](const std::string& body) {
        std::string url;
        const std::string outcome =
            ClaudeLogin::begin(tool(body + "; read line < " + gate.string()), [&](const std::string& given) {
                url = given;
                std::ofstream(gate) << "go\n";
            });
        EXPECT_EQ(outcome, "Claude Code is logged in.");
        return url;
    };

    EXPECT_EQ(openedBy("echo 'Open https://out.example/a now'"), "https://out.example/a");
    EXPECT_EQ(openedBy("echo 'Open \"https://err.example/b\" now' >&2"), "https://err.example/b");
}

TEST_F(ClaudeLoginTest, OnlyOneURLIsOpenedInAll) {
    static_cast<void>(login(tool("echo https://one.example; echo https://two.example")));

    EXPECT_THAT(opened, ElementsAre("https://one.example"));
}

TEST_F(ClaudeLoginTest, TheLastWordsOfAnEndedToolCount) {
    const std::string outcome = login(tool("printf 'no '; printf 'luck' >&2; exit 1"));

    EXPECT_TRUE(outcome == "no luck" || outcome == "luckno" || outcome == "luckno ") << outcome;
}

// Holds a thread still, wherever it is, while what it will find next is prepared.
class HeldThread {
public:
    explicit HeldThread(pthread_t thread) {
        struct sigaction hold {};
        hold.sa_handler = [](int) {
            char byte = 0;
            static_cast<void>(write(held.writeEnd.get(), &byte, 1) + read(goOn.readEnd.get(), &byte, 1));
        };
        sigaction(SIGUSR1, &hold, &former);
        pthread_kill(thread, SIGUSR1);
        char byte = 0;
        EXPECT_EQ(read(held.readEnd.get(), &byte, 1), 1);
    }
    void release() const { EXPECT_EQ(write(goOn.writeEnd.get(), "", 1), 1); }
    ~HeldThread() { sigaction(SIGUSR1, &former, nullptr); }
    HeldThread(const HeldThread&) = delete;
    HeldThread& operator=(const HeldThread&) = delete;

private:
    // A handler reaches nothing but statics.
    inline static const Pipe held = makePipe().value();
    inline static const Pipe goOn = makePipe().value();
    struct sigaction former {};
};

TEST_F(ClaudeLoginTest, AURLAmongTheLastWordsIsOpenedFromTheOutputOnly) {
    for (const std::string stream : {"1", "2"}) {
        opened.clear();
        const auto gate = top / ("gate" + stream);
        ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
        const std::string late =
            tool("read line < " + gate.string() + "; echo https://x.example >&" + stream);
        std::thread caller([&] { static_cast<void>(login(late)); });
        // The other end of the fifo opens once the tool has begun.
        std::ofstream letOn(gate);
        const HeldThread heldCaller(caller.native_handle());

        letOn << "go\n" << std::flush;
        siginfo_t info{};
        EXPECT_EQ(waitid(P_ALL, 0, &info, WEXITED | WNOWAIT), 0);
        heldCaller.release();
        caller.join();

        EXPECT_EQ(opened.size(), stream == "1" ? 1u : 0u);
    }
}

TEST_F(ClaudeLoginTest, AFailureShowsItsWordsWithoutTheURL) {
    EXPECT_EQ(login(tool("echo ' Failed at https://secret.example/token=1 today.'; exit 1")),
              "Failed at  today.");
}

TEST_F(ClaudeLoginTest, AFailureIsShownInThreeHundredCharacters) {
    EXPECT_EQ(login(tool("printf %0400d 0; exit 1")), std::string(300, '0'));
}

TEST_F(ClaudeLoginTest, AFailureWithoutAWordHasOurs) {
    EXPECT_EQ(login(tool("exit 1")),
              "Claude login ended without signing in. Run claude auth login in Terminal.");
    EXPECT_EQ(login(tool("echo https://secret.example; exit 1")),
              "Claude login ended without signing in. Run claude auth login in Terminal.");
    EXPECT_EQ(login(tool("kill -KILL $$")),
              "Claude login ended without signing in. Run claude auth login in Terminal.");
}

TEST_F(ClaudeLoginTest, AToolThatCannotStartIsTold) {
    EXPECT_EQ(login((bin / "missing").string()), "Couldn't start Claude login. No such file or directory");
}

TEST_F(ClaudeLoginTest, MuchOutputOnBothStreamsDoesNotBlock) {
    EXPECT_EQ(
        login(tool("head -c 1000000 /dev/zero | tr '\\0' e >&2; head -c 1000000 /dev/zero | tr '\\0' o")),
        "Claude Code is logged in.");
}

TEST_F(ClaudeLoginTest, AToolThatClosesItsOutputIsAwaited) {
    EXPECT_EQ(login(tool("exec >&- 2>&-; sleep 0.3; exit 0")), "Claude Code is logged in.");
}

TEST_F(ClaudeLoginTest, ABrowserThatKeepsTheOutputOpenIsNotAwaited) {
    const std::string outcome =
        login(tool("sleep 1000 & echo $! > " + (notes / "pid").string() + "; echo started; exit 1"));

    EXPECT_EQ(outcome, "started");
    kill(std::stoi(contentOf(notes / "pid")), SIGKILL);
}

TEST_F(ClaudeLoginTest, ALoginThatTakesTooLongIsEnded) {
    EXPECT_EQ(login(tool("exec sleep 1000"), {.login = 200ms, .termination = 60s}),
              "Claude login timed out. Run claude auth login in Terminal.");
}

TEST_F(ClaudeLoginTest, AChattyLoginTimesOutToo) {
    EXPECT_EQ(login(tool("exec yes"), {.login = 100ms, .termination = 60s}),
              "Claude login timed out. Run claude auth login in Terminal.");
}

TEST_F(ClaudeLoginTest, ALoginThatWillNotEndIsLeftToItselfAndReapedInTheEnd) {
    const auto gate = top / "gate";
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    const std::string stubborn =
        tool("trap '' TERM; echo $$ > " + (notes / "pid").string() + "; read line < " + gate.string());

    EXPECT_EQ(login(stubborn, {.login = 1500ms, .termination = 100ms}),
              "Claude login timed out. Run claude auth login in Terminal.");

    const pid_t pid = std::stoi(contentOf(notes / "pid"));
    EXPECT_EQ(kill(pid, 0), 0);
    std::ofstream(gate) << "go\n";
    EXPECT_TRUE(eventually([&] { return kill(pid, 0) != 0; }));
}

TEST_F(ClaudeLoginTest, AskingForTheStatusGivesTheToolItsWords) {
    EXPECT_EQ(ClaudeLogin::isLoggedIn(recordingTool(R"(echo '{ "loggedIn" : true }')"), scratch), true);

    EXPECT_THAT(arguments(), ElementsAre("auth", "status"));
    EXPECT_EQ(input(), "");
    EXPECT_EQ(folder(), home.string());
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(ClaudeLoginTest, TheStatusIsKnownOnlyFromItsTwoWords) {
    EXPECT_EQ(ClaudeLogin::loggedIn("{ \"loggedIn\" : true }\n"), true);
    EXPECT_EQ(ClaudeLogin::loggedIn("x\"loggedIn\":false"), false);
    EXPECT_EQ(ClaudeLogin::loggedIn("\"loggedIn\":false,\"loggedIn\":true"), true);
    EXPECT_EQ(ClaudeLogin::loggedIn("\"loggedIn\":\ttrue"), std::nullopt);
    EXPECT_EQ(ClaudeLogin::loggedIn("loggedIn: true"), std::nullopt);
    EXPECT_EQ(ClaudeLogin::loggedIn(""), std::nullopt);
    EXPECT_EQ(ClaudeLogin::isLoggedIn((bin / "missing").string(), scratch), std::nullopt);
}

} // namespace
} // namespace quorl::test

#include "transports/URLOpener.h"

#include "support/ToolStage.h"

#include <sys/wait.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorl::test {
namespace {

struct URLOpenerTest : testing::Test, ToolStage {};

TEST_F(URLOpenerTest, GivesTheURLToTheDesktopAndDoesNotWait) {
    const auto gate = top / "gate";
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    const ScopedVariable session("XDG_SESSION_TYPE", "wayland");
    static_cast<void>(recordingTool("echo noise; read line < " + gate.string() + "; echo $$ > " +
                                        (notes / "pid.new").string() + "; mv " +
                                        (notes / "pid.new").string() + " " + (notes / "pid").string(),
                                    "xdg-open"));

    openURL("https://one.example/a?b=c&d=$HOME");

    std::ofstream(gate) << "go\n"; // waits for the reader, which a call that waits would never see
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(notes / "pid"); }));
    EXPECT_THAT(arguments(), testing::ElementsAre("https://one.example/a?b=c&d=$HOME"));
    EXPECT_EQ(environment().at("XDG_SESSION_TYPE"), "wayland");
    EXPECT_EQ(environment().at("PATH"), bin.string());
    EXPECT_EQ(folder(), home.string());
    const pid_t pid = std::stoi(contentOf(notes / "pid"));
    EXPECT_TRUE(eventually([&] { return kill(pid, 0) != 0; })) << "its end is not reaped";
}

TEST_F(URLOpenerTest, ADesktopWithoutAnOpenerDoesNoHarm) {
    openURL("https://one.example");

    siginfo_t info{};
    EXPECT_NE(waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT), 0);
}

} // namespace
} // namespace quorl::test

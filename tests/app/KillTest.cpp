#include "app/Harness.h"

#include <sqlite3.h>

#include <csignal>
#include <cstdio>
#include <map>
#include <random>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

using namespace quorl;
using namespace quorl::test;

namespace {

constexpr const char* interrupted = "Quorl closed before this response finished.";

// The subject, with its standard output in a pipe.
class Subject {
public:
    explicit Subject(const std::filesystem::path& applicationSupport) {
        int ends[2];
        if (pipe(ends) != 0)
            throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        posix_spawn_file_actions_addclose(&actions, ends[1]);
        std::string program = QUORL_KILL_SUBJECT;
        std::string folder = applicationSupport.string();
        std::string key = "key-of-the-test";
        char* arguments[] = {program.data(), folder.data(), key.data(), nullptr};
        const int failure = posix_spawn(&pid, program.c_str(), &actions, nullptr, arguments, environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        output = fdopen(ends[0], "r");
        if (failure != 0)
            throw std::runtime_error("no subject");
    }

    ~Subject() { std::fclose(output); }

    void kill() const {
        ::kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }

    // The next answer that the subject says is safe: its id and its text.
    bool readAnswer(std::map<std::string, std::string>& safe) const {
        char line[4096];
        if (!std::fgets(line, sizeof line, output))
            return false;
        const std::string text(line);
        if (text.size() < 38 || text.back() != '\n')
            return false; // cut off by the kill
        safe[text.substr(0, 36)] = text.substr(37, text.size() - 38);
        return true;
    }

private:
    pid_t pid = 0;
    FILE* output = nullptr;
};

std::string integrityOf(const std::string& path) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    std::string result;
    sqlite3_exec(
        db, "PRAGMA integrity_check",
        [](void* into, int, char** values, char**) {
            *static_cast<std::string*>(into) += values[0];
            return 0;
        },
        &result, nullptr);
    sqlite3_close(db);
    return result;
}

class KillTest : public testing::TestWithParam<int> {};

// Each round kills at another moment: after so many safe answers and a random stretch of time behind the last
// of them.
TEST_P(KillTest, EveryAnswerThatHadArrivedIsThereAndTheOthersAreFailed) {
    Harness harness;
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    for (int i = 0; i < 6; ++i) {
        const std::string name = "model-" + std::to_string(i);
        harness.addReadyModel(name, i);
        sample::Completion completion = says("answer of " + name);
        completion.delay = std::chrono::milliseconds(random() % 12);
        harness.endpoint.answer(name, completion);
    }

    std::map<std::string, std::string> safe;
    {
        const Subject subject(harness.folder.path());
        const int answersBefore = 1 + GetParam() % 17;
        for (int i = 0; i < answersBefore; ++i)
            ASSERT_TRUE(subject.readAnswer(safe));
        // Not a wait for something to happen but the point of the test: the kill must come at an arbitrary
        // moment.
        const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 15'000);
        while (std::chrono::steady_clock::now() < moment) {
        }
        subject.kill();
        while (subject.readAnswer(safe)) {
        }
    }

    EXPECT_EQ(integrityOf(harness.libraryPath()), "ok");
    AppModel& model = harness.start();
    std::size_t shown = 0;
    for (const UUID& runID : model.library.runsWithAnswers()) {
        EXPECT_NE(model.library.findRun(runID), nullptr);
        for (const ModelAnswer& answer : model.library.answersOfRun(runID)) {
            const auto said = safe.find(answer.id.text());
            if (said != safe.end()) {
                ++shown;
                EXPECT_EQ(answer.state, AnswerState::done);
                EXPECT_EQ(answer.text, said->second);
            } else if (answer.state == AnswerState::failed) {
                EXPECT_EQ(answer.errorMessage, interrupted);
            } else {
                // Written, and the kill came before it could be said.
                EXPECT_EQ(answer.state, AnswerState::done);
                EXPECT_EQ(answer.text, "answer of " + answer.modelName);
            }
        }
    }
    EXPECT_EQ(shown, safe.size());
    EXPECT_EQ(harness.file().loadAnswers().size(), [&] {
        std::size_t count = 0;
        for (const UUID& runID : model.library.runsWithAnswers())
            count += model.library.answersOfRun(runID).size();
        return count;
    }());
}

INSTANTIATE_TEST_SUITE_P(AtManyMoments, KillTest, testing::Range(0, 40));

} // namespace

#include "api/ServedModel.h"
#include "support/OwnNetwork.h"

#include <cstring>

using namespace quorl;
using namespace quorl::test;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace {

constexpr std::uint16_t port = LocalAPIServer::defaultPort;

// Somebody else's server on a port of this machine.
class Occupant {
public:
    explicit Occupant(std::uint16_t number) {
        const int yes = 1; // whatever connections of the test before are winding up
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(number);
        isThere = bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                  listen(socket, 1) == 0;
    }
    ~Occupant() { close(socket); }
    Occupant(const Occupant&) = delete;
    Occupant& operator=(const Occupant&) = delete;

    bool isThere = false;

private:
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

// These use the port that the program uses, in a network of their own where the system allows it.
class StartAPITest : public testing::Test {
protected:
    static void SetUpTestSuite() { hasOwnNetwork = enterOwnNetwork(); }

    void SetUp() override {
        if (!hasOwnNetwork && !Occupant(port).isThere)
            GTEST_SKIP() << "Another program has the port.";
        program = std::make_unique<ServedModel>();
        program->harness.addReadyModel("sample-brief");
        program->harness.start();
    }

    AppModel& model() { return program->harness.model(); }

    [[nodiscard]] bool runUntilMessageIs(const std::string& text) {
        return program->harness.loop.runUntil([&] { return *model().apiMessage == text; });
    }

    static inline bool hasOwnNetwork = false;
    std::unique_ptr<ServedModel> program;
};

TEST_F(StartAPITest, BeforeItTheAPIIsStartingAndHasNoToken) {
    EXPECT_EQ(*model().apiMessage, "Starting");
    EXPECT_EQ(*model().apiToken, "");
}

TEST_F(StartAPITest, ListensOnTheProgramsPortAndSaysSoAtOnce) {
    model().startAPI(program->server);

    EXPECT_EQ(*model().apiBase, "http://127.0.0.1:47821");
    EXPECT_EQ(*model().apiMessage, "Listening");
    EXPECT_EQ(program->server.boundPort(), port);
}

TEST_F(StartAPITest, NamesThePortThatItListensOn) {
    program->start();

    ASSERT_NE(program->port(), port);
    EXPECT_EQ(*model().apiBase, "http://127.0.0.1:" + std::to_string(program->port()));
}

TEST_F(StartAPITest, AnswersWhoeverHasTheToken) {
    program->startOn(port);

    EXPECT_EQ(program->ask("GET", "/v1/health"),
              (APIReply{"HTTP/1.1 200 OK", R"({"ok":true,"service":"quorl"})"}));
}

TEST_F(StartAPITest, ATakenPortIsToldInTheSystemsWords) {
    const Occupant occupant(port);
    ASSERT_TRUE(occupant.isThere);

    model().startAPI(program->server);

    EXPECT_TRUE(runUntilMessageIs(std::strerror(EADDRINUSE)));
    EXPECT_EQ(program->server.failure(), std::strerror(EADDRINUSE));
    EXPECT_EQ(*model().apiBase, "http://127.0.0.1:47821");
}

TEST_F(StartAPITest, ATakenPortHindersNothingElse) {
    const Occupant occupant(port);
    model().startAPI(program->server);
    ASSERT_TRUE(runUntilMessageIs(std::strerror(EADDRINUSE)));

    program->harness.writeDraft();
    model().ask();

    ASSERT_TRUE(program->harness.runUntilAnswered());
    EXPECT_EQ(program->harness.activeAnswers()[0].state, AnswerState::done);
    EXPECT_EQ(*model().alertMessage, std::nullopt);
}

TEST_F(StartAPITest, APortThatIsNoneIsToldAtOnce) {
    model().startAPI(program->server, 0);

    EXPECT_EQ(*model().apiMessage, "Port 0 is not valid.");
    EXPECT_EQ(*model().apiBase, "http://127.0.0.1:47821");
}

TEST_F(StartAPITest, ARequestThatComesWhenTheModelIsGoneIsToldSo) {
    program->startOn(port);
    program->harness.quit();

    APIReply reply;
    program->serveWhile([&] { reply = exchange(port, "GET", "/v1/health", "any"); });

    EXPECT_EQ(reply, (APIReply{"HTTP/1.1 500 Error", R"({"error":"Quorl is not running."})"}));
}

// --- The token ---

TEST_F(StartAPITest, TheTokenIsMadeOnceAndLivesOn) {
    program->harness.defaults.writes.clear();
    model().startAPI(program->server);
    const std::string token = *model().apiToken;
    EXPECT_THAT(token, MatchesRegex("[0-9a-f]{32}"));
    EXPECT_EQ(program->harness.defaults.string("api.token"), token);

    program->harness.defaults.writes.clear();
    program->harness.start().startAPI(program->server);
    EXPECT_EQ(*model().apiToken, token);
    EXPECT_THAT(program->harness.defaults.writes, IsEmpty());
}

TEST_F(StartAPITest, AnEmptyTokenIsReplaced) {
    program->harness.defaults.setString("api.token", "");

    model().startAPI(program->server);

    EXPECT_THAT(*model().apiToken, MatchesRegex("[0-9a-f]{32}"));
    EXPECT_EQ(program->harness.defaults.string("api.token"), *model().apiToken);
}

TEST_F(StartAPITest, AStoredTokenIsUsedAsItStands) {
    program->harness.defaults.setString("api.token", "Not hexadecimal, and with blanks");

    model().startAPI(program->server);

    EXPECT_EQ(*model().apiToken, "Not hexadecimal, and with blanks");
}

} // namespace

#include "base/Json.h"
#include "support/TempFolder.h"
#include "tools/Client.h"
#include "tools/Process.h"

#include <sysexits.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace quorl::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

Process start(std::vector<std::string> words) {
    words.insert(words.begin(), SAMPLE_ENDPOINT_PROGRAM);
    return Process(std::move(words));
}

std::uint16_t portIn(const std::string& url) {
    return static_cast<std::uint16_t>(std::stoul(url.substr(url.rfind(':') + 1)));
}

std::string contentsOf(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

TEST(SampleEndpointProgram, PrintsItsBaseURLWhenItListens) {
    auto program = start({});

    const auto url = program.readLine();

    EXPECT_THAT(url, MatchesRegex("http://127\\.0\\.0\\.1:[0-9]+/v1"));
    Client client(portIn(url));
    client.send(postOf(chatBody("m")));
    EXPECT_EQ(statusLineOf(client.receiveReply()), "HTTP/1.1 200 OK");
}

TEST(SampleEndpointProgram, EndsCleanlyWhenItIsTold) {
    for (const int signal : {SIGTERM, SIGINT}) {
        auto program = start({});
        ASSERT_NE(program.readLine(), "");

        program.signal(signal);

        EXPECT_EQ(program.wait(), 0);
    }
}

TEST(SampleEndpointProgram, EndsWithItsInputWhereThatIsAskedFor) {
    auto program = start({"--until-stdin-closes"});
    ASSERT_NE(program.readLine(), "");

    program.closeInput();

    EXPECT_EQ(program.wait(), 0);
}

TEST(SampleEndpointProgram, OutlivesItsInputOtherwise) {
    auto program = start({});
    const auto port = portIn(program.readLine());

    program.closeInput();

    Client client(port);
    client.send(postOf(chatBody("m")));
    EXPECT_EQ(statusLineOf(client.receiveReply()), "HTTP/1.1 200 OK");
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
}

TEST(SampleEndpointProgram, RecordsRequestsWithoutTheirKeys) {
    const TempFolder folder;
    const auto file = folder.path() / "record.jsonl";
    auto program = start({"--record", file.string()});
    Client client(portIn(program.readLine()));

    for (int turn = 0; turn < 2; ++turn) {
        client.send(postOf(chatBody("m"), "Authorization: Bearer sk-secret\r\n"));
        static_cast<void>(client.receiveReply());
    }

    std::istringstream lines(contentsOf(file));
    EXPECT_THAT(lines.str(), Not(HasSubstr("sk-secret")));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const auto request = Json::parseObject(line).value();
        EXPECT_EQ(request["headers"]["authorization"], 16);
        EXPECT_EQ(request["body"], chatBody("m"));
    }
    EXPECT_EQ(count, 2);
}

TEST(SampleEndpointProgram, ListensOnNoOtherPortThanItIsGiven) {
    auto first = start({});
    const auto url = first.readLine();
    const auto port = url.substr(url.rfind(':') + 1, url.rfind('/') - url.rfind(':') - 1);

    auto second = start({"--port", port});

    // The first one has it.
    EXPECT_EQ(second.readLine(), "");
    EXPECT_EQ(second.wait(), EX_UNAVAILABLE);
}

TEST(SampleEndpointProgram, RefusesArgumentsThatItDoesNotKnow) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"--what"},
                                                  {"--port"},
                                                  {"--port", "x"},
                                                  {"--port", "65536"},
                                                  {"--record"}}) {
        auto program = start(words);
        EXPECT_EQ(program.wait(), EX_USAGE) << words.front();
    }
}

TEST(SampleEndpointProgram, ARecordThatCannotBeWrittenIsAnError) {
    auto program = start({"--record", "/nowhere/at/all"});

    EXPECT_EQ(program.readLine(), "");
    EXPECT_EQ(program.wait(), EX_CANTCREAT);
}

} // namespace
} // namespace quorl::test

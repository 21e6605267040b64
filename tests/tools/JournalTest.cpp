#include "sample-endpoint/Journal.h"

#include "base/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorl::sample {
namespace {

using testing::HasSubstr;
using testing::Not;

Request makeRequest() {
    return {.method = "POST",
            .path = "/v1/chat/completions",
            .headers = {{"Host", "127.0.0.1"}, {"Authorization", "Bearer sk-secret"}},
            .body = "{\"a\":\"b\"}",
            .arrival = {},
            .connection = 7};
}

TEST(Journal, ALineHoldsTheRequest) {
    EXPECT_EQ(journalLine(makeRequest()),
              R"({"body":"{\"a\":\"b\"}","connection":7,"headers":{"authorization":16,"host":"127.0.0.1"},)"
              R"("method":"POST","path":"/v1/chat/completions"})");
}

TEST(Journal, NoHeaderThatCarriesAKeyIsWritten) {
    for (const auto* const name : {"authorization", "AUTHORIZATION", "Proxy-Authorization", "X-Api-Key",
                                   "X-Amz-Security-Token", "Cookie"}) {
        auto request = makeRequest();
        request.headers = {{name, "sk-secret"}};
        EXPECT_THAT(journalLine(request), Not(HasSubstr("sk-secret"))) << name;
        EXPECT_THAT(journalLine(request), HasSubstr("\":9}")) << name;
    }
}

TEST(Journal, OfBytesThatAreNoTextOnlyTheLengthIsWritten) {
    auto request = makeRequest();
    request.body = "\xff\xfe\xfd";
    request.path = "/\xff";

    const auto line = Json::parseObject(journalLine(request));

    ASSERT_TRUE(line);
    EXPECT_EQ((*line)["body"], 3);
    EXPECT_EQ((*line)["path"], 2);
}

TEST(Journal, KeepsTheRequestsInOrder) {
    Journal journal(Record::keep);
    auto first = makeRequest();
    first.body = "first";

    journal.add(first);
    journal.add(makeRequest());

    ASSERT_EQ(journal.requests().size(), 2u);
    EXPECT_EQ(journal.requests()[0].body, "first");
}

TEST(Journal, CountsWhatItDoesNotKeep) {
    Journal journal(Record::drop);

    journal.add(makeRequest());

    EXPECT_TRUE(journal.requests().empty());
    EXPECT_TRUE(journal.waitFor(1, std::chrono::seconds(0)));
    EXPECT_FALSE(journal.waitFor(2, std::chrono::milliseconds(1)));
}

} // namespace
} // namespace quorl::sample

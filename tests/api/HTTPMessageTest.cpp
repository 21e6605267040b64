#include "app/HTTPMessage.h"

#include "base/Json.h"

#include <gtest/gtest.h>

namespace quorl {
namespace {

TEST(HTTPMessage, WritesSortedKeysWithoutWhiteSpaceAndWithEscapedSlashes) {
    const Json::Value value{{"url", "http://127.0.0.1:47821/v1"}, {"items", 2}};

    EXPECT_EQ(makeReply(202, value),
              (HTTPResponse{202, R"({"items":2,"url":"http:\/\/127.0.0.1:47821\/v1"})"}));
}

TEST(HTTPMessage, KeepsTheStatusOfAValueThatCannotBeWritten) {
    EXPECT_EQ(makeReply(200, Json::Value{{"text", "\xff"}}), (HTTPResponse{200, "{}"}));
}

TEST(HTTPMessage, NamesAnErrorUnderOneKey) {
    EXPECT_EQ(makeErrorReply(404, "No batch with that id."),
              (HTTPResponse{404, R"({"error":"No batch with that id."})"}));
}

} // namespace
} // namespace quorl

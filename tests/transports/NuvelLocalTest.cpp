#include "transports/NuvelLocal.h"

#include "support/Builders.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

bool usesHTTP(std::string endpoint) {
    ModelProfile model = makeModel(ProviderKind::nuvel);
    model.endpoint = std::move(endpoint);
    return NuvelLocal::usesHTTP(model);
}

TEST(NuvelLocal, AnEndpointWithAnHTTPSchemeIsAskedOverHTTP) {
    EXPECT_TRUE(usesHTTP("http://127.0.0.1:8000"));
    EXPECT_TRUE(usesHTTP("https://host"));
    EXPECT_TRUE(usesHTTP(" \n HTTP://host"));
    EXPECT_TRUE(usesHTTP("HttpS://host"));
}

TEST(NuvelLocal, AnyOtherEndpointMeansTheTool) {
    EXPECT_FALSE(usesHTTP(""));
    EXPECT_FALSE(usesHTTP("api.nuvel.example"));
    EXPECT_FALSE(usesHTTP("ftp://host"));
    EXPECT_FALSE(usesHTTP("http:/host"));
}

} // namespace
} // namespace quorl::test

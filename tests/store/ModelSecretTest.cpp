#include "store/ModelSecret.h"

#include <gtest/gtest.h>

namespace quorl::test {

TEST(ModelSecret, IsStoredWithAllFourKeys) {
    EXPECT_EQ(ModelSecret{}.json(),
              R"({"apiKey":"","awsAccessKey":"","awsSecretKey":"","awsSessionToken":""})");
    EXPECT_EQ((ModelSecret{"k/1", "a", "s", "t"}).json(),
              R"({"apiKey":"k/1","awsAccessKey":"a","awsSecretKey":"s","awsSessionToken":"t"})");
}

TEST(ModelSecret, ComesBackFromItsStoredForm) {
    const ModelSecret secret{"ключ", "a\"b", " s ", ""};

    EXPECT_EQ(ModelSecret::fromJSON(*secret.json()), secret);
}

TEST(ModelSecret, HasNoStoredFormIfAFieldIsNotUTF8) {
    EXPECT_EQ(
        (ModelSecret{.apiKey = "\xFF", .awsAccessKey = {}, .awsSecretKey = {}, .awsSessionToken = {}}).json(),
        std::nullopt);
}

TEST(ModelSecret, NeedsEachOfTheFourKeys) {
    EXPECT_FALSE(ModelSecret::fromJSON(R"({"awsAccessKey":"","awsSecretKey":"","awsSessionToken":""})"));
    EXPECT_FALSE(ModelSecret::fromJSON(R"({"apiKey":"","awsSecretKey":"","awsSessionToken":""})"));
    EXPECT_FALSE(ModelSecret::fromJSON(R"({"apiKey":"","awsAccessKey":"","awsSessionToken":""})"));
    EXPECT_FALSE(ModelSecret::fromJSON(R"({"apiKey":"","awsAccessKey":"","awsSecretKey":""})"));
}

TEST(ModelSecret, IsNotReadFromAnythingElse) {
    EXPECT_FALSE(ModelSecret::fromJSON(""));
    EXPECT_FALSE(ModelSecret::fromJSON("not JSON"));
    EXPECT_FALSE(ModelSecret::fromJSON("[]"));
    EXPECT_FALSE(
        ModelSecret::fromJSON(R"({"apiKey":1,"awsAccessKey":"","awsSecretKey":"","awsSessionToken":""})"));
    EXPECT_FALSE(
        ModelSecret::fromJSON(R"({"apiKey":null,"awsAccessKey":"","awsSecretKey":"","awsSessionToken":""})"));
}

TEST(ModelSecret, AKeySatisfiesTheKindsThatAskForOne) {
    ModelSecret secret;
    secret.apiKey = "key";
    for (const auto kind :
         {ProviderKind::zun, ProviderKind::nuvel, ProviderKind::openAIDecisions, ProviderKind::veritor,
          ProviderKind::openAI, ProviderKind::anthropic, ProviderKind::openAICompatible}) {
        EXPECT_TRUE(secret.satisfies(kind)) << title(kind);
        EXPECT_FALSE(ModelSecret{}.satisfies(kind)) << title(kind);
    }
}

TEST(ModelSecret, AKeyOfWhiteSpaceSatisfiesNobody) {
    ModelSecret secret;
    secret.apiKey = " \n\t\u00A0";

    EXPECT_FALSE(secret.satisfies(ProviderKind::openAI));
}

TEST(ModelSecret, BedrockNeedsBothKeysAndNoToken) {
    ModelSecret secret;
    secret.apiKey = "key";
    EXPECT_FALSE(secret.satisfies(ProviderKind::amazonBedrock));
    secret.awsAccessKey = "access";
    EXPECT_FALSE(secret.satisfies(ProviderKind::amazonBedrock));
    secret.awsSecretKey = " ";
    EXPECT_FALSE(secret.satisfies(ProviderKind::amazonBedrock));
    secret.awsSecretKey = "secret";
    EXPECT_TRUE(secret.satisfies(ProviderKind::amazonBedrock));
    secret.awsAccessKey = "";
    EXPECT_FALSE(secret.satisfies(ProviderKind::amazonBedrock));
}

TEST(ModelSecret, TheCommandLineToolsNeedNothing) {
    EXPECT_TRUE(ModelSecret{}.satisfies(ProviderKind::claudeCode));
    EXPECT_TRUE(ModelSecret{}.satisfies(ProviderKind::codex));
}

} // namespace quorl::test

#include "app/Harness.h"
#include "domain/ServiceHosts.h"

using namespace quorl;
using namespace quorl::test;

namespace {

class ReadinessTest : public testing::Test {
protected:
    void SetUp() override {
        harness.file().saveModel(makeModel());
        harness.start();
    }

    Readiness of(const ModelProfile& profile) { return harness.model().readiness(profile); }

    // The model with credentials that suffice.
    ModelProfile withKey(ModelProfile profile) {
        harness.model().secretFlags.set(profile.id, true);
        return profile;
    }

    Harness harness;
};

const Readiness isReady{Readiness::State::ready, ""};
const Readiness isDisabled{Readiness::State::disabled, ""};

Readiness isBlocked(const std::string& message) {
    return {Readiness::State::blocked, message};
}

TEST_F(ReadinessTest, ADisabledModelIsDisabledWhateverElseItLacks) {
    ModelProfile profile = makeModel(ProviderKind::openAICompatible);
    profile.enabled = false;
    profile.endpoint = "";

    EXPECT_EQ(of(profile), isDisabled);
}

TEST_F(ReadinessTest, ACompatibleModelAsksForTheBaseURLBeforeTheKeyBeforeTheModelId) {
    ModelProfile profile = makeModel(ProviderKind::openAICompatible);
    profile.endpoint = " \n";
    profile.modelIdentifier = " ";

    EXPECT_EQ(of(profile), isBlocked("Set a base URL."));
    profile.endpoint = "http://localhost";
    EXPECT_EQ(of(profile), isBlocked("Add an API key."));
    EXPECT_EQ(of(withKey(profile)), isBlocked("Set a model id."));
    profile.modelIdentifier = "m";
    EXPECT_EQ(of(profile), isReady);
}

TEST_F(ReadinessTest, AnEmptyBaseURLIsToldEvenWithAKey) {
    ModelProfile profile = withKey(makeModel(ProviderKind::openAICompatible));
    profile.endpoint = "";

    EXPECT_EQ(of(profile), isBlocked("Set a base URL."));
}

TEST_F(ReadinessTest, ADirectModelNeedsAKeyAndAModelIdButNoBaseURL) {
    for (const ProviderKind provider : {ProviderKind::openAI, ProviderKind::anthropic}) {
        ModelProfile profile = makeModel(provider);
        profile.endpoint = "";

        EXPECT_EQ(of(profile), isBlocked("Add an API key."));
        EXPECT_EQ(of(withKey(profile)), isReady);
        profile.modelIdentifier = "\t";
        EXPECT_EQ(of(profile), isBlocked("Set a model id."));
    }
}

TEST_F(ReadinessTest, BedrockNeedsKeysOfItsOwnKind) {
    ModelProfile profile = makeModel(ProviderKind::amazonBedrock);

    EXPECT_EQ(of(profile), isBlocked("Add AWS keys."));
    EXPECT_EQ(of(withKey(profile)), isReady);
    profile.modelIdentifier = "";
    EXPECT_EQ(of(profile), isBlocked("Set a model id."));
}

TEST_F(ReadinessTest, AVeritorModelNeedsOnlyItsBaseURL) {
    ModelProfile profile = makeModel(ProviderKind::veritor);
    profile.modelIdentifier = "";

    EXPECT_EQ(of(profile), isReady);
    profile.endpoint = "  ";
    EXPECT_EQ(of(profile), isBlocked("Set a base URL."));
}

TEST_F(ReadinessTest, HostedDecisionModelsNeedAKeyThenAModelId) {
    for (const ProviderKind provider : {ProviderKind::zun, ProviderKind::openAIDecisions}) {
        ModelProfile profile = makeModel(provider);
        profile.modelIdentifier = " \n";

        EXPECT_EQ(of(profile), isBlocked("Add an API key."));
        EXPECT_EQ(of(withKey(profile)), isBlocked("Set a model id."));
        profile.modelIdentifier = "id";
        EXPECT_EQ(of(profile), isReady);
    }
}

TEST_F(ReadinessTest, NuvelAtTheHostedAPINeedsAKeyAndElsewhereNothing) {
    ModelProfile profile = makeModel(ProviderKind::nuvel);
    profile.modelIdentifier = "";
    profile.endpoint = "http://127.0.0.1:8000";
    EXPECT_EQ(of(profile), isReady);

    profile.endpoint = "https://" + std::string(ServiceHosts::nuvelAPIHost);
    EXPECT_EQ(of(profile),
              isBlocked("Hosted API. Add a Nuvel Studio key, or clear the base URL to use local Nuvel."));
    EXPECT_EQ(of(withKey(profile)), isReady);
}

TEST_F(ReadinessTest, AModelWithoutAnEntryInTheFlagsHasNoCredentials) {
    const ModelProfile profile = makeModel(ProviderKind::openAI);

    ASSERT_EQ(harness.model().secretFlags.find(profile.id), nullptr);
    EXPECT_EQ(of(profile), isBlocked("Add an API key."));
}

} // namespace

#pragma once

#include "app/HTTPMessage.h"
#include "app/Harness.h"
#include "base/Json.h"

#include <string>
#include <utility>
#include <vector>

namespace quorl::test {

// The program as a client of its API finds it, without the wire.
class BatchHarness : public Harness {
public:
    /// A ready decision model behind the endpoint.
    ModelProfile addDecisionModel(const std::string& name, std::int64_t sortIndex = 0) {
        ModelProfile profile = makeModel(ProviderKind::veritor);
        profile.name = name;
        profile.modelIdentifier = name;
        profile.endpoint = endpoint.baseURL();
        profile.sortIndex = sortIndex;
        file().saveModel(profile);
        return profile;
    }

    HTTPResponse post(const Json::Value& body) { return postText(body.dump()); }

    HTTPResponse postText(std::string_view body) {
        return model().createAPIBatch(body, RunOrigin::api, std::nullopt);
    }

    /// Posts what must be taken.
    UUID postBatch(const Json::Value& body) { return idOf(post(body)); }

    static UUID idOf(const HTTPResponse& response) {
        EXPECT_EQ(response.status, 202) << response.body;
        const auto summary = Json::parseObject(response.body);
        const std::string* id = summary ? Json::text(Json::find(*summary, "id")) : nullptr;
        return id ? UUID::parse(*id).value_or(UUID()) : UUID();
    }

    std::vector<const QuorlRun*> runsOf(const UUID& batchID) { return model().library.runsOfBatch(batchID); }

    /// Of the run at that place of the batch.
    std::vector<ModelAnswer> answersOf(const UUID& batchID, std::size_t place) {
        const auto answers = model().library.answersOfRun(runsOf(batchID).at(place)->id);
        return {answers.begin(), answers.end()};
    }

    [[nodiscard]] bool runUntilDone(const UUID& batchID) {
        return loop.runUntil([&] { return model().library.findBatch(batchID)->status == BatchStatus::done; });
    }
};

/// A body of generation items with these prompts.
inline Json::Value generation(const std::vector<std::string>& prompts) {
    Json::Value items = Json::Value::array();
    for (const std::string& prompt : prompts)
        items.push_back({{"prompt", prompt}});
    return {{"kind", "generation"}, {"items", std::move(items)}};
}

/// The wire form of one question of yes or no.
inline Json::Value yesOrNo(const std::string& instructions = "Is it wet?") {
    return {{"wet", {{"type", "noul"}, {"instructions", instructions}}}};
}

} // namespace quorl::test

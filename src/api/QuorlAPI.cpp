#include "api/QuorlAPI.h"

#include "app/AppModel.h"
#include "base/Json.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace quorl::QuorlAPI {

namespace {

constexpr std::string_view scheme = "Bearer ";

// The pieces of a path between its slashes, without the empty ones: a missing, doubled or trailing slash
// means nothing. Nothing is percent-decoded, since no route needs it.
std::vector<std::string_view> segmentsOf(std::string_view path) {
    std::vector<std::string_view> segments;
    while (!path.empty()) {
        const std::size_t length = std::min(path.find('/'), path.size());
        if (length > 0)
            segments.push_back(path.substr(0, length));
        path.remove_prefix(std::min(length + 1, path.size()));
    }
    return segments;
}

HTTPResponse listBatches(const AppModel& app) {
    Json::Value batches = Json::Value::array();
    for (const QuorlBatch& batch : app.library.batches())
        batches.push_back(app.batchSummary(batch));
    return makeReply(200, {{"batches", std::move(batches)}});
}

HTTPResponse showBatch(std::string_view idText, const AppModel& app) {
    const auto id = UUID::parse(idText);
    const auto payload = id ? app.batchPayload(*id) : std::nullopt;
    if (!payload)
        return makeErrorReply(404, "No batch with that id.");
    return makeReply(200, *payload);
}

HTTPResponse unknownAnswer() {
    return makeErrorReply(404, "No answer with that id.");
}

HTTPResponse markAnswer(std::string_view idText, std::string_view body, AppModel& app) {
    const auto id = UUID::parse(idText);
    return id ? app.markAPIAnswer(*id, body) : unknownAnswer();
}

// Whether there is such an answer or not: afterwards it is in no dataset.
HTTPResponse removeExample(const UUID& answerID, AppModel& app) {
    app.removeFromDataset(answerID);
    return makeReply(200, {{"answer_id", answerID.text()}, {"removed", true}});
}

// The id before the method here, and the method before the id in `mark`: clients rely on which of the two
// errors they get.
std::optional<HTTPResponse> changeDataset(std::string_view method, std::string_view idText, AppModel& app) {
    const auto id = UUID::parse(idText);
    if (!id)
        return unknownAnswer();
    if (method == "POST")
        return app.saveAPIAnswer(*id);
    if (method == "DELETE")
        return removeExample(*id, app);
    return std::nullopt;
}

// Nothing if there is no such route.
std::optional<HTTPResponse> followRoute(const HTTPRequest& request, AppModel& app) {
    const std::string& method = request.method;
    const auto path = segmentsOf(request.path);
    const auto isAt = [&](std::size_t place, std::string_view name) {
        return place < path.size() && path[place] == name;
    };
    if (!isAt(0, "v1"))
        return std::nullopt;
    if (path.size() == 2 && method == "GET") {
        if (isAt(1, "health"))
            return makeReply(200, {{"ok", true}, {"service", "quorl"}});
        if (isAt(1, "models"))
            return makeReply(200, {{"models", app.apiModels()}});
        if (isAt(1, "batches"))
            return listBatches(app);
    }
    if (path.size() == 2 && method == "POST" && isAt(1, "batches"))
        return app.createAPIBatch(request.body, RunOrigin::api, std::nullopt);
    if (path.size() == 3 && method == "GET" && isAt(1, "batches"))
        return showBatch(path[2], app);
    if (path.size() == 4 && method == "POST" && isAt(1, "answers") && isAt(3, "mark"))
        return markAnswer(path[2], request.body, app);
    if (path.size() == 4 && isAt(1, "answers") && isAt(3, "dataset"))
        return changeDataset(method, path[2], app);
    return std::nullopt;
}

} // namespace

// A plain comparison: nothing is claimed against a client that measures how long a refusal takes.
bool authorized(const HTTPRequest& request, std::string_view token) {
    const auto header = request.headers.find("authorization");
    if (header == request.headers.end())
        return false;
    const std::string_view value = header->second;
    return value.starts_with(scheme) && value.substr(scheme.size()) == token;
}

HTTPResponse respond(const HTTPRequest& request, AppModel& app) {
    // What a browser asks ahead of the request itself, and without a token.
    if (request.method == "OPTIONS")
        return {204, {}};
    if (!authorized(request, *app.apiToken))
        return makeErrorReply(401, "Send Authorization: Bearer and the token shown on the Batches screen.");
    if (auto reply = followRoute(request, app))
        return *std::move(reply);
    return makeErrorReply(404, "Unknown route " + request.method + " " + request.path + ".");
}

} // namespace quorl::QuorlAPI

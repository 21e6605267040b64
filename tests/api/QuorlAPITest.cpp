#include "api/QuorlAPI.h"

#include "app/Harness.h"
#include "base/Json.h"

using namespace quorl;
using namespace quorl::test;

namespace {

constexpr const char* token = "0123456789abcdef0123456789abcdef";

const HTTPResponse unauthorized{
    401, R"({"error":"Send Authorization: Bearer and the token shown on the Batches screen."})"};
const HTTPResponse unknownBatch{404, R"({"error":"No batch with that id."})"};
const HTTPResponse unknownAnswer{404, R"({"error":"No answer with that id."})"};

HTTPRequest makeRequest(std::string method, std::string path, std::string body = {}) {
    return {std::move(method), std::move(path), {{"authorization", std::string("Bearer ") + token}}, body};
}

class QuorlAPITest : public testing::Test {
protected:
    void SetUp() override {
        harness.addReadyModel("sample-brief");
        run.batchID = batch.id;
        harness.file().saveBatch(batch);
        harness.file().insertRun(run);
        harness.file().insertAnswer(answer);
        harness.start();
        model().apiToken = token;
    }

    AppModel& model() { return harness.model(); }

    HTTPResponse respond(const HTTPRequest& request) { return QuorlAPI::respond(request, model()); }
    HTTPResponse respond(std::string method, std::string path, std::string body = {}) {
        return respond(makeRequest(std::move(method), std::move(path), std::move(body)));
    }
    // The path with its slashes as they stand in JSON.
    HTTPResponse unknownRoute(const std::string& method, const std::string& path) {
        return makeErrorReply(404, "Unknown route " + method + " " + path + ".");
    }

    std::string ofAnswer(const std::string& action) {
        return "/v1/answers/" + answer.id.text() + "/" + action;
    }

    Harness harness;
    QuorlBatch batch = makeBatch();
    QuorlRun run = makeRun();
    ModelAnswer answer = makeAnswer(run.id);
};

std::string lowerCase(std::string text) {
    for (char& character : text) {
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    }
    return text;
}

// --- The token ---

bool authorizes(const std::string& header) {
    return QuorlAPI::authorized({"GET", "/", {{"authorization", header}}, {}}, token);
}

TEST(Authorization, IsTheSchemeOneBlankAndTheToken) {
    EXPECT_TRUE(authorizes(std::string("Bearer ") + token));
}

TEST(Authorization, IsRefusedInAnyOtherForm) {
    const std::string good = token;

    EXPECT_FALSE(QuorlAPI::authorized({"GET", "/", {}, {}}, token));
    EXPECT_FALSE(authorizes(""));
    EXPECT_FALSE(authorizes(good));
    EXPECT_FALSE(authorizes("Bearer"));
    EXPECT_FALSE(authorizes("Bearer" + good));
    EXPECT_FALSE(authorizes("Bearer  " + good)); // the second blank is part of what is compared
    EXPECT_FALSE(authorizes("Bearer\t" + good));
    EXPECT_FALSE(authorizes("bearer " + good));
    EXPECT_FALSE(authorizes("BEARER " + good));
    EXPECT_FALSE(authorizes(" Bearer " + good));
    EXPECT_FALSE(authorizes("Basic " + good));
    EXPECT_FALSE(authorizes("Bearer " + good + "0"));
    EXPECT_FALSE(authorizes("Bearer " + good.substr(1)));
    EXPECT_FALSE(authorizes("Bearer 0123456789ABCDEF0123456789ABCDEF"));
}

TEST(Authorization, StandsUnderTheHeadersLowerCaseName) {
    EXPECT_FALSE(
        QuorlAPI::authorized({"GET", "/", {{"x-authorization", std::string("Bearer ") + token}}, {}}, token));
}

TEST_F(QuorlAPITest, EveryRouteButOptionsWantsTheTokenAndSoDoesEveryUnknownOne) {
    for (const auto& [method, path] :
         std::vector<std::pair<std::string, std::string>>{{"GET", "/v1/health"},
                                                          {"GET", "/v1/models"},
                                                          {"GET", "/v1/batches"},
                                                          {"POST", "/v1/batches"},
                                                          {"GET", "/v1/batches/" + batch.id.text()},
                                                          {"POST", ofAnswer("mark")},
                                                          {"POST", ofAnswer("dataset")},
                                                          {"DELETE", ofAnswer("dataset")},
                                                          {"GET", "/nowhere"},
                                                          {"options", "/v1/health"}}) {
        EXPECT_EQ(respond({method, path, {}, {}}), unauthorized) << method << " " << path;
    }
}

TEST_F(QuorlAPITest, OptionsNeedsNoTokenOnAnyPath) {
    for (const char* path : {"/v1/health", "/nowhere", "", "*"})
        EXPECT_EQ(respond({"OPTIONS", path, {}, {}}), (HTTPResponse{204, ""})) << path;
}

TEST_F(QuorlAPITest, AChangedTokenCountsAtOnce) {
    model().apiToken = "another";

    EXPECT_EQ(respond("GET", "/v1/health"), unauthorized);
}

// --- Reading ---

TEST_F(QuorlAPITest, TheHealthRouteNamesTheService) {
    EXPECT_EQ(respond("GET", "/v1/health"), (HTTPResponse{200, R"({"ok":true,"service":"quorl"})"}));
}

TEST_F(QuorlAPITest, ModelsAreListedUnderOneKey) {
    EXPECT_EQ(respond("GET", "/v1/models"), makeReply(200, {{"models", model().apiModels()}}));
}

TEST_F(QuorlAPITest, WithoutModelsTheListIsEmpty) {
    for (const ModelProfile& profile : std::vector(model().library.models()))
        model().library.removeModel(profile.id);

    EXPECT_EQ(respond("GET", "/v1/models"), (HTTPResponse{200, R"({"models":[]})"}));
}

TEST_F(QuorlAPITest, BatchesAreListedNewestFirst) {
    QuorlBatch newer = makeBatch();
    newer.createdAt = batch.createdAt + std::chrono::seconds(1);
    harness.file().saveBatch(newer);
    harness.start();
    model().apiToken = token;

    EXPECT_EQ(respond("GET", "/v1/batches"),
              makeReply(200, {{"batches",
                               {model().batchSummary(*model().library.findBatch(newer.id)),
                                model().batchSummary(*model().library.findBatch(batch.id))}}}));
}

TEST_F(QuorlAPITest, WithoutBatchesTheListIsEmpty) {
    model().library.removeBatch(batch.id);

    EXPECT_EQ(respond("GET", "/v1/batches"), (HTTPResponse{200, R"({"batches":[]})"}));
}

TEST_F(QuorlAPITest, ABatchIsShownByItsIdInEitherCase) {
    const HTTPResponse expected = makeReply(200, *model().batchPayload(batch.id));

    EXPECT_EQ(respond("GET", "/v1/batches/" + batch.id.text()), expected);
    EXPECT_EQ(respond("GET", "/v1/batches/" + lowerCase(batch.id.text())), expected);
}

TEST_F(QuorlAPITest, AnUnknownBatchAndABadIdAreToldInTheSameWords) {
    std::string withoutDashes = batch.id.text();
    std::erase(withoutDashes, '-');
    for (const std::string& id : {UUID::random().text(), std::string("7"), withoutDashes,
                                  "{" + batch.id.text() + "}", batch.id.text() + "%20"}) {
        EXPECT_EQ(respond("GET", "/v1/batches/" + id), unknownBatch) << id;
    }
}

TEST_F(QuorlAPITest, SlashesInAUrlAreEscaped) {
    EXPECT_NE(respond("GET", "/v1/batches")
                  .body.find(R"("url":"http:\/\/127.0.0.1:47821\/v1\/batches\/)" + batch.id.text()),
              std::string::npos);
}

// --- Creating ---

TEST_F(QuorlAPITest, ABatchIsMadeOfTheBodyOnBehalfOfTheAPI) {
    const HTTPResponse reply =
        respond("POST", "/v1/batches", R"({"kind":"generation","items":[{"prompt":"Up?"}]})");

    const QuorlBatch& made = model().library.batches()[0];
    EXPECT_EQ(reply, makeReply(202, model().batchSummary(made)));
    EXPECT_EQ(made.source, RunOrigin::api);
}

TEST_F(QuorlAPITest, ABodyThatMakesNoBatchIsRefused) {
    EXPECT_EQ(respond("POST", "/v1/batches", "no JSON"), makeErrorReply(400, "Send a JSON object."));
}

// --- Judging ---

TEST_F(QuorlAPITest, AnAnswerIsMarked) {
    const HTTPResponse reply = respond("POST", ofAnswer("mark"), R"({"rating":8})");

    EXPECT_EQ(model().library.findAnswer(answer.id)->rating, 8);
    EXPECT_EQ(reply, makeReply(200, AppModel::answerJSON(*model().library.findAnswer(answer.id), run.kind)));
}

TEST_F(QuorlAPITest, AnAnswerIsMarkedByItsIdInLowerCaseToo) {
    EXPECT_EQ(
        respond("POST", "/v1/answers/" + lowerCase(answer.id.text()) + "/mark", R"({"rating":8})").status,
        200);
}

TEST_F(QuorlAPITest, MarkLooksAtTheMethodBeforeTheId) {
    EXPECT_EQ(respond("POST", "/v1/answers/7/mark", R"({"rating":8})"), unknownAnswer);
    EXPECT_EQ(respond("GET", "/v1/answers/7/mark"), unknownRoute("GET", "/v1/answers/7/mark"));
    EXPECT_EQ(respond("GET", ofAnswer("mark")), unknownRoute("GET", ofAnswer("mark")));
    EXPECT_EQ(respond("DELETE", ofAnswer("mark")), unknownRoute("DELETE", ofAnswer("mark")));
}

TEST_F(QuorlAPITest, AnAnswerIsSavedAndTakenOutAgain) {
    const HTTPResponse saved = respond("POST", ofAnswer("dataset"));
    EXPECT_EQ(saved, makeReply(200, {{"answer_id", answer.id.text()},
                                     {"dataset_id", model().library.dataset()[0].id.text()}}));

    const HTTPResponse removed = respond("DELETE", ofAnswer("dataset"));
    EXPECT_EQ(removed, (HTTPResponse{200, R"({"answer_id":")" + answer.id.text() + R"(","removed":true})"}));
    EXPECT_EQ(model().library.dataset().size(), 0);
    EXPECT_EQ(model().library.findAnswer(answer.id)->datasetID, std::nullopt);
}

TEST_F(QuorlAPITest, DatasetLooksAtTheIdBeforeTheMethod) {
    for (const char* method : {"POST", "DELETE", "GET", "PUT", "post"})
        EXPECT_EQ(respond(method, "/v1/answers/7/dataset"), unknownAnswer) << method;
    for (const char* method : {"GET", "PUT", "post"})
        EXPECT_EQ(respond(method, ofAnswer("dataset")), unknownRoute(method, ofAnswer("dataset"))) << method;
}

TEST_F(QuorlAPITest, TakingOutWhatIsNotThereSucceedsAndNamesTheIdInUpperCase) {
    const std::string id = UUID::random().text();

    EXPECT_EQ(respond("DELETE", "/v1/answers/" + lowerCase(id) + "/dataset"),
              (HTTPResponse{200, R"({"answer_id":")" + id + R"(","removed":true})"}));
}

// --- Paths ---

TEST_F(QuorlAPITest, MissingDoubledAndTrailingSlashesMeanNothing) {
    const HTTPResponse health = respond("GET", "/v1/health");
    for (const char* path : {"v1/health", "/v1/health/", "//v1///health//", "v1//health"})
        EXPECT_EQ(respond("GET", path), health) << path;
    EXPECT_EQ(respond("GET", "/v1/models/"), respond("GET", "/v1/models"));
    EXPECT_EQ(respond("GET", "/v1/batches/"), respond("GET", "/v1/batches"));
    EXPECT_EQ(respond("POST", "/v1/batches/", "{}").status, 400);
    EXPECT_EQ(respond("GET", "/v1/batches/" + batch.id.text() + "/").status, 200);
    EXPECT_EQ(respond("POST", ofAnswer("mark") + "/", R"({"rating":1})").status, 200);
    EXPECT_EQ(respond("POST", ofAnswer("dataset") + "/").status, 200);
    EXPECT_EQ(respond("DELETE", ofAnswer("dataset") + "/").status, 200);
}

TEST_F(QuorlAPITest, MethodsAndSegmentsAreComparedExactly) {
    const std::string id = batch.id.text();
    for (const auto& [method, path] :
         std::vector<std::pair<std::string, std::string>>{{"POST", "/v1/health"},
                                                          {"get", "/v1/health"},
                                                          {"GET", "/v1/Health"},
                                                          {"GET", "/V1/health"},
                                                          {"GET", "/v1/he%61lth"},
                                                          {"GET", "/v1/health/x"},
                                                          {"GET", "/v1"},
                                                          {"GET", "/"},
                                                          {"GET", ""},
                                                          {"GET", "/v2/health"},
                                                          {"GET", "/x/v1/health"},
                                                          {"POST", "/v1/models"},
                                                          {"GET", "/v1/models/x"},
                                                          {"PUT", "/v1/batches"},
                                                          {"DELETE", "/v1/batches"},
                                                          {"DELETE", "/v1/batches/" + id},
                                                          {"POST", "/v1/batches/" + id},
                                                          {"GET", "/v1/batches/" + id + "/x"},
                                                          {"GET", "/v1/batches/7/x"},
                                                          {"GET", "/v1/answers"},
                                                          {"GET", "/v1/answers/" + id},
                                                          {"POST", "/v1/answers/" + id + "/Mark"},
                                                          {"POST", "/v1/answers/" + id + "/mark/x"},
                                                          {"POST", "/v1/answers/7/dataset/x"},
                                                          {"OPTION", "/v1/health"}}) {
        EXPECT_EQ(respond(method, path), unknownRoute(method, path)) << method << " " << path;
    }
}

TEST_F(QuorlAPITest, AnUnknownRouteIsNamedAsItWasSent) {
    EXPECT_EQ(respond("PATCH", "//v1/Nowhere/"),
              (HTTPResponse{404, R"({"error":"Unknown route PATCH \/\/v1\/Nowhere\/."})"}));
}

} // namespace

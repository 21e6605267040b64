#include "api/ServedModel.h"
#include "base/Json.h"

#include <map>

using namespace quorl;
using namespace quorl::test;
using testing::UnorderedElementsAreArray;

namespace {

constexpr int clientCount = 10;
constexpr int roundsOfEach = 4;

// What a client has been told, to be found in the library afterwards.
struct Told {
    std::vector<UUID> batches;
    std::map<UUID, std::int64_t> ratings; // by answer
    std::map<UUID, UUID> examples;        // by answer; those that were not taken out again
};

// One of the programs that ask at the same time: posts a batch, waits for its answers, judges them.
class APIClient {
public:
    APIClient(std::uint16_t portNumber, std::string tokenText, int place)
        : port(portNumber), token(std::move(tokenText)), number(place) {}

    void run() {
        for (int round = 0; round < roundsOfEach; ++round) {
            const UUID batch = post(round);
            for (const UUID& answer : waitForAnswers(batch))
                judge(answer, round);
        }
    }

    Told told;

private:
    Json::Value ask(std::string_view method, const std::string& path, std::string_view status,
                    std::string_view body = {}) {
        const APIReply reply = exchange(port, method, path, token, body);
        EXPECT_EQ(reply.statusLine, status) << method << " " << path;
        const auto value = Json::parseObject(reply.body);
        EXPECT_TRUE(value.has_value()) << reply.body;
        return value.value_or(Json::Value::object());
    }
    Json::Value read(const std::string& path) { return ask("GET", path, "HTTP/1.1 200 OK"); }

    UUID post(int round) {
        const std::string name = std::to_string(number) + "." + std::to_string(round);
        const Json::Value summary = ask("POST", "/v1/batches", "HTTP/1.1 202 Accepted",
                                        R"({"kind":"generation","name":")" + name +
                                            R"(","items":[{"prompt":"Up?"},{"prompt":"Down?"}]})");
        EXPECT_EQ(summary["name"], name);
        told.batches.push_back(UUID::parse(summary["id"].get<std::string>()).value());
        return told.batches.back();
    }

    std::vector<UUID> waitForAnswers(const UUID& batch) {
        Json::Value payload = read("/v1/batches/" + batch.text());
        while (payload["status"] != "done") {
            EXPECT_FALSE(read("/v1/batches")["batches"].empty());
            payload = read("/v1/batches/" + batch.text());
        }
        std::vector<UUID> answers;
        for (const Json::Value& item : payload["items"]) {
            EXPECT_EQ(item["complete"], true);
            for (const Json::Value& answer : item["answers"]) {
                EXPECT_EQ(answer["state"], "done") << answer;
                answers.push_back(UUID::parse(answer["id"].get<std::string>()).value());
            }
        }
        EXPECT_EQ(answers.size(), 2);
        return answers;
    }

    void judge(const UUID& answer, int round) {
        const std::string path = "/v1/answers/" + answer.text();
        const std::int64_t rating = 1 + round % 10;
        const Json::Value marked =
            ask("POST", path + "/mark", "HTTP/1.1 200 OK", R"({"rating":)" + std::to_string(rating) + "}");
        EXPECT_EQ(marked["rating"], rating);
        told.ratings[answer] = rating;
        const Json::Value saved = ask("POST", path + "/dataset", "HTTP/1.1 200 OK");
        if (round % 2 == 0)
            told.examples[answer] = UUID::parse(saved["dataset_id"].get<std::string>()).value();
        else
            ask("DELETE", path + "/dataset", "HTTP/1.1 200 OK");
    }

    const std::uint16_t port;
    const std::string token;
    const int number;
};

Told together(const std::vector<APIClient>& clients) {
    Told all;
    for (const APIClient& client : clients) {
        all.batches.insert(all.batches.end(), client.told.batches.begin(), client.told.batches.end());
        all.ratings.insert(client.told.ratings.begin(), client.told.ratings.end());
        all.examples.insert(client.told.examples.begin(), client.told.examples.end());
    }
    return all;
}

void expectInFile(QuorlStore& file, const Told& told) {
    std::vector<UUID> batches;
    for (const QuorlBatch& batch : file.loadBatches()) {
        EXPECT_EQ(batch.status, BatchStatus::done);
        batches.push_back(batch.id);
    }
    EXPECT_THAT(batches, UnorderedElementsAreArray(told.batches));

    std::map<UUID, int> runs;
    for (const QuorlRun& run : file.loadRuns())
        ++runs[run.batchID.value()];
    EXPECT_EQ(runs.size(), told.batches.size());
    for (const auto& [batch, count] : runs)
        EXPECT_EQ(count, 2);

    std::map<UUID, std::int64_t> ratings;
    std::map<UUID, UUID> examples;
    for (const ModelAnswer& answer : file.loadAnswers()) {
        EXPECT_EQ(answer.state, AnswerState::done);
        ratings[answer.id] = answer.rating.value_or(0);
        if (answer.datasetID)
            examples[answer.id] = *answer.datasetID;
    }
    EXPECT_EQ(ratings, told.ratings);
    EXPECT_EQ(examples, told.examples);
    EXPECT_EQ(file.loadDataset().size(), told.examples.size());
}

TEST(ManyClients, FindEverythingTheyWereToldInTheLibrary) {
    ServedModel program;
    program.harness.addReadyModel("sample");
    program.start();
    std::vector<APIClient> clients;
    for (int number = 0; number < clientCount; ++number)
        clients.emplace_back(program.port(), *program.harness.model().apiToken, number);

    program.serveWhile(
        [&] {
            std::vector<std::thread> threads;
            for (APIClient& client : clients)
                threads.emplace_back([&client] { client.run(); });
            for (std::thread& thread : threads)
                thread.join();
        },
        std::chrono::seconds(240));

    const Told told = together(clients);
    EXPECT_EQ(told.batches.size(), clientCount * roundsOfEach);
    EXPECT_EQ(told.ratings.size(), 2 * told.batches.size());
    expectInFile(program.harness.file(), told);
}

} // namespace

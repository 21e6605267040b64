// quorl_api_subject STATE: serves the local API as the program does, on a library of its own, and prints what
// a client needs to know as one line of JSON. Ends when its standard input does. States:
//   working   a library in which nearly every reply can be had
//   modelless no model can be asked
//   closed    the model is gone, as at the end of the program
//   starting  nobody has said yet how requests are handled

#include "api/ServedModel.h"
#include "base/Json.h"
#include "base/Text.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <deque>

namespace {

using namespace quorl;
using namespace quorl::test;

class Subject {
public:
    Json::Value work() {
        addModels();
        addBatch();
        // Whoever names a batch so has it refused by the library.
        harness.file().exec("CREATE TRIGGER refuse BEFORE INSERT ON batches WHEN NEW.name = 'Refused' "
                            "BEGIN SELECT RAISE(ABORT, 'held fast'); END");
        harness.defaults.setString("api.token", "0123456789abcdef0123456789abcdef");
        AppModel& model = served.start();
        // At the start it would have been ended.
        ModelAnswer running = makeAnswer(run.id, 9);
        running.state = AnswerState::running;
        model.library.replaceAnswer(running);
        return {{"batch", run.batchID->text()}, {"done", done.id.text()},       {"empty", empty.id.text()},
                {"failed", failed.id.text()},   {"running", running.id.text()}, {"token", *model.apiToken}};
    }

    Json::Value workWithoutModels() {
        addModel("Sample off", ProviderKind::openAICompatible).enabled = false;
        saveModels();
        return {{"token", *served.start().apiToken}};
    }

    Json::Value close() {
        addModel("Sample off", ProviderKind::openAICompatible).enabled = false;
        saveModels();
        served.start();
        harness.quit();
        return {{"token", ""}};
    }

    Json::Value beStarting() {
        served.startBare();
        return {{"token", ""}};
    }

    [[nodiscard]] std::uint16_t port() const { return served.port(); }

    void serveUntilInputCloses() {
        served.serveWhile(
            [] {
                char ignored = 0;
                while (read(STDIN_FILENO, &ignored, 1) > 0) {
                }
            },
            std::chrono::hours(1));
    }

private:
    ModelProfile& addModel(const std::string& name, ProviderKind kind) {
        ModelProfile model = makeModel(kind);
        model.name = name;
        model.modelIdentifier = Text::lowercased(name);
        std::ranges::replace(model.modelIdentifier, ' ', '-');
        model.endpoint = harness.endpoint.baseURL();
        model.sortIndex = static_cast<std::int64_t>(models.size());
        return models.emplace_back(model);
    }

    void saveModels() {
        for (const ModelProfile& model : models)
            harness.file().saveModel(model);
    }

    void addModels() {
        harness.giveKey(addModel("Sample brief", ProviderKind::openAICompatible).id);
        harness.giveKey(addModel("Sample thorough", ProviderKind::openAICompatible).id);
        addModel("Sample literal", ProviderKind::veritor);
        addModel("Sample keyless", ProviderKind::zun);
        for (const char* name : {"Sample off", "Twin", "Twin"})
            addModel(name, ProviderKind::openAICompatible).enabled = false;
        saveModels();
    }

    void addBatch() {
        QuorlBatch batch = makeBatch();
        batch.source = RunOrigin::app;
        run.batchID = batch.id;
        failed.state = AnswerState::failed;
        failed.errorMessage = "It rained.";
        failed.inputTokens.reset();
        failed.outputTokens.reset();
        failed.costUSD.reset();
        empty.text = "";
        harness.file().saveBatch(batch);
        harness.file().insertRun(run);
        for (const ModelAnswer& answer : {done, failed, empty})
            harness.file().insertAnswer(answer);
    }

    ServedModel served;
    Harness& harness = served.harness;
    std::deque<ModelProfile> models; // whose elements stay in their places
    QuorlRun run = makeRun();
    ModelAnswer done = makeAnswer(run.id, 0);
    ModelAnswer failed = makeAnswer(run.id, 1);
    ModelAnswer empty = makeAnswer(run.id, 2);
};

std::optional<Json::Value> prepare(Subject& subject, std::string_view state) {
    if (state == "working")
        return subject.work();
    if (state == "modelless")
        return subject.workWithoutModels();
    if (state == "closed")
        return subject.close();
    if (state == "starting")
        return subject.beStarting();
    return std::nullopt;
}

} // namespace

int main(int count, char** words) {
    Subject subject;
    auto facts = prepare(subject, count == 2 ? words[1] : "");
    if (!facts) {
        std::fputs("usage: quorl_api_subject working|modelless|closed|starting\n", stderr);
        return 2;
    }
    (*facts)["port"] = subject.port();
    std::puts(Json::write(*facts).value().c_str());
    std::fflush(stdout);
    subject.serveUntilInputCloses();
    return 0;
}

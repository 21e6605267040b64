#include "app/AppModel.h"

#include "base/Format.h"
#include "base/Text.h"
#include "store/QuorlStore.h"
#include "store/Seed.h"
#include "transports/ExecutableResolver.h"

#include <algorithm>

namespace quorl {

namespace {

// The length of a test's reply that fits its status line, in characters.
constexpr std::size_t shownReply = 120;

DecisionRequest generationTest(const ModelProfile& profile) {
    const std::string sentence = "Reply with the single word pong.";
    return {sentence, sentence, QuorlKind::generation, profile, {}};
}

DecisionRequest decisionTest(const ModelProfile& profile) {
    DecisionQuestion question = DecisionQuestion::starter();
    question.name = "connected";
    question.type = DecisionQuestionType::noul;
    question.instructions = "Is this a connection test?";
    question.yesMeans = "The endpoint answered.";
    question.noMeans = "The endpoint did not answer.";
    return {"Connection test.", "", QuorlKind::decision, profile, {question}};
}

std::string statusLine(const DecisionOutcome& outcome) {
    if (outcome.errorMessage)
        return *outcome.errorMessage;
    std::string reply(Text::firstCharacters(outcome.text, shownReply));
    std::ranges::replace(reply, '\n', ' ');
    return Format::latency(outcome.latencyMS) + " · " + reply;
}

// A field that is left blank keeps what is saved.
void merge(std::string& saved, std::string_view pasted) {
    if (!pasted.empty())
        saved = Text::trimmed(pasted);
}

} // namespace

void AppModel::addModel(ProviderKind kind) {
    const auto& all = library.models();
    const auto last = std::ranges::max_element(all, {}, &ModelProfile::sortIndex);
    ModelProfile model = Seed::preset(kind, last == all.end() ? 0 : last->sortIndex + 1, UUID::random());
    model.executablePath = ExecutableResolver::find(kind, "").value_or("");
    alertOnFailure([&] { store->saveModel(model); });
    library.appendModel(model);
    selectedModelID = model.id;
    destination = Screen::models;
    refreshSecretFlags();
}

void AppModel::replaceModel(const ModelProfile& profile) {
    if (!library.findModel(profile.id))
        return;
    library.replaceModel(profile);
    alertOnFailure([&] { store->saveModel(profile); });
}

void AppModel::saveSecret(const UUID& modelID, const ModelSecret& secret) {
    secrets.save(modelID, secret);
    const ModelProfile* model = library.findModel(modelID);
    secretFlags.set(modelID, secret.satisfies(model ? model->provider : ProviderKind::openAI));
}

void AppModel::mergeSecret(const UUID& modelID, const ModelSecret& pasted) {
    if (pasted == ModelSecret{}) {
        alertMessage = "Paste a key first. A blank field keeps the saved credential.";
        return;
    }
    ModelSecret secret = secrets.load(modelID);
    merge(secret.apiKey, pasted.apiKey);
    merge(secret.awsAccessKey, pasted.awsAccessKey);
    merge(secret.awsSecretKey, pasted.awsSecretKey);
    merge(secret.awsSessionToken, pasted.awsSessionToken);
    saveSecret(modelID, secret);
}

void AppModel::clearSecret(const UUID& modelID) {
    secrets.clear(modelID);
    secretFlags.set(modelID, false);
}

bool AppModel::hasUsableSecret(const ModelProfile& profile) {
    return secrets.load(profile.id).satisfies(profile.provider);
}

void AppModel::refreshSecretFlags() {
    for (const ModelProfile& model : library.models())
        secretFlags.set(model.id, hasUsableSecret(model));
}

void AppModel::test(const ModelProfile& profile) {
    testStatus.set(profile.id, "Asking…");
    start(family(profile.provider) == QuorlKind::decision ? decisionTest(profile) : generationTest(profile),
          secrets.load(profile.id), [id = profile.id](AppModel& model, const auto& outcome) {
              model.testStatus.set(id, statusLine(outcome));
          });
}

} // namespace quorl

#include "app/AppModel.h"

#include "base/Text.h"
#include "domain/ServiceHosts.h"
#include "store/QuorlStore.h"
#include "store/Seed.h"
#include "transports/ExecutableResolver.h"
#include "transports/NuvelLocal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace quorl {

namespace {

constexpr const char* decisionModelsSeededKey = "seed.decisions.v1";

// Start-up upkeep reports nothing: what could not be written stays as it was and is tried again at the next
// start.
template <class Write>
void ignoringFailure(Write write) {
    try {
        write();
    } catch (const StoreError&) {
        // See above.
    }
}

// A category that cannot be looked at counts as in use: it is kept.
bool isUnused(QuorlStore& store, const UUID& category) {
    try {
        return store.countChildren(category) == 0 && !store.categoryInUse(category);
    } catch (const StoreError&) {
        return false;
    }
}

// Where the tool of a model is, if the model needs one and its own path leads to none.
std::optional<std::string> findMissingTool(const ModelProfile& model) {
    if (ExecutableResolver::isExecutable(model.executablePath))
        return std::nullopt;
    switch (model.provider) {
    case ProviderKind::nuvel:
        return NuvelLocal::usesHTTP(model) ? std::nullopt : NuvelLocal::findExecutable("");
    case ProviderKind::claudeCode:
    case ProviderKind::codex:
        return ExecutableResolver::find(model.provider, "");
    case ProviderKind::zun:
    case ProviderKind::openAIDecisions:
    case ProviderKind::veritor:
    case ProviderKind::openAI:
    case ProviderKind::anthropic:
    case ProviderKind::amazonBedrock:
    case ProviderKind::openAICompatible:
        return std::nullopt;
    }
    __builtin_unreachable();
}

} // namespace

std::unique_ptr<QuorlStore> AppModel::openStore() {
    try {
        return std::make_unique<QuorlStore>((directory / "quorl.sqlite").string());
    } catch (const StoreError& error) {
        launchWarning = "Couldn't open the library on disk. This session won't be saved. " + error.message();
    }
    try {
        return std::make_unique<QuorlStore>(":memory:");
    } catch (const StoreError& error) {
        std::fprintf(stderr, "quorl: no library in memory either: %s\n", error.what());
        std::abort();
    }
}

void AppModel::bootstrap() {
    seedIfEmpty();
    ensureDecisionModels();
    retireSeedCategories();
    reload();
    attachCLIPaths();
    refreshClaudeNotes();
    refreshNuvelNotes();
}

void AppModel::seedIfEmpty() {
    std::int64_t count = 0; // a library that cannot be counted is taken as empty
    ignoringFailure([&] { count = store->countModels(); });
    if (count > 0)
        return;
    for (const ModelProfile& model : Seed::models())
        saveQuietly(model);
}

// Once per user account, not per library: a decision model that was deleted afterwards stays deleted.
void AppModel::ensureDecisionModels() {
    if (platform.defaults.boolean(decisionModelsSeededKey))
        return;
    std::vector<ModelProfile> present;
    ignoringFailure([&] { present = store->loadModels(); });
    for (const ModelProfile& preset : Seed::decisionPresets()) {
        if (std::ranges::find(present, preset.id, &ModelProfile::id) == present.end())
            saveQuietly(preset);
    }
    platform.defaults.setBoolean(decisionModelsSeededKey, true);
}

void AppModel::retireSeedCategories() {
    for (const UUID& category : Seed::retiredCategories()) {
        if (isUnused(*store, category))
            ignoringFailure([&] { store->deleteCategory(category); });
    }
}

void AppModel::attachCLIPaths() {
    for (const ModelProfile& model : std::vector(library.models())) {
        const std::optional<std::string> path = findMissingTool(model);
        if (!path)
            continue;
        ModelProfile attached = model;
        attached.executablePath = *path;
        // Only the first tool ever found enables its model, and only Claude Code's: a Codex stays as it was,
        // and so does a model that was given a fresh path in place of a stale one.
        if (model.provider == ProviderKind::claudeCode && model.executablePath.empty())
            attached.enabled = true;
        library.replaceModel(attached);
        saveQuietly(attached);
    }
}

void AppModel::refreshClaudeNotes() {
    const ModelProfile* model = library.findModel(Seed::claudeCode());
    if (!model || model->notes.find("login already on this machine") == std::string::npos)
        return;
    ModelProfile mended = *model;
    mended.notes = Seed::preset(ProviderKind::claudeCode, mended.sortIndex, mended.id).notes;
    library.replaceModel(mended);
    saveQuietly(mended);
}

// Moves the catalogue's Nuvel off its former hosted default; any other endpoint is the user's choice.
void AppModel::refreshNuvelNotes() {
    const ModelProfile* model = library.findModel(Seed::nuvel());
    if (!model)
        return;
    const std::string_view endpoint = Text::trimmed(model->endpoint);
    if (endpoint.find(ServiceHosts::nuvelAPIHost) == std::string_view::npos &&
        endpoint != ServiceHosts::formerNuvelURL)
        return;
    const ModelProfile preset = Seed::preset(ProviderKind::nuvel, model->sortIndex, model->id);
    ModelProfile mended = *model;
    mended.endpoint.clear();
    mended.modelIdentifier = preset.modelIdentifier;
    mended.notes = preset.notes;
    mended.inputPricePerMillion = 0;
    mended.enabled = true;
    library.replaceModel(mended);
    saveQuietly(mended);
}

void AppModel::saveQuietly(const ModelProfile& profile) {
    ignoringFailure([&] { store->saveModel(profile); });
}

void AppModel::recoverInterrupted() {
    bool changed = false;
    for (const UUID& runID : library.runsWithAnswers()) {
        // Copied, since replacing an answer changes what the span shows.
        const auto answers = library.answersOfRun(runID);
        for (ModelAnswer answer : std::vector(answers.begin(), answers.end())) {
            if (answer.state != AnswerState::running)
                continue;
            answer.state = AnswerState::failed;
            answer.errorMessage = "Quorl closed before this response finished.";
            library.replaceAnswer(answer);
            ignoringFailure([&] { store->updateOutcome(answer); });
            changed = true;
        }
    }
    if (changed)
        reload();
    settleBatches();
}

void AppModel::selectDefaultModelsIfNeeded() {
    if (!draftModelIDs->empty())
        return;
    std::set<UUID> ids;
    for (const ModelProfile& model : library.models()) {
        if (readiness(model).state == Readiness::State::ready)
            ids.insert(model.id);
    }
    draftModelIDs = std::move(ids);
}

} // namespace quorl

#include "app/AppModel.h"

#include "app/Workers.h"
#include "base/Text.h"
#include "decision/HostedNuvel.h"
#include "store/QuorlStore.h"
#include "store/SupportPaths.h"
#include "transports/ExecutableResolver.h"
#include "transports/NuvelLocal.h"

#include <algorithm>

namespace quorl {

namespace {

constexpr const char* keychainService = "com.quorltest.app";

Readiness ready() {
    return {Readiness::State::ready, {}};
}

Readiness blocked(std::string message) {
    return {Readiness::State::blocked, std::move(message)};
}

Readiness toolReadiness(const ModelProfile& model, std::optional<bool> claudeLoggedIn) {
    if (!ExecutableResolver::find(model.provider, model.executablePath))
        return blocked("CLI not found. Set the path in Models.");
    // An unknown login is no obstacle: the tool itself will say.
    if (model.provider == ProviderKind::claudeCode && claudeLoggedIn == false)
        return blocked("Not logged in. Use Log in.");
    return ready();
}

Readiness decisionReadiness(const ModelProfile& model, bool hasCredentials) {
    const bool needsKey =
        model.provider == ProviderKind::zun || model.provider == ProviderKind::openAIDecisions;
    if (model.provider == ProviderKind::veritor && Text::isBlank(model.endpoint))
        return blocked("Set a base URL.");
    if (model.provider == ProviderKind::nuvel && Veritor::isHostedNuvel(model.endpoint) && !hasCredentials)
        return blocked("Hosted API. Add a Nuvel Studio key, or clear the base URL to use local Nuvel.");
    if (needsKey && !hasCredentials)
        return blocked("Add an API key.");
    if (needsKey && Text::isBlank(model.modelIdentifier))
        return blocked("Set a model id.");
    return ready();
}

Readiness generationReadiness(const ModelProfile& model, bool hasCredentials) {
    if (model.provider == ProviderKind::openAICompatible && Text::isBlank(model.endpoint))
        return blocked("Set a base URL.");
    if (!hasCredentials)
        return blocked(model.provider == ProviderKind::amazonBedrock ? "Add AWS keys." : "Add an API key.");
    if (Text::isBlank(model.modelIdentifier))
        return blocked("Set a model id.");
    return ready();
}

std::vector<Category> sortedBySortIndex(std::vector<Category> categories) {
    std::ranges::stable_sort(categories, {}, &Category::sortIndex);
    return categories;
}

} // namespace

std::string PendingDelete::id() const {
    const auto prefix = [this] {
        switch (kind) {
        case Kind::model:
            return "model-";
        case Kind::category:
            return "category-";
        case Kind::run:
            return "run-";
        case Kind::example:
            return "example-";
        case Kind::batch:
            return "batch-";
        }
        __builtin_unreachable();
    };
    return prefix() + target.text();
}

AppModel::AppModel(Platform& services, const DecisionRouter& decisionRouter, Workers& threads)
    : platform(services), router(decisionRouter), workers(threads),
      directory(SupportPaths::directory(services.applicationSupport)), store(openStore()),
      secrets(platform.keychain, keychainService), alive(std::make_shared<AppModel*>(this)) {
    bootstrap();
    loadDraft();
    recoverInterrupted();
    selectDefaultModelsIfNeeded();
    refreshClaudeLogin(nullptr);
}

AppModel::~AppModel() = default;

Observers::Subscription AppModel::observe(Observers::Observer observer) {
    return observers.subscribe(std::move(observer));
}

Readiness AppModel::readiness(const ModelProfile& model) const {
    if (!model.enabled)
        return {Readiness::State::disabled, {}};
    const bool* flag = secretFlags.find(model.id);
    const bool hasCredentials = flag && *flag;
    switch (model.provider) {
    case ProviderKind::claudeCode:
    case ProviderKind::codex:
        return toolReadiness(model, *claudeLoggedIn);
    case ProviderKind::nuvel:
        if (!NuvelLocal::usesHTTP(model))
            return NuvelLocal::findExecutable(model.executablePath) ? ready()
                                                                    : blocked("nuvel-rs CLI not found.");
        return decisionReadiness(model, hasCredentials);
    case ProviderKind::zun:
    case ProviderKind::openAIDecisions:
    case ProviderKind::veritor:
        return decisionReadiness(model, hasCredentials);
    case ProviderKind::openAI:
    case ProviderKind::anthropic:
    case ProviderKind::amazonBedrock:
    case ProviderKind::openAICompatible:
        return generationReadiness(model, hasCredentials);
    }
    __builtin_unreachable();
}

std::vector<ModelProfile> AppModel::selectedModels() const {
    std::vector<ModelProfile> selected;
    for (const ModelProfile& model : library.models()) {
        if (draftModelIDs->contains(model.id) && family(model.provider) == *draftKind &&
            readiness(model).state == Readiness::State::ready)
            selected.push_back(model);
    }
    return selected;
}

std::vector<Category> AppModel::roots() const {
    std::vector<Category> found;
    std::ranges::copy_if(library.categories(), std::back_inserter(found),
                         [](const Category& category) { return !category.parentID; });
    return sortedBySortIndex(std::move(found));
}

std::vector<Category> AppModel::children(const UUID& of) const {
    std::vector<Category> found;
    std::ranges::copy_if(library.categories(), std::back_inserter(found),
                         [&](const Category& category) { return category.parentID == of; });
    return sortedBySortIndex(std::move(found));
}

void AppModel::inBackground(std::function<OnMain()> work) {
    workers.start([&mainThread = platform.mainThread, model = std::weak_ptr(alive), work = std::move(work)] {
        mainThread.post([model, onMain = work()] {
            if (const auto present = model.lock())
                onMain(**present);
        });
    });
}

void AppModel::reload() {
    library.reload(*store);
    refreshSecretFlags();
    if (!*selectedModelID && !library.models().empty())
        selectedModelID = library.models().front().id;
}

} // namespace quorl

#include "app/AppModel.h"

#include "base/Text.h"
#include "decision/Veritor.h"

#include <algorithm>

namespace quorl {

namespace {

namespace Key {
constexpr const char* kind = "draft.kind";
constexpr const char* prompt = "draft.prompt";
constexpr const char* system = "draft.system";
constexpr const char* categoryText = "draft.categoryText";
constexpr const char* subcategoryText = "draft.subcategoryText";
constexpr const char* questions = "draft.questions";
constexpr const char* category = "draft.category";
constexpr const char* scoring = "draft.scoring";
constexpr const char* models = "draft.models";
constexpr const char* bulk = "draft.bulk";
constexpr const char* bulkQuestions = "draft.bulkQuestions";
constexpr const char* bulkTemplate = "draft.bulkTemplate";
constexpr const char* bulkInitialized = "draft.bulkInitialized";
} // namespace Key

std::string textOf(const std::optional<UUID>& id) {
    return id ? id->text() : std::string();
}

} // namespace

std::string_view AppModel::defaultSystemPrompt(QuorlKind kind) {
    switch (kind) {
    case QuorlKind::decision:
        return "Answer directly. Put the decision first, then a short reason. Do not use tools.";
    case QuorlKind::generation:
        return "Answer directly. Do not use tools.";
    }
    __builtin_unreachable();
}

void AppModel::loadDraft() {
    const UserDefaults& defaults = platform.defaults;
    const auto text = [&](const char* key) { return defaults.string(key).value_or(""); };

    draftIsBulk = defaults.boolean(Key::bulk);
    bulkTemplateInitialized = defaults.boolean(Key::bulkInitialized);
    if (const auto stored = defaults.bytes(Key::bulkQuestions)) {
        if (auto items = Veritor::restoreBulk(*stored); items && !items->empty())
            draftBulkQuestions = std::move(*items);
    }
    if (auto questions = Veritor::restore(text(Key::bulkTemplate)); !questions.empty())
        draftBulkTemplate = std::move(questions.front());
    // Not through setKind, which would touch the system instructions.
    if (const auto kind = quorlKindFrom(text(Key::kind)))
        draftKind = *kind;
    if (defaults.contains(Key::prompt))
        draftPrompt = text(Key::prompt);
    if (auto system = defaults.string(Key::system))
        draftSystem = std::move(*system);
    draftCategoryText = text(Key::categoryText);
    draftSubcategoryText = text(Key::subcategoryText);
    draftCategoryID = UUID::parse(text(Key::category));
    if (draftCategoryText->empty() && draftSubcategoryText->empty())
        fillCategoryFields(*draftCategoryID);
    if (auto questions = Veritor::restore(text(Key::questions)); !questions.empty())
        draftQuestions = std::move(questions);
    if (const auto scoring = scoringModeFrom(text(Key::scoring)))
        draftScoring = *scoring;
    if (const auto stored = defaults.strings(Key::models)) {
        std::set<UUID> ids;
        for (const std::string& entry : *stored) {
            if (const auto id = UUID::parse(entry))
                ids.insert(*id);
        }
        draftModelIDs = std::move(ids);
    }
}

void AppModel::persistDraft() {
    UserDefaults& defaults = platform.defaults;
    std::vector<std::string> models;
    for (const UUID& id : *draftModelIDs)
        models.push_back(id.text());

    defaults.setString(Key::kind, std::string(rawString(*draftKind)));
    defaults.setString(Key::prompt, *draftPrompt);
    defaults.setString(Key::system, *draftSystem);
    defaults.setString(Key::categoryText, *draftCategoryText);
    defaults.setString(Key::subcategoryText, *draftSubcategoryText);
    defaults.setString(Key::questions, Veritor::archive(*draftQuestions));
    defaults.setString(Key::category, textOf(*draftCategoryID));
    defaults.setString(Key::scoring, std::string(rawString(*draftScoring)));
    defaults.setStrings(Key::models, models);
    defaults.setBoolean(Key::bulk, *draftIsBulk);
    defaults.setBytes(Key::bulkQuestions, Veritor::archiveBulk(*draftBulkQuestions));
    defaults.setString(Key::bulkTemplate, Veritor::archive({*draftBulkTemplate}));
    defaults.setBoolean(Key::bulkInitialized, *bulkTemplateInitialized);
}

void AppModel::setKind(QuorlKind kind) {
    // The user's own instructions survive the switch; the default of one kind gives way to that of the other.
    if (*draftSystem == defaultSystemPrompt(*draftKind) || Text::isBlank(*draftSystem))
        draftSystem = std::string(defaultSystemPrompt(kind));
    draftKind = kind;
    persistDraft();
}

void AppModel::setBulk(bool on) {
    if (on && !*bulkTemplateInitialized) {
        draftBulkTemplate = draftQuestions->empty() ? DecisionQuestion::starter() : draftQuestions->front();
        std::vector<BulkQuestion> items;
        for (const DecisionQuestion& question : *draftQuestions)
            items.push_back({UUID::random(), question.instructions});
        draftBulkQuestions = std::move(items);
        bulkTemplateInitialized = true;
    }
    draftIsBulk = on;
    if (on)
        setKind(QuorlKind::decision);
    newComparison();
    persistDraft();
}

void AppModel::newComparison() {
    destination = Screen::draft;
    activeRunID = std::nullopt;
    activeBatchID = std::nullopt;
    focusToken = *focusToken + 1;
}

void AppModel::toggleDraftModel(const UUID& id) {
    std::set<UUID> ids = *draftModelIDs;
    if (ids.erase(id) == 0)
        ids.insert(id);
    draftModelIDs = std::move(ids);
    persistDraft();
}

std::optional<UUID> AppModel::resolveCategoryID() {
    const std::string_view name = Text::trimmed(*draftCategoryText);
    if (name.empty())
        return std::nullopt;
    const UUID parent = findOrCreateCategory(name, std::nullopt);
    const std::string_view subname = Text::trimmed(*draftSubcategoryText);
    return subname.empty() ? parent : findOrCreateCategory(subname, parent);
}

void AppModel::fillCategoryFields(const std::optional<UUID>& from) {
    const Category* category = from ? library.findCategory(*from) : nullptr;
    const Category* parent =
        category && category->parentID ? library.findCategory(*category->parentID) : nullptr;
    if (!category) {
        draftCategoryText = "";
        draftSubcategoryText = "";
    } else if (parent) {
        draftCategoryText = parent->name;
        draftSubcategoryText = category->name;
    } else {
        draftCategoryText = category->name;
        draftSubcategoryText = "";
    }
}

} // namespace quorl

#include "app/Library.h"

#include "app/AnswerGroups.h"
#include "app/KeyedList.h"
#include "store/QuorlStore.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

namespace quorl {

namespace {

// The slots of the runs of each batch, in no particular order.
struct ByBatch {
    void add(const QuorlRun& run, Slot slot) {
        if (run.batchID)
            slots[*run.batchID].push_back(slot);
    }
    void remove(const QuorlRun& run, Slot slot) {
        if (!run.batchID)
            return;
        const auto batch = slots.find(*run.batchID);
        auto& ofBatch = batch->second;
        *std::ranges::find(ofBatch, slot) = ofBatch.back();
        ofBatch.pop_back();
        if (ofBatch.empty())
            slots.erase(batch);
    }
    void clear() { slots.clear(); }

    std::unordered_map<UUID, std::vector<Slot>> slots;
};

// What the file holds under the ids that were touched.
struct FreshRows {
    std::optional<std::vector<ModelProfile>> models; // absent where the table need not be read
    std::optional<std::vector<Category>> categories;
    std::vector<FiledRow<QuorlRun>> runs;
    std::vector<FiledRow<QuorlBatch>> batches;
    std::vector<std::pair<UUID, std::vector<ModelAnswer>>> answers; // by run
    std::vector<FiledRow<DatasetExample>> dataset;
};

} // namespace

struct Library::State {
    explicit State(Observers& notified) : observers(notified) {}

    Observers& observers;

    KeyedList<ModelProfile> models;
    KeyedList<Category> categories;
    DatedList<QuorlRun, ByBatch> runs;
    DatedList<QuorlBatch> batches;
    AnswerGroups answers;
    DatedList<DatasetExample> dataset;

    TouchedRows changedHere;        // in memory, since the last reload
    std::optional<StoreMark> mark;  // absent where only reading everything will do
    bool modelsNeverRepeat = false; // to be read at every reload, since each gives other identifiers
    bool categoriesNeverRepeat = false;

    void notify(AppField field) { observers.notify({field, std::nullopt}); }
    void notify(AppField field, const UUID& id) { observers.notify({field, id}); }

    bool reloadTouched(QuorlStore& store, const StoreSnapshot& snapshot);
    std::optional<FreshRows> readTouched(QuorlStore& store, const TouchedRows& touched);
    void take(FreshRows fresh, const TouchedRows& touched, QuorlStore& store);
    void reloadAll(QuorlStore& store, const std::optional<StoreSnapshot>& snapshot);
    std::vector<UUID> refillAnswers(QuorlStore& store, Reading& reading, bool& failed);
};

// Nothing is taken over unless all of it could be read, and read so that reading it again would give the
// same.
std::optional<FreshRows> Library::State::readTouched(QuorlStore& store, const TouchedRows& touched) {
    FreshRows fresh;
    Reading reading;
    Reading ofModels;
    Reading ofCategories;
    try {
        if (touched.models || modelsNeverRepeat)
            fresh.models = store.loadModels(&ofModels);
        if (touched.categories || categoriesNeverRepeat)
            fresh.categories = store.loadCategories(&ofCategories);
        fresh.runs = store.loadRuns(touched.runs, reading);
        fresh.batches = store.loadBatches(touched.batches, reading);
        store.forEachRunsAnswers(
            touched.answersOfRuns,
            [&](const UUID& runID, std::vector<ModelAnswer> ofRun) {
                fresh.answers.emplace_back(runID, std::move(ofRun));
            },
            reading);
        fresh.dataset = store.loadDataset(touched.examples, reading);
    } catch (const StoreError&) {
        return std::nullopt;
    }
    if (!reading.isRepeatable)
        return std::nullopt;
    if (fresh.models)
        modelsNeverRepeat = !ofModels.isRepeatable;
    if (fresh.categories)
        categoriesNeverRepeat = !ofCategories.isRepeatable;
    return fresh;
}

void Library::State::take(FreshRows fresh, const TouchedRows& touched, QuorlStore& store) {
    const bool modelsDiffer = fresh.models && models.reset(std::move(*fresh.models));
    const bool categoriesDiffer = fresh.categories && categories.reset(std::move(*fresh.categories));
    const auto changedRuns =
        runs.update(touched.runs, std::move(fresh.runs), [&](const UUID& id) { return store.runRowID(id); });
    const auto changedBatches = batches.update(touched.batches, std::move(fresh.batches),
                                               [&](const UUID& id) { return store.batchRowID(id); });
    const auto changedExamples = dataset.update(touched.examples, std::move(fresh.dataset),
                                                [&](const UUID& id) { return store.exampleRowID(id); });
    std::vector<UUID> changedGroups;
    for (auto& [runID, ofRun] : fresh.answers) {
        if (answers.replaceRun(runID, std::move(ofRun)))
            changedGroups.push_back(runID);
    }

    if (modelsDiffer)
        notify(AppField::models);
    if (categoriesDiffer)
        notify(AppField::categories);
    for (const UUID& id : changedRuns)
        notify(AppField::runs, id);
    if (!changedBatches.empty())
        notify(AppField::batches);
    for (const UUID& id : changedGroups)
        notify(AppField::answersByRun, id);
    if (!changedExamples.empty())
        notify(AppField::dataset);
}

// False if that would not do; then nothing has changed.
bool Library::State::reloadTouched(QuorlStore& store, const StoreSnapshot& snapshot) {
    if (!mark)
        return false;
    auto touched = store.takeTouched(*mark, snapshot);
    if (!touched)
        return false;
    touched->merge(std::exchange(changedHere, {}));
    for (const UUID& id : touched->answers) {
        for (const UUID& runID : answers.runsHolding(id))
            touched->answersOfRuns.insert(runID);
    }
    auto fresh = readTouched(store, *touched);
    if (!fresh)
        return false;
    take(std::move(*fresh), *touched, store);
    return true;
}

std::vector<UUID> Library::State::refillAnswers(QuorlStore& store, Reading& reading, bool& failed) {
    AnswerGroups::Refill refill(answers);
    try {
        // Worth a look at the index: otherwise every group would be moved as it grows, and end with room to
        // spare.
        store.forEachAnswerCount([&](const UUID& runID, std::size_t count) { refill.expect(runID, count); });
        store.forEachAnswer([&](ModelAnswer&& answer) { refill.add(std::move(answer)); }, &reading);
    } catch (const StoreError&) {
        failed = true;
    }
    return refill.finish();
}

void Library::State::reloadAll(QuorlStore& store, const std::optional<StoreSnapshot>& snapshot) {
    changedHere = {};
    mark = snapshot ? std::optional(store.startLog(*snapshot)) : std::nullopt;
    bool failed = false;
    // What a load gives, or else nothing.
    const auto attempt = [&failed](auto load) -> std::optional<decltype(load())> {
        try {
            return load();
        } catch (const StoreError&) {
            failed = true;
            return std::nullopt;
        }
    };
    Reading ofModels;
    Reading ofCategories;
    Reading reading;

    // A failure must not take the models and categories from under the open screens; the history is allowed
    // to go blank.
    auto freshModels = attempt([&] { return store.loadModels(&ofModels); });
    const bool modelsDiffer = freshModels && models.reset(std::move(*freshModels));
    auto freshCategories = attempt([&] { return store.loadCategories(&ofCategories); });
    const bool categoriesDiffer = freshCategories && categories.reset(std::move(*freshCategories));
    const bool runsDiffer =
        runs.reset(attempt([&] { return store.loadRuns(&reading); }).value_or(std::vector<QuorlRun>{}));
    const bool batchesDiffer = batches.reset(
        attempt([&] { return store.loadBatches(&reading); }).value_or(std::vector<QuorlBatch>{}));
    const bool answersDiffer = !refillAnswers(store, reading, failed).empty();
    const bool datasetDiffers = dataset.reset(
        attempt([&] { return store.loadDataset(&reading); }).value_or(std::vector<DatasetExample>{}));

    modelsNeverRepeat = !ofModels.isRepeatable;
    categoriesNeverRepeat = !ofCategories.isRepeatable;
    const bool idsAreUnique = runs.idsAreUnique() && batches.idsAreUnique() && dataset.idsAreUnique();
    if (failed || !reading.isRepeatable || !idsAreUnique)
        mark.reset();

    if (modelsDiffer)
        notify(AppField::models);
    if (categoriesDiffer)
        notify(AppField::categories);
    if (runsDiffer)
        notify(AppField::runs);
    if (batchesDiffer)
        notify(AppField::batches);
    if (answersDiffer)
        notify(AppField::answersByRun);
    if (datasetDiffers)
        notify(AppField::dataset);
}

Library::Library(Observers& notified) : state(std::make_unique<State>(notified)) {}

Library::~Library() = default;

ReloadExtent Library::reload(QuorlStore& store) {
    // Held to the end: all tables are read as they stood at one moment.
    const auto snapshot = store.snapshot();
    if (snapshot && state->reloadTouched(store, *snapshot))
        return ReloadExtent::touchedRows;
    state->reloadAll(store, snapshot);
    return ReloadExtent::allRows;
}

// --- Models and categories ---

const std::vector<ModelProfile>& Library::models() const {
    return state->models.all();
}

const ModelProfile* Library::findModel(const UUID& id) const {
    return state->models.find(id);
}

void Library::appendModel(ModelProfile model) {
    state->changedHere.models = true;
    state->models.append(std::move(model));
    state->notify(AppField::models);
}

void Library::replaceModel(const ModelProfile& model) {
    state->changedHere.models = true;
    if (state->models.replace(model))
        state->notify(AppField::models);
}

void Library::removeModel(UUID id) {
    state->changedHere.models = true;
    if (state->models.remove(id))
        state->notify(AppField::models);
}

const std::vector<Category>& Library::categories() const {
    return state->categories.all();
}

const Category* Library::findCategory(const UUID& id) const {
    return state->categories.find(id);
}

void Library::appendCategory(Category category) {
    state->changedHere.categories = true;
    state->categories.append(std::move(category));
    state->notify(AppField::categories);
}

void Library::replaceCategory(const Category& category) {
    state->changedHere.categories = true;
    if (state->categories.replace(category))
        state->notify(AppField::categories);
}

void Library::removeCategory(UUID id) {
    state->changedHere.categories = true;
    if (state->categories.remove(id))
        state->notify(AppField::categories);
}

// --- Runs and batches ---

std::size_t Library::runCount() const {
    return state->runs.size();
}

const QuorlRun& Library::runAt(std::size_t place) const {
    return state->runs[place];
}

const QuorlRun* Library::findRun(const UUID& id) const {
    return state->runs.find(id);
}

std::vector<const QuorlRun*> Library::runsOfBatch(const UUID& batchID) const {
    const auto& runs = state->runs;
    const auto batch = runs.groups().slots.find(batchID);
    if (batch == runs.groups().slots.end())
        return {};
    auto slots = batch->second;
    std::ranges::sort(slots, [&](Slot left, Slot right) {
        const Date leftDate = runs.inSlot(left).createdAt;
        const Date rightDate = runs.inSlot(right).createdAt;
        return leftDate == rightDate ? runs.placeOf(left) < runs.placeOf(right) : leftDate < rightDate;
    });
    std::vector<const QuorlRun*> ofBatch;
    ofBatch.reserve(slots.size());
    for (const Slot slot : slots)
        ofBatch.push_back(&runs.inSlot(slot));
    return ofBatch;
}

std::size_t Library::runCountOfBatch(const UUID& batchID) const {
    const auto& slots = state->runs.groups().slots;
    const auto batch = slots.find(batchID);
    return batch == slots.end() ? 0 : batch->second.size();
}

// Asked after every answer of a batch, which is why its runs are not put in order first.
bool Library::isBatchRunning(const UUID& batchID) const {
    const auto& runs = state->runs;
    const auto batch = runs.groups().slots.find(batchID);
    return batch != runs.groups().slots.end() && std::ranges::any_of(batch->second, [&](Slot slot) {
               const auto answers = state->answers.ofRun(runs.inSlot(slot).id);
               return std::ranges::find(answers, AnswerState::running, &ModelAnswer::state) != answers.end();
           });
}

void Library::removeRun(UUID id) {
    state->changedHere.runs.insert(id);
    state->changedHere.answersOfRuns.insert(id);
    const bool hadRun = state->runs.remove(id);
    const bool hadAnswers = state->answers.removeRun(id);
    if (hadRun)
        state->notify(AppField::runs, id);
    if (hadAnswers)
        state->notify(AppField::answersByRun, id);
}

const DatedList<QuorlBatch>& Library::batches() const {
    return state->batches;
}

const QuorlBatch* Library::findBatch(const UUID& id) const {
    return state->batches.find(id);
}

void Library::replaceBatch(const QuorlBatch& batch) {
    state->changedHere.batches.insert(batch.id);
    if (state->batches.replace(batch))
        state->notify(AppField::batches);
}

void Library::removeBatch(UUID id) {
    state->changedHere.batches.insert(id);
    if (state->batches.remove(id))
        state->notify(AppField::batches);
}

// --- Answers and examples ---

std::span<const ModelAnswer> Library::answersOfRun(const UUID& runID) const {
    return state->answers.ofRun(runID);
}

const ModelAnswer* Library::findAnswer(const UUID& id) const {
    return state->answers.find(id);
}

void Library::replaceAnswer(const ModelAnswer& answer) {
    state->changedHere.answersOfRuns.insert(answer.runID);
    if (state->answers.put(answer))
        state->notify(AppField::answersByRun, answer.runID);
}

void Library::replaceAnswersOfRun(const UUID& runID, std::vector<ModelAnswer> answers) {
    state->changedHere.answersOfRuns.insert(runID);
    if (state->answers.replaceRun(runID, std::move(answers)))
        state->notify(AppField::answersByRun, runID);
}

std::vector<UUID> Library::runsWithAnswers() const {
    return state->answers.runs();
}

const DatedList<DatasetExample>& Library::dataset() const {
    return state->dataset;
}

const DatasetExample* Library::findExample(const UUID& id) const {
    return state->dataset.find(id);
}

void Library::prependExample(DatasetExample example) {
    state->changedHere.examples.insert(example.id);
    state->dataset.prepend(std::move(example));
    state->notify(AppField::dataset);
}

void Library::replaceExample(const DatasetExample& example) {
    state->changedHere.examples.insert(example.id);
    if (state->dataset.replace(example))
        state->notify(AppField::dataset);
}

void Library::removeExample(UUID id) {
    state->changedHere.examples.insert(id);
    if (state->dataset.remove(id))
        state->notify(AppField::dataset);
}

} // namespace quorl

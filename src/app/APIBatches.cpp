#include "app/AppModel.h"
#include "app/BatchOrder.h"
#include "app/HTTPMessage.h"
#include "base/Json.h"
#include "decision/Veritor.h"
#include "store/QuorlStore.h"

#include <utility>

namespace quorl {

namespace {

constexpr std::int64_t accepted = 202;
constexpr std::int64_t badRequest = 400;
constexpr std::int64_t internalError = 500;

// Runs of a batch are told apart, and ordered, by nothing but their dates.
constexpr std::chrono::duration<double> betweenRuns{0.001};

QuorlRun makeRun(const QuorlBatch& batch, const BatchItem& item) {
    QuorlRun run;
    run.id = UUID::random();
    run.kind = batch.kind;
    run.prompt = item.prompt;
    run.systemPrompt = item.system;
    run.questionsJSON = batch.kind == QuorlKind::decision ? Veritor::archive(item.questions) : "";
    run.batchID = batch.id;
    run.origin = batch.source;
    return run;
}

} // namespace

HTTPResponse AppModel::createAPIBatch(std::string_view body, RunOrigin source,
                                      const std::optional<QuestionSnapshots>& questionSnapshots) {
    const auto read = readBatchOrder(body, questionSnapshots);
    if (!read)
        return makeErrorReply(badRequest, read.message());
    const BatchOrder& order = read.value();
    const auto [models, problem] = resolveAPIModels(order.models(), order.kind);
    if (problem)
        return makeErrorReply(badRequest, *problem);
    if (models.empty())
        return makeErrorReply(badRequest, "No ready " + std::string(rawString(order.kind)) + " models.");
    auto items = readBatchItems(order, questionSnapshots);
    if (!items)
        return makeErrorReply(badRequest, items.message());

    const QuorlBatch batch{UUID::random(), order.name,           source,
                           order.kind,     platform.clock.now(), BatchStatus::running};
    std::vector<APIWork> work;
    try {
        work = insertBatch(batch, order, std::move(items).value(), models);
    } catch (const StoreError& error) {
        return makeErrorReply(internalError, "Couldn't save the batch. " + error.message());
    }
    reload();
    showNewBatch(batch);
    for (APIWork& unit : work) {
        apiQueue.push_back(std::move(unit));
        pumpAPI();
    }
    return makeReply(accepted, batchSummary(batch));
}

// The categories and the credentials come first: both stay if the batch fails, and a keychain that asks its
// user must not hold the file meanwhile.
std::vector<AppModel::APIWork> AppModel::insertBatch(const QuorlBatch& batch, const BatchOrder& order,
                                                     std::vector<BatchItem> items,
                                                     const std::vector<ModelProfile>& models) {
    const auto category = categoryID(order.category, order.subcategory);
    std::unordered_map<UUID, ModelSecret> credentials;
    for (const ModelProfile& model : models)
        credentials.try_emplace(model.id, secrets.load(model.id));
    const Date base = platform.clock.now();

    std::vector<AnsweredRun> runs;
    std::vector<APIWork> work;
    runs.reserve(items.size());
    work.reserve(items.size());
    for (BatchItem& item : items) {
        QuorlRun run = makeRun(batch, item);
        run.categoryID = category;
        run.scoringMode = order.scoring;
        run.createdAt = base + static_cast<double>(runs.size()) * betweenRuns;
        std::vector<ModelAnswer> answers;
        std::vector<Job> jobs;
        for (const ModelProfile& model : models) {
            answers.push_back(makeAnswer(run, model, static_cast<std::int64_t>(answers.size())));
            jobs.push_back({model, answers.back().id});
        }
        runs.push_back({std::move(run), std::move(answers)});
        work.push_back({std::move(item.prompt), std::move(item.system), batch.kind, std::move(item.questions),
                        std::move(jobs), credentials});
    }
    writeTogether([&] {
        store->saveBatch(batch);
        store->insertRuns(runs);
    });
    return work;
}

void AppModel::showNewBatch(const QuorlBatch& batch) {
    selectedBatchID = batch.id;
    switch (batch.source) {
    case RunOrigin::app: {
        const auto runs = library.runsOfBatch(batch.id); // none where they could not be read back
        activeBatchID = batch.id;
        activeRunID = runs.empty() ? std::nullopt : std::optional(runs.front()->id);
        destination = Screen::draft;
        break;
    }
    case RunOrigin::api:
        destination = Screen::batches;
        break;
    }
}

std::optional<UUID> AppModel::categoryID(std::string_view named, std::string_view subcategory) {
    if (named.empty())
        return std::nullopt;
    const UUID root = findOrCreateCategory(named, std::nullopt);
    return subcategory.empty() ? root : findOrCreateCategory(subcategory, root);
}

} // namespace quorl

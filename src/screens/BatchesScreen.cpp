#include "screens/BatchesScreen.h"

#include "app/ScoreMath.h"
#include "base/Format.h"
#include "screens/BatchProgress.h"
#include "screens/Strings.h"

#include <algorithm>
#include <vector>

namespace quorl {

namespace {

constexpr int minute = 60'000;
constexpr const char* listening = "Listening";
constexpr std::size_t charactersInRow = 300; // more than it can show

QString statusWord(BatchStatus status) {
    switch (status) {
    case BatchStatus::running:
        return BatchesScreen::tr("Running");
    case BatchStatus::done:
        return BatchesScreen::tr("Done");
    }
    Q_UNREACHABLE();
}

QString originWord(RunOrigin origin) {
    switch (origin) {
    case RunOrigin::api:
        return BatchesScreen::tr("API");
    case RunOrigin::app:
        return BatchesScreen::tr("App");
    }
    Q_UNREACHABLE();
}

} // namespace

BatchesScreen::BatchesScreen(const ScreenParts& parts) : model(parts.model), services(parts.services) {
    connect(&parts.adapter, &ModelAdapter::changed, this, &BatchesScreen::refresh);
    connect(&clockwork, &QTimer::timeout, this, &BatchesScreen::refreshBatches);
    clockwork.start(minute);
    refreshBatches();
}

QString BatchesScreen::baseURL() const {
    return toQString(*model.apiBase);
}

QString BatchesScreen::token() const {
    return toQString(*model.apiToken);
}

QString BatchesScreen::authorization() const {
    return QLatin1String("Authorization: Bearer ") + token();
}

QString BatchesScreen::status() const {
    return toQString(*model.apiMessage);
}

bool BatchesScreen::isListening() const {
    return *model.apiMessage == listening;
}

void BatchesScreen::copyURL() {
    services.clipboard.replace(*model.apiBase);
}

void BatchesScreen::copyToken() {
    services.clipboard.replace(*model.apiToken);
}

void BatchesScreen::select(int next) {
    if (next >= 0 && next < batchRows.rowCount())
        model.selectedBatchID = batchRows.idAt(next);
}

void BatchesScreen::requestDelete() {
    if (shown.hasBatch)
        model.requestDelete({PendingDelete::Kind::batch, **model.selectedBatchID});
}

void BatchesScreen::openItem(int item) {
    if (item >= 0 && item < itemRows.rowCount())
        model.destination = RunScreen{itemRows.idAt(item)};
}

void BatchesScreen::refresh(const ModelChanges& changes) {
    using enum AppField;
    if (changes.hasAny({apiBase, apiToken, apiMessage}))
        Q_EMIT connectionChanged();
    if (changes.hasAny({AppField::batches, runs, categories, selectedBatchID}))
        refreshBatches();
    else if (changes.has(answersByRun))
        refreshProgress();
}

void BatchesScreen::refreshBatches() {
    rows.clear();
    const QuorlBatch* selected = nullptr;
    for (const QuorlBatch& batch : model.library.batches()) {
        if (batch.source != RunOrigin::api)
            continue;
        rows.push_back(makeRow(batch));
        if (*model.selectedBatchID == batch.id)
            selected = &batch;
    }
    batchRows.setRows(rows);
    row = selected ? batchRows.rowOf(selected->id) : -1;
    Q_EMIT selectionChanged(); // in any case: a view moves its mark along with rows that are pushed down
    refreshDetail(selected);
}

// Answers come in by the hundred; of the batches that have ended, which may be many, none has changed.
void BatchesScreen::refreshProgress() {
    for (BatchRow& shownRow : rows) {
        const QuorlBatch* batch = shownRow.isRunning ? model.library.findBatch(shownRow.id) : nullptr;
        if (batch)
            shownRow.progress = BatchProgress::of(model.library, *batch).figures();
    }
    batchRows.setRows(rows);
    refreshDetail(row < 0 ? nullptr : model.library.findBatch(batchRows.idAt(row)));
}

void BatchesScreen::refreshDetail(const QuorlBatch* batch) {
    std::vector<BatchItemRow> items;
    Detail next;
    if (batch) {
        for (const QuorlRun* run : model.library.runsOfBatch(batch->id))
            items.push_back(makeItem(*run));
        next = {.hasBatch = true,
                .title = toQString(batch->name),
                .subtitle = QStringList{originWord(batch->source), toQString(quorl::title(batch->kind)),
                                        statusWord(batch->status),
                                        toQString(Format::when(batch->createdAt, services.clock.now()))}
                                .join(QStringLiteral(" · ")),
                .progress = BatchProgress::of(model.library, *batch).words()};
    }
    itemRows.setRows(items);
    if (next == shown)
        return;
    shown = std::move(next);
    Q_EMIT detailChanged();
}

BatchRow BatchesScreen::makeRow(const QuorlBatch& batch) const {
    return {.id = batch.id,
            .name = startOf(batch.name, charactersInRow),
            .kind = toQString(quorl::title(batch.kind)),
            .count = QString::number(model.library.runCountOfBatch(batch.id)),
            .status = statusWord(batch.status),
            .progress = BatchProgress::of(model.library, batch).figures(),
            .when = toQString(Format::when(batch.createdAt, services.clock.now())),
            .isRunning = batch.status == BatchStatus::running};
}

BatchItemRow BatchesScreen::makeItem(const QuorlRun& run) const {
    const auto answers = model.library.answersOfRun(run.id);
    const auto count = [&](AnswerState state) {
        return std::ranges::count(answers, state, &ModelAnswer::state);
    };
    const auto failed = count(AnswerState::failed);
    return {.id = run.id,
            .prompt = startOf(run.prompt, charactersInRow),
            .category = toQString(ScoreMath::categoryName(run.categoryID, model.library.categories())),
            .models = tr("%1 models").arg(answers.size()), // of one too
            .running = count(AnswerState::running) > 0 ? tr("Running") : QString(),
            .failed = failed > 0 ? tr("%1 failed").arg(failed) : QString()};
}

} // namespace quorl

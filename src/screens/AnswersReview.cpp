#include "screens/AnswersReview.h"

#include "decision/Veritor.h"
#include "screens/Announcer.h"
#include "screens/Strings.h"

#include <algorithm>

namespace quorl {

namespace {

// What the answers of a run of a batch answer.
QString questionOf(const QuorlRun& run) {
    const auto questions = Veritor::restore(run.questionsJSON);
    return toQString(questions.empty() ? run.prompt : questions.front().instructions);
}

bool isFinished(const ModelAnswer& answer) {
    return answer.state != AnswerState::running;
}

bool isRated(const ModelAnswer& answer) {
    return answer.accepted || answer.rating;
}

} // namespace

AnswersReview::AnswersReview(AppModel& appModel, ModelAdapter& adapter, Clipboard& clipboard,
                             Announcer& announcer)
    : model(appModel), speaker(announcer), answers(appModel, clipboard) {
    connect(&adapter, &ModelAdapter::changed, this,
            [this](const ModelChanges& changes) { refresh(changes); });
    refresh();
}

QString AnswersReview::finishedCount() const {
    return tr("%1 of %2").arg(shown.finished).arg(shown.total);
}

QString AnswersReview::awaited() const {
    return shown.onlyModel.isEmpty() ? tr("your selected models") : shown.onlyModel;
}

QString AnswersReview::nextLabel() const {
    return isStepping() && !canStepOn() ? tr("Done") : tr("Next question");
}

QString AnswersReview::stepLabel() const {
    return tr("Question %1 of %2").arg(shown.place + 1).arg(shown.batchTotal);
}

void AnswersReview::stepBack() {
    jumpTo(shown.place - 1);
}

void AnswersReview::stepOn() {
    jumpTo(shown.place + 1);
}

void AnswersReview::jumpTo(int place) {
    const auto runs = batchOf(activeRun());
    if (place >= 0 && place < static_cast<int>(runs.size()))
        model.activeRunID = runs[static_cast<std::size_t>(place)]->id;
}

QStringList AnswersReview::batchQuestions() const {
    QStringList entries;
    for (const QuorlRun* run : batchOf(activeRun()))
        entries.append(QString::number(entries.size() + 1) + QLatin1String(". ") +
                       questionOf(*run).simplified());
    return entries;
}

void AnswersReview::refresh(const ModelChanges& changes) {
    using enum AppField;
    if (changes.hasAny({runs, batches, activeRunID, activeBatchID}) ||
        (*model.activeRunID && changes.hasAnswersOf(**model.activeRunID)) ||
        (shown.progress.all > 0 && changes.has(answersByRun)))
        refresh();
}

void AnswersReview::refresh() {
    const QuorlRun* const run = activeRun();
    const auto ofRun = run ? model.library.answersOfRun(run->id) : std::span<const ModelAnswer>();
    // Ahead of the cards: the first answer's arrival is seen on a card that is there.
    if (Shown next = current(run, ofRun); next != shown) {
        shown = std::move(next);
        Q_EMIT changed();
    }
    if (const auto arrived = answers.showRun(run, ofRun); !arrived.empty())
        speaker.announce(answers.spoken(arrived));
}

const QuorlRun* AnswersReview::activeRun() const {
    return *model.activeRunID ? model.library.findRun(**model.activeRunID) : nullptr;
}

// The runs that are stepped through; none where that run is not among them.
std::vector<const QuorlRun*> AnswersReview::batchOf(const QuorlRun* run) const {
    const auto& batchID = *model.activeBatchID;
    return run && batchID && run->batchID == batchID ? model.library.runsOfBatch(*batchID)
                                                     : std::vector<const QuorlRun*>();
}

AnswersReview::Shown AnswersReview::current(const QuorlRun* run, std::span<const ModelAnswer> of) const {
    Shown next;
    next.hasRun = run != nullptr;
    next.total = static_cast<int>(of.size());
    next.finished = static_cast<int>(std::ranges::count_if(of, isFinished));
    next.rated = static_cast<int>(std::ranges::count_if(of, isRated));
    if (of.size() == 1)
        next.onlyModel = toQString(of[0].modelName);
    if (const auto runs = batchOf(run); !runs.empty()) {
        const auto isIt = [&](const QuorlRun* other) { return other->id == run->id; };
        next.batchTotal = static_cast<int>(runs.size());
        next.place = static_cast<int>(std::ranges::find_if(runs, isIt) - runs.begin());
        next.question = questionOf(*run);
        if (const QuorlBatch* batch = model.library.findBatch(*run->batchID))
            next.progress = BatchProgress::of(model.library, *batch);
    }
    return next;
}

} // namespace quorl

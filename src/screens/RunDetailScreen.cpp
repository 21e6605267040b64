#include "screens/RunDetailScreen.h"

#include "app/ScoreMath.h"
#include "base/Format.h"
#include "decision/VeritorResults.h"
#include "screens/Announcer.h"
#include "screens/Strings.h"

namespace quorl {

RunDetailScreen::RunDetailScreen(const UUID& run, AppModel& appModel, ModelAdapter& adapter,
                                 Clipboard& clipboard, Clock& clockForAges, Announcer& announcer)
    : model(appModel), clock(clockForAges), speaker(announcer), runID(run), answers(appModel, clipboard) {
    connect(&adapter, &ModelAdapter::changed, this, [this](const ModelChanges& changes) {
        if (changes.hasAny({AppField::runs, AppField::categories}) || changes.hasAnswersOf(runID))
            refresh();
    });
    refresh();
}

void RunDetailScreen::runVariation() {
    if (const QuorlRun* run = model.library.findRun(runID))
        model.variation(QuorlRun(*run)); // a copy: the draft is saved on the way
}

void RunDetailScreen::requestDelete() {
    model.requestDelete({PendingDelete::Kind::run, runID});
}

void RunDetailScreen::refresh() {
    const QuorlRun* const run = model.library.findRun(runID);
    if (Shown next = run ? current(*run) : Shown(); next != shown) {
        shown = std::move(next);
        Q_EMIT changed();
    }
    const auto arrived =
        answers.showRun(run, run ? model.library.answersOfRun(runID) : std::span<const ModelAnswer>());
    const bool isOnCompare = *model.activeRunID == runID; // whose review has said it
    if (!arrived.empty() && !isOnCompare)
        speaker.announce(answers.spoken(arrived));
}

RunDetailScreen::Shown RunDetailScreen::current(const QuorlRun& run) const {
    const QString origin = run.origin == RunOrigin::api ? QStringLiteral("API · ") : QString();
    const auto category = ScoreMath::categoryName(run.categoryID, model.library.categories());
    return {.hasRun = true,
            .title = toQString(quorl::title(run.kind)),
            .subtitle = origin + toQString(category) + QStringLiteral(" · ") +
                        toQString(Format::when(run.createdAt, clock.now())),
            .promptLabel = run.kind == QuorlKind::decision ? tr("State") : tr("Prompt"),
            .prompt = toQString(run.prompt),
            .questions =
                run.kind == QuorlKind::decision ? toQString(Veritor::preview(run.questionsJSON)) : QString(),
            .systemPrompt = toQString(run.systemPrompt)};
}

} // namespace quorl

#include "screens/BatchProgress.h"

#include "app/Library.h"

#include <QCoreApplication>

#include <algorithm>

namespace quorl {

BatchProgress BatchProgress::of(const Library& library, const QuorlBatch& batch) {
    BatchProgress progress;
    if (batch.status != BatchStatus::running)
        return progress;
    for (const QuorlRun* run : library.runsOfBatch(batch.id)) {
        const auto answers = library.answersOfRun(run->id);
        const auto running = std::ranges::count(answers, AnswerState::running, &ModelAnswer::state);
        progress.all += static_cast<int>(answers.size());
        progress.ended += static_cast<int>(answers.size()) - static_cast<int>(running);
    }
    return progress;
}

QString BatchProgress::figures() const {
    return all > 0 ? QCoreApplication::translate("BatchProgress", "%1 of %2").arg(ended).arg(all) : QString();
}

QString BatchProgress::words() const {
    return all > 0 ? QCoreApplication::translate("BatchProgress", "%1 answers").arg(figures()) : QString();
}

} // namespace quorl

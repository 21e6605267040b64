#include "screens/AnswerCardListModel.h"

#include "decision/Veritor.h"

#include <algorithm>
#include <utility>

namespace quorl {

namespace {

RunOnCards commonOf(const QuorlRun& run) {
    return {.kind = run.kind,
            .scoring = run.scoringMode,
            .questions = run.kind == QuorlKind::decision ? Veritor::restore(run.questionsJSON)
                                                         : std::vector<DecisionQuestion>()};
}

} // namespace

AnswerCardListModel::AnswerCardListModel(AppModel& appModel, Clipboard& clipboard)
    : answerCorrection(appModel), parts{appModel, clipboard, answerCorrection} {}

QVariant AnswerCardListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    AnswerCardModel& shown = card(rows[static_cast<std::size_t>(index.row())].id);
    switch (role) {
    case Qt::DisplayRole:
        return shown.modelName();
    case CardRole:
        return QVariant::fromValue(&shown);
    default:
        return {};
    }
}

QHash<int, QByteArray> AnswerCardListModel::roleNames() const {
    return {{CardRole, "card"}};
}

std::vector<const AnswerCardModel*> AnswerCardListModel::showRun(const QuorlRun* run,
                                                                 std::span<const ModelAnswer> answers) {
    const auto next = run ? std::optional(run->id) : std::nullopt;
    if (next != shownRun) {
        // No card stays when another run comes on show, so none has to be told what is common to them.
        setRows({});
        dropCards({});
        answerCorrection.cancel();
        shownRun = next;
        common = run ? commonOf(*run) : RunOnCards();
        Q_EMIT runChanged();
    }
    auto arrived = updateCards(answers);
    std::vector<AnswerRow> nextRows;
    nextRows.reserve(answers.size());
    for (const ModelAnswer& answer : answers)
        nextRows.push_back({answer.id});
    setRows(nextRows);
    dropCards(answers);
    answerCorrection.follow();
    return arrived;
}

QString AnswerCardListModel::spoken(const std::vector<const AnswerCardModel*>& arrived) const {
    if (arrived.size() == 1)
        return arrived.front()->spokenOutcome();
    const auto isFinished = [](const auto& entry) {
        return entry.second->state() != AnswerCardModel::State::Running;
    };
    return tr("Answers %1 of %2").arg(std::ranges::count_if(cards, isFinished)).arg(cards.size());
}

std::vector<const AnswerCardModel*> AnswerCardListModel::updateCards(std::span<const ModelAnswer> answers) {
    std::vector<const AnswerCardModel*> arrived;
    for (const ModelAnswer& answer : answers) {
        const auto [entry, isNew] = cards.try_emplace(answer.id, nullptr);
        AnswerCardModel*& shown = entry->second;
        if (isNew) {
            shown = new AnswerCardModel(parts, common, answer, this);
            continue;
        }
        const bool wasRunning = shown->state() == AnswerCardModel::State::Running;
        shown->update(answer);
        if (wasRunning && shown->state() != AnswerCardModel::State::Running)
            arrived.push_back(shown);
    }
    return arrived;
}

void AnswerCardListModel::dropCards(std::span<const ModelAnswer> answers) {
    if (cards.size() == answers.size())
        return;
    std::unordered_map<UUID, AnswerCardModel*> kept;
    for (const ModelAnswer& answer : answers)
        kept.insert(cards.extract(answer.id));
    // What is drawn of a card goes with the end of this turn, and not before.
    for (const auto& [id, gone] : std::exchange(cards, std::move(kept)))
        gone->deleteLater();
}

} // namespace quorl

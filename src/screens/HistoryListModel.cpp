#include "screens/HistoryListModel.h"

#include "app/ScoreMath.h"
#include "base/Format.h"
#include "decision/Veritor.h"
#include "screens/Strings.h"

#include <QStringList>

#include <algorithm>
#include <functional>
#include <unordered_set>

namespace quorl {

namespace {

constexpr std::size_t charactersInRow = 300; // more than it can show

// Of each batch its newest run alone.
std::vector<UUID> listedRuns(const Library& library) {
    std::vector<const QuorlRun*> runs;
    runs.reserve(library.runCount());
    for (std::size_t place = 0; place < library.runCount(); ++place)
        runs.push_back(&library.runAt(place));
    const auto date = [](const QuorlRun* run) { return run->createdAt; };
    // As a rule they are in order, unless memory has gone ahead of the file.
    if (!std::ranges::is_sorted(runs, std::ranges::greater(), date))
        std::ranges::stable_sort(runs, std::ranges::greater(), date);

    std::vector<UUID> listed;
    listed.reserve(runs.size());
    std::unordered_set<UUID> seenBatches;
    for (const QuorlRun* run : runs) {
        if (!run->batchID || seenBatches.insert(*run->batchID).second)
            listed.push_back(run->id);
    }
    return listed;
}

std::string title(const QuorlRun& run) {
    const auto questions = Veritor::restore(run.questionsJSON);
    return questions.empty() ? run.prompt : questions.front().name;
}

std::string modelNames(std::span<const ModelAnswer> answers) {
    std::string names;
    for (const ModelAnswer& answer : answers) {
        if (!names.empty())
            names += ' ';
        names += answer.modelName;
    }
    return names;
}

} // namespace

HistoryListModel::HistoryListModel(const Library& listed, const Clock& ages) : library(listed), clock(ages) {
    setRecords(listedRuns(library));
}

QVariant HistoryListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QuorlRun* run = library.findRun(idAt(index));
    if (!run) // gone, and its row goes with the end of this turn
        return {};
    switch (role) {
    case RunIDRole:
        return toQString(run->id.text());
    case Qt::DisplayRole:
    case TitleRole:
        return startOf(title(*run), charactersInRow);
    case LabelRole:
        return label(*run);
    case CategoryRole:
        return toQString(categoryPath(run->categoryID));
    case ModelsRole:
        return models(*run);
    case WhenRole:
        return toQString(Format::when(run->createdAt, clock.now()));
    case SpokenRole:
        return spoken(index);
    default:
        return {};
    }
}

QHash<int, QByteArray> HistoryListModel::roleNames() const {
    return {
        {RunIDRole, "runID"},   {TitleRole, "title"}, {LabelRole, "label"},   {CategoryRole, "category"},
        {ModelsRole, "models"}, {WhenRole, "when"},   {SpokenRole, "spoken"},
    };
}

QString HistoryListModel::label(const QuorlRun& run) const {
    if (!run.batchID)
        return tr("Single question");
    const std::size_t count = library.runCountOfBatch(*run.batchID);
    if (count == 0)
        return tr("Bulk");
    return count == 1 ? tr("Bulk · 1 question") : tr("Bulk · %1 questions").arg(count);
}

QString HistoryListModel::models(const QuorlRun& run) const {
    const std::size_t count = library.answersOfRun(run.id).size();
    return count == 1 ? tr("1 model") : tr("%1 models").arg(count);
}

QString HistoryListModel::spoken(const QModelIndex& index) const {
    QStringList parts;
    for (const int role : {TitleRole, LabelRole, CategoryRole, ModelsRole, WhenRole}) {
        if (const QString part = data(index, role).toString(); !part.isEmpty())
            parts.append(part);
    }
    return parts.join(QLatin1String(", "));
}

const std::string& HistoryListModel::categoryPath(const std::optional<UUID>& id) const {
    const auto [entry, isNew] = categoryPaths.try_emplace(id);
    if (isNew)
        entry->second = ScoreMath::categoryName(id, library.categories());
    return entry->second;
}

std::string HistoryListModel::foldedTextOf(const UUID& id) const {
    const QuorlRun* run = library.findRun(id);
    if (!run)
        return {};
    std::string texts;
    appendFolded(texts, run->prompt);
    if (!run->questionsJSON.empty())
        appendFolded(texts, title(*run));
    appendFolded(texts, categoryPath(run->categoryID));
    appendFolded(texts, quorl::title(run->kind));
    appendFolded(texts, modelNames(library.answersOfRun(id)));
    texts.shrink_to_fit();
    return texts;
}

bool HistoryListModel::exists(const UUID& id) const {
    return library.findRun(id) != nullptr;
}

void HistoryListModel::refresh(const ModelChanges& changes) {
    if (!changes.hasAny({AppField::runs, AppField::answersByRun, AppField::categories}))
        return;
    const bool hasCategories = changes.has(AppField::categories);
    if (hasCategories)
        categoryPaths.clear();
    forgetTexts(
        [&](const UUID& id) { return hasCategories || changes.hasRun(id) || changes.hasAnswersOf(id); });
    if (changes.has(AppField::runs)) {
        setRecords(listedRuns(library));
        tellChanged({}); // of a batch that has lost a run, another run's row tells so
        return;
    }
    searchAgain();
    if (hasCategories)
        tellChanged({CategoryRole, SpokenRole});
    if (changes.has(AppField::answersByRun))
        tellChanged({ModelsRole, SpokenRole});
}

} // namespace quorl

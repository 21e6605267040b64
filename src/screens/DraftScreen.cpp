#include "screens/DraftScreen.h"

#include "base/Text.h"
#include "screens/Strings.h"

#include <algorithm>

namespace quorl {

namespace {

// None gives an invitation, up to two are named, of more the first two and the number of the others.
QString labelOf(const std::vector<ModelProfile>& models) {
    if (models.empty())
        return DraftScreen::tr("Choose models");
    const QString first = toQString(models[0].name);
    if (models.size() == 1)
        return first;
    const QString firstTwo = first + QLatin1String(" + ") + toQString(models[1].name);
    return models.size() == 2 ? firstTwo
                              : firstTwo + QLatin1String(" +") + QString::number(models.size() - 2);
}

} // namespace

DraftScreen::DraftScreen(AppModel& appModel, ModelAdapter& modelAdapter)
    : model(appModel), adapter(modelAdapter) {
    // The composer of decisions is not here yet: a draft of that kind could be asked, but not be seen.
    if (*model.draftKind == QuorlKind::decision)
        model.setKind(QuorlKind::generation);
    connect(&adapter, &ModelAdapter::changed, this, &DraftScreen::refresh);
    refreshTexts();
    refreshModels();
    refreshAnswers();
}

QString DraftScreen::awaited() const {
    return shownAnswers.onlyModel.isEmpty() ? tr("your selected models") : shownAnswers.onlyModel;
}

QString DraftScreen::finishedCount() const {
    return tr("%1 of %2").arg(shownAnswers.total - shownAnswers.running).arg(shownAnswers.total);
}

void DraftScreen::editPrompt(const QString& text) {
    if (text == asEdited(shownPrompt))
        return;
    shownPrompt = text;
    model.draftPrompt = text.toStdString();
    Q_EMIT promptChanged();
}

void DraftScreen::editSystemPrompt(const QString& text) {
    if (text == asEdited(shownSystemPrompt))
        return;
    shownSystemPrompt = text;
    model.draftSystem = text.toStdString();
    Q_EMIT systemPromptChanged();
}

void DraftScreen::toggleModel(const QString& modelID) {
    if (const auto id = UUID::parse(modelID.toStdString()))
        model.toggleDraftModel(*id);
}

void DraftScreen::compare() {
    adapter.deliver(); // or an edit of this turn would clear what is said here
    if (*model.draftKind == QuorlKind::decision)
        model.setKind(QuorlKind::generation);
    if (Text::isBlank(*model.draftPrompt))
        return setValidation(tr("Write a question first."));
    if (model.selectedModels().empty()) {
        setValidation(tr("Choose at least one ready model."));
        Q_EMIT modelsRequested();
        return;
    }
    setValidation({});
    const auto before = *model.activeRunID;
    model.ask();
    adapter.deliver();
    if (*model.activeRunID != before)
        Q_EMIT comparisonStarted();
}

void DraftScreen::retry(const QString& answerID) {
    if (const auto id = UUID::parse(answerID.toStdString()))
        model.retry(*id);
}

void DraftScreen::refresh(const ModelChanges& changes) {
    using enum AppField;
    if (changes.hasAny({draftPrompt, draftSystem}))
        refreshTexts();
    if (changes.hasAny({models, draftKind, draftModelIDs, secretFlags, claudeLoggedIn}))
        refreshModels();
    if (changes.hasAny({runs, activeRunID}) ||
        (*model.activeRunID && changes.hasAnswersOf(**model.activeRunID)))
        refreshAnswers();
    if (changes.hasAny({draftPrompt, draftQuestions, draftBulkQuestions, draftBulkTemplate, draftSystem,
                        draftScoring, draftCategoryText, draftSubcategoryText})) {
        setValidation({});
        model.persistDraft();
    }
    if (changes.has(focusToken)) {
        setValidation({});
        Q_EMIT questionFocusRequested();
    }
}

void DraftScreen::refreshTexts() {
    if (QString next = toQString(*model.draftPrompt); next != shownPrompt) {
        shownPrompt = std::move(next);
        Q_EMIT promptChanged();
    }
    if (QString next = toQString(*model.draftSystem); next != shownSystemPrompt) {
        shownSystemPrompt = std::move(next);
        Q_EMIT systemPromptChanged();
    }
}

void DraftScreen::refreshModels() {
    std::vector<ModelChoice> next;
    for (const ModelProfile& profile : model.library.models()) {
        if (!profile.enabled || family(profile.provider) != *model.draftKind)
            continue;
        const Readiness readiness = model.readiness(profile);
        next.push_back({.id = profile.id,
                        .name = profile.name,
                        .isChosen = model.draftModelIDs->contains(profile.id),
                        .isReady = readiness.state == Readiness::State::ready,
                        .obstacle = readiness.message});
    }
    choices.setRows(next);

    if (QString label = labelOf(model.selectedModels()); label != shownModelsLabel) {
        shownModelsLabel = std::move(label);
        Q_EMIT modelsLabelChanged();
    }
}

void DraftScreen::refreshAnswers() {
    const QuorlRun* run = *model.activeRunID ? model.library.findRun(**model.activeRunID) : nullptr;
    const auto answers = run ? model.library.answersOfRun(run->id) : std::span<const ModelAnswer>();
    cards.setRows(answers);

    AnswersSummary next;
    next.hasRun = run != nullptr;
    next.total = answers.size();
    next.running =
        static_cast<std::size_t>(std::count_if(answers.begin(), answers.end(), [](const ModelAnswer& answer) {
            return answer.state == AnswerState::running;
        }));
    if (answers.size() == 1)
        next.onlyModel = toQString(answers[0].modelName);
    if (next == shownAnswers)
        return;
    shownAnswers = std::move(next);
    Q_EMIT answersChanged();
}

void DraftScreen::setValidation(QString line) {
    if (line == shownValidation)
        return;
    shownValidation = std::move(line);
    Q_EMIT validationChanged();
}

} // namespace quorl

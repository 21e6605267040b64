#include "screens/DraftScreen.h"

#include "base/Text.h"
#include "decision/Veritor.h"
#include "screens/Strings.h"

#include <algorithm>

namespace quorl {

namespace {

DraftScreen::Mode modeOf(QuorlKind kind) {
    switch (kind) {
    case QuorlKind::decision:
        return DraftScreen::Mode::Decision;
    case QuorlKind::generation:
        return DraftScreen::Mode::Generation;
    }
    Q_UNREACHABLE();
}

// None gives an invitation, up to two are named, of more the first two and the number of the others.
QString labelOf(const std::vector<ModelProfile>& models) {
    if (models.empty())
        return DraftScreen::tr("Choose models");
    QString first = toQString(models[0].name);
    if (models.size() == 1)
        return first;
    const QString firstTwo = first + QLatin1String(" + ") + toQString(models[1].name);
    return models.size() == 2 ? firstTwo
                              : firstTwo + QLatin1String(" +") + QString::number(models.size() - 2);
}

} // namespace

DraftScreen::DraftScreen(AppModel& appModel, ModelAdapter& modelAdapter)
    : model(appModel), adapter(modelAdapter), questionRows(appModel) {
    connect(&adapter, &ModelAdapter::changed, this, &DraftScreen::refresh);
    refreshMode();
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

void DraftScreen::chooseMode(Mode next) {
    if (next == shownMode)
        return;
    switch (next) {
    case Mode::Decision:
        model.setKind(QuorlKind::decision);
        break;
    case Mode::Generation:
        model.draftIsBulk = false;
        model.newComparison();
        model.setKind(QuorlKind::generation);
        break;
    }
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
    if (QString missing = whatIsMissing(); !missing.isEmpty())
        return setValidation(std::move(missing));
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
    if (changes.has(draftKind))
        refreshMode();
    if (changes.has(draftQuestions))
        questionRows.refresh();
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

void DraftScreen::refreshMode() {
    const Mode next = modeOf(*model.draftKind);
    if (next == shownMode)
        return;
    shownMode = next;
    setValidation({}); // it spoke of the other kind's fields
    Q_EMIT modeChanged();
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
    cards.setRows(answers, run ? run->kind : QuorlKind::generation);

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

QString DraftScreen::whatIsMissing() const {
    switch (*model.draftKind) {
    case QuorlKind::decision:
        return toQString(Veritor::validate(*model.draftPrompt, *model.draftQuestions).value_or(""));
    case QuorlKind::generation:
        return Text::isBlank(*model.draftPrompt) ? tr("Write a question first.") : QString();
    }
    Q_UNREACHABLE();
}

void DraftScreen::setValidation(QString line) {
    if (line == shownValidation)
        return;
    shownValidation = std::move(line);
    Q_EMIT validationChanged();
}

} // namespace quorl

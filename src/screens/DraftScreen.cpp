#include "screens/DraftScreen.h"

#include "base/Text.h"
#include "decision/Veritor.h"
#include "screens/Announcer.h"
#include "screens/Strings.h"

namespace quorl {

namespace {

DraftScreen::Mode modeOf(bool isBulk, QuorlKind kind) {
    if (isBulk)
        return DraftScreen::Mode::Bulk;
    switch (kind) {
    case QuorlKind::decision:
        return DraftScreen::Mode::Decision;
    case QuorlKind::generation:
        return DraftScreen::Mode::Generation;
    }
    Q_UNREACHABLE();
}

DraftScreen::Scoring shownScoringOf(ScoringMode mode) {
    switch (mode) {
    case ScoringMode::binary:
        return DraftScreen::Scoring::YesNo;
    case ScoringMode::scale:
        return DraftScreen::Scoring::OneToTen;
    }
    Q_UNREACHABLE();
}

ScoringMode storedScoring(DraftScreen::Scoring scoring) {
    switch (scoring) {
    case DraftScreen::Scoring::YesNo:
        return ScoringMode::binary;
    case DraftScreen::Scoring::OneToTen:
        return ScoringMode::scale;
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

DraftScreen::DraftScreen(const ScreenParts& parts)
    : model(parts.model), adapter(parts.adapter), windowState(parts.services.windowState),
      announcer(parts.announcer), questionRows(model),
      templateEditor(model, QuestionEditor::Place::bulkTemplate, *model.draftBulkTemplate), bulkRows(model),
      pasteSheet(bulkRows, announcer),
      answersReview(model, adapter, parts.services.clipboard, parts.announcer),
      shownDivider(windowState.divider().value_or(0)) {
    connect(&adapter, &ModelAdapter::changed, this, &DraftScreen::refresh);
    connect(&bulkRows, &BulkQuestionListModel::countChanged, this, &DraftScreen::runLabelChanged);
    connect(this, &DraftScreen::modeChanged, this, &DraftScreen::runLabelChanged);
    refreshMode();
    refreshTexts();
    refreshScoring();
    refreshModels();
}

QString DraftScreen::modeLabel() const {
    switch (shownMode) {
    case Mode::Decision:
        return tr("Decision");
    case Mode::Bulk:
        return tr("Bulk questions");
    case Mode::Generation:
        return tr("Ask models");
    }
    Q_UNREACHABLE();
}

QString DraftScreen::runLabel() const {
    if (shownMode != Mode::Bulk)
        return tr("Compare");
    const int count = bulkRows.count();
    return count == 1 ? tr("Run 1 question") : tr("Run %1 questions").arg(count);
}

void DraftScreen::askSingleQuestion() {
    model.draftIsBulk = false;
    model.newComparison();
    model.persistDraft();
}

void DraftScreen::askLanguageModels() {
    askSingleQuestion();
    model.setKind(QuorlKind::generation);
}

void DraftScreen::editPrompt(const QString& text) {
    edit(model.draftPrompt, &Texts::prompt, text);
}

void DraftScreen::editSystemPrompt(const QString& text) {
    edit(model.draftSystem, &Texts::systemPrompt, text);
}

void DraftScreen::editCategory(const QString& text) {
    edit(model.draftCategoryText, &Texts::category, text);
}

void DraftScreen::editSubcategory(const QString& text) {
    edit(model.draftSubcategoryText, &Texts::subcategory, text);
}

void DraftScreen::setScoring(Scoring next) {
    model.draftScoring = storedScoring(next);
}

void DraftScreen::toggleModel(const QString& modelID) {
    if (const auto id = UUID::parse(modelID.toStdString()))
        model.toggleDraftModel(*id);
}

void DraftScreen::compare() {
    adapter.deliver(); // or an edit of this turn would clear what is said here
    if (const QString missing = whatIsMissing(); !missing.isEmpty())
        return refuse(missing);
    if (model.selectedModels().empty()) {
        refuse(tr("Choose at least one ready model."));
        Q_EMIT modelsRequested();
        return;
    }
    setValidation({});
    const auto before = *model.activeRunID;
    if (*model.draftIsBulk)
        model.askBulk();
    else
        model.ask();
    adapter.deliver();
    if (*model.activeRunID != before)
        Q_EMIT comparisonStarted();
}

void DraftScreen::moveDivider(int width) {
    if (width == shownDivider)
        return;
    shownDivider = width;
    windowState.setDivider(width);
    Q_EMIT dividerChanged();
}

void DraftScreen::refresh(const ModelChanges& changes) {
    using enum AppField;
    if (changes.hasAny({draftIsBulk, draftKind}))
        refreshMode();
    if (changes.has(draftQuestions))
        questionRows.refresh();
    if (changes.has(draftBulkTemplate))
        templateEditor.show(*model.draftBulkTemplate);
    if (changes.has(draftBulkQuestions))
        bulkRows.refresh();
    if (changes.hasAny({draftPrompt, draftSystem, draftCategoryText, draftSubcategoryText}))
        refreshTexts();
    if (changes.has(draftScoring))
        refreshScoring();
    if (changes.hasAny({models, draftKind, draftModelIDs, secretFlags, claudeLoggedIn}))
        refreshModels();
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
    const Mode next = modeOf(*model.draftIsBulk, *model.draftKind);
    if (next == shownMode)
        return;
    shownMode = next;
    setValidation({}); // it spoke of the other mode's fields
    Q_EMIT modeChanged();
}

void DraftScreen::refreshTexts() {
    Texts next{.prompt = toQString(*model.draftPrompt),
               .systemPrompt = toQString(*model.draftSystem),
               .category = toQString(*model.draftCategoryText),
               .subcategory = toQString(*model.draftSubcategoryText)};
    if (next == shownTexts)
        return;
    shownTexts = std::move(next);
    Q_EMIT textsChanged();
}

void DraftScreen::refreshScoring() {
    const Scoring next = shownScoringOf(*model.draftScoring);
    if (next == shownScoring)
        return;
    shownScoring = next;
    Q_EMIT scoringChanged();
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
    const bool offers = *model.claudeLoggedIn == false && *model.draftKind == QuorlKind::generation;
    if (offers != shownOffersLogin) {
        shownOffersLogin = offers;
        Q_EMIT offersLoginChanged();
    }
}

QString DraftScreen::whatIsMissing() const {
    if (*model.draftKind == QuorlKind::generation)
        return Text::isBlank(*model.draftPrompt) ? tr("Write a question first.") : QString();
    if (!*model.draftIsBulk)
        return toQString(Veritor::validate(*model.draftPrompt, *model.draftQuestions).value_or(""));
    try {
        (void)Veritor::bulkQuestions(*model.draftPrompt, *model.draftBulkTemplate, *model.draftBulkQuestions);
    } catch (const StoreError& problem) {
        return toQString(problem.what());
    }
    return {};
}

void DraftScreen::setValidation(QString line) {
    if (line == shownValidation)
        return;
    shownValidation = std::move(line);
    Q_EMIT validationChanged();
}

// Every press gets its answer, be it the same one once more.
void DraftScreen::refuse(const QString& reason) {
    setValidation(reason);
    announcer.announce(reason);
}

void DraftScreen::edit(Observed<std::string>& text, QString Texts::*shown, const QString& edited) {
    if (edited == asEdited(shownTexts.*shown))
        return;
    shownTexts.*shown = edited;
    text = edited.toStdString();
    Q_EMIT textsChanged();
}

} // namespace quorl

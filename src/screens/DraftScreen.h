#pragma once

#include "screens/AnswerListModel.h"
#include "screens/ModelAdapter.h"
#include "screens/ModelChoiceListModel.h"
#include "screens/QuestionListModel.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <cstddef>

namespace quorl {

// The Compare screen: a composer, where the question is written and the models are chosen, and the answers of
// the comparison on show. It edits the draft of the model directly. Thread: main. Failures: in `validation`,
// or in the alert of the model.
class DraftScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")

    // The composer
    Q_PROPERTY(Mode mode READ mode NOTIFY modeChanged)
    Q_PROPERTY(QString prompt READ prompt NOTIFY promptChanged)
    Q_PROPERTY(QString systemPrompt READ systemPrompt NOTIFY systemPromptChanged)
    Q_PROPERTY(quorl::QuestionListModel* questions READ questions CONSTANT)
    Q_PROPERTY(quorl::ModelChoiceListModel* models READ models CONSTANT)
    Q_PROPERTY(QString modelsLabel READ modelsLabel NOTIFY modelsLabelChanged)
    Q_PROPERTY(QString runLabel READ runLabel CONSTANT)
    Q_PROPERTY(QString validation READ validation NOTIFY validationChanged) // empty for none

    // The answers
    Q_PROPERTY(bool hasRun READ hasRun NOTIFY answersChanged)
    Q_PROPERTY(bool allRunning READ allRunning NOTIFY answersChanged)
    Q_PROPERTY(
        QString awaited READ awaited NOTIFY answersChanged) // whose answer is awaited while all are running
    Q_PROPERTY(QString finishedCount READ finishedCount NOTIFY answersChanged)
    Q_PROPERTY(quorl::AnswerListModel* answers READ answers CONSTANT)

public:
    /// Both are borrowed and must outlive the screen.
    DraftScreen(AppModel& appModel, ModelAdapter& modelAdapter);

    enum class Mode { Decision, Generation };
    Q_ENUM(Mode)

    [[nodiscard]] Mode mode() const { return shownMode; }
    [[nodiscard]] QString prompt() const { return shownPrompt; }
    [[nodiscard]] QString systemPrompt() const { return shownSystemPrompt; }
    [[nodiscard]] QuestionListModel* questions() { return &questionRows; }
    [[nodiscard]] ModelChoiceListModel* models() { return &choices; }
    [[nodiscard]] QString modelsLabel() const { return shownModelsLabel; }
    [[nodiscard]] QString runLabel() const { return tr("Compare"); }
    [[nodiscard]] QString validation() const { return shownValidation; }

    [[nodiscard]] bool hasRun() const { return shownAnswers.hasRun; }
    [[nodiscard]] bool allRunning() const {
        return shownAnswers.total > 0 && shownAnswers.running == shownAnswers.total;
    }
    [[nodiscard]] QString awaited() const;
    [[nodiscard]] QString finishedCount() const;
    [[nodiscard]] AnswerListModel* answers() { return &cards; }

    Q_INVOKABLE void chooseMode(quorl::DraftScreen::Mode next);

    /// What an editor holds now. What it makes of our own text by itself counts as no edit.
    Q_INVOKABLE void editPrompt(const QString& text);
    Q_INVOKABLE void editSystemPrompt(const QString& text);

    Q_INVOKABLE void toggleModel(const QString& modelID);
    Q_INVOKABLE void compare();
    Q_INVOKABLE void reset() { model.newComparison(); }
    Q_INVOKABLE void retry(const QString& answerID);

Q_SIGNALS:
    void modeChanged();
    void promptChanged();
    void systemPromptChanged();
    void modelsLabelChanged();
    void validationChanged();
    void answersChanged();
    void questionFocusRequested();
    void modelsRequested();   // a model must be chosen before there can be an answer
    void comparisonStarted(); // its answers are on show

private:
    struct AnswersSummary {
        bool hasRun = false;
        std::size_t total = 0;
        std::size_t running = 0;
        QString onlyModel; // its name, if there is just one answer

        bool operator==(const AnswersSummary&) const = default;
    };

    void refresh(const ModelChanges& changes);
    void refreshMode();
    void refreshTexts();
    void refreshModels();
    void refreshAnswers();
    void setValidation(QString line);

    // What is missing in the draft, as a sentence; empty if nothing is.
    [[nodiscard]] QString whatIsMissing() const;

    AppModel& model;
    ModelAdapter& adapter;
    QuestionListModel questionRows;
    ModelChoiceListModel choices;
    AnswerListModel cards;
    Mode shownMode = Mode::Decision;
    QString shownPrompt;
    QString shownSystemPrompt;
    QString shownModelsLabel;
    QString shownValidation;
    AnswersSummary shownAnswers;
};

} // namespace quorl

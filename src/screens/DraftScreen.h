#pragma once

#include "screens/AnswersReview.h"
#include "screens/BulkQuestionListModel.h"
#include "screens/ModelAdapter.h"
#include "screens/ModelChoiceListModel.h"
#include "screens/PastedQuestions.h"
#include "screens/QuestionEditor.h"
#include "screens/QuestionListModel.h"
#include "screens/ScreenTable.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

class Announcer;

// The Compare screen: a composer, where the question is written and the models are chosen, and the answers of
// the comparison on show. It edits the draft of the model directly. Thread: main. Failures: in `validation`,
// which is read to those who do not see it, or in the alert of the model.
class DraftScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")

    // The composer
    Q_PROPERTY(Mode mode READ mode NOTIFY modeChanged)
    Q_PROPERTY(QString modeLabel READ modeLabel NOTIFY modeChanged)
    Q_PROPERTY(QString prompt READ prompt NOTIFY textsChanged)
    Q_PROPERTY(QString systemPrompt READ systemPrompt NOTIFY textsChanged)
    Q_PROPERTY(Scoring scoring READ scoring NOTIFY scoringChanged)
    Q_PROPERTY(QString category READ category NOTIFY textsChanged)
    Q_PROPERTY(QString subcategory READ subcategory NOTIFY textsChanged)
    Q_PROPERTY(quorl::QuestionListModel* questions READ questions CONSTANT)
    Q_PROPERTY(quorl::QuestionEditor* bulkTemplate READ bulkTemplate CONSTANT)
    Q_PROPERTY(quorl::BulkQuestionListModel* bulkQuestions READ bulkQuestions CONSTANT)
    Q_PROPERTY(quorl::PastedQuestions* pasted READ pasted CONSTANT)
    Q_PROPERTY(quorl::ModelChoiceListModel* models READ models CONSTANT)
    Q_PROPERTY(QString modelsLabel READ modelsLabel NOTIFY modelsLabelChanged)
    Q_PROPERTY(bool offersLogin READ offersLogin NOTIFY offersLoginChanged)
    Q_PROPERTY(QString runLabel READ runLabel NOTIFY runLabelChanged)
    Q_PROPERTY(QString validation READ validation NOTIFY validationChanged) // empty for none

    Q_PROPERTY(quorl::AnswersReview* review READ review CONSTANT) // the answers
    Q_PROPERTY(int divider READ divider NOTIFY dividerChanged) // what the composer was drawn to; 0 if never

public:
    /// What it is made of is borrowed and must outlive the screen.
    explicit DraftScreen(const ScreenParts& parts);

    enum class Mode { Decision, Bulk, Generation };
    Q_ENUM(Mode)

    enum class Scoring { YesNo, OneToTen };
    Q_ENUM(Scoring)

    [[nodiscard]] Mode mode() const { return shownMode; }
    [[nodiscard]] QString modeLabel() const;
    [[nodiscard]] QString prompt() const { return shownTexts.prompt; }
    [[nodiscard]] QString systemPrompt() const { return shownTexts.systemPrompt; }
    [[nodiscard]] Scoring scoring() const { return shownScoring; }
    [[nodiscard]] QString category() const { return shownTexts.category; }
    [[nodiscard]] QString subcategory() const { return shownTexts.subcategory; }
    [[nodiscard]] QuestionListModel* questions() { return &questionRows; }
    [[nodiscard]] QuestionEditor* bulkTemplate() { return &templateEditor; }
    [[nodiscard]] BulkQuestionListModel* bulkQuestions() { return &bulkRows; }
    [[nodiscard]] PastedQuestions* pasted() { return &pasteSheet; }
    [[nodiscard]] ModelChoiceListModel* models() { return &choices; }
    [[nodiscard]] QString modelsLabel() const { return shownModelsLabel; }
    [[nodiscard]] bool offersLogin() const { return shownOffersLogin; }
    [[nodiscard]] QString runLabel() const;
    [[nodiscard]] QString validation() const { return shownValidation; }

    [[nodiscard]] AnswersReview* review() { return &answersReview; }
    [[nodiscard]] int divider() const { return shownDivider; }

    // The four ways to go on, each from any mode. The family of the models and whether there is one question
    // or a list are two things: to ask for a single question keeps the first, for decision models the second.
    Q_INVOKABLE void askSingleQuestion();
    Q_INVOKABLE void askBulkQuestions() { model.setBulk(true); }
    Q_INVOKABLE void askDecisionModels() { model.setKind(QuorlKind::decision); }
    Q_INVOKABLE void askLanguageModels();

    /// What an editor holds now. What it makes of our own text by itself counts as no edit.
    Q_INVOKABLE void editPrompt(const QString& text);
    Q_INVOKABLE void editSystemPrompt(const QString& text);
    Q_INVOKABLE void editCategory(const QString& text);
    Q_INVOKABLE void editSubcategory(const QString& text);
    Q_INVOKABLE void setScoring(quorl::DraftScreen::Scoring next);

    /// Looks again at what stands in the models' way: files may have come or gone.
    Q_INVOKABLE void lookAtModels() { refreshModels(); }
    Q_INVOKABLE void toggleModel(const QString& modelID);
    Q_INVOKABLE void manageModels() { model.destination = Screen::models; }
    Q_INVOKABLE void logIn() { model.loginClaudeCode(); }

    Q_INVOKABLE void compare();
    Q_INVOKABLE void moveDivider(int width);

Q_SIGNALS:
    void modeChanged();
    void textsChanged();
    void scoringChanged();
    void modelsLabelChanged();
    void offersLoginChanged();
    void runLabelChanged();
    void validationChanged();
    void dividerChanged();
    void questionFocusRequested();
    void modelsRequested();   // a model must be chosen before there can be an answer
    void comparisonStarted(); // its answers are on show

private:
    struct Texts {
        QString prompt;
        QString systemPrompt;
        QString category;
        QString subcategory;

        bool operator==(const Texts&) const = default;
    };

    void refresh(const ModelChanges& changes);
    void refreshMode();
    void refreshScoring();
    void refreshTexts();
    void refreshModels();
    void setValidation(QString line);
    void refuse(const QString& reason);
    void edit(Observed<std::string>& text, QString Texts::*shown, const QString& edited);

    // What is missing in the draft, as a sentence; empty if nothing is.
    [[nodiscard]] QString whatIsMissing() const;

    AppModel& model;
    ModelAdapter& adapter;
    WindowState& windowState;
    Announcer& announcer;
    QuestionListModel questionRows;
    QuestionEditor templateEditor;
    BulkQuestionListModel bulkRows;
    PastedQuestions pasteSheet;
    ModelChoiceListModel choices;
    AnswersReview answersReview;
    Mode shownMode = Mode::Decision;
    Texts shownTexts;
    Scoring shownScoring = Scoring::YesNo;
    QString shownModelsLabel;
    bool shownOffersLogin = false;
    QString shownValidation;
    int shownDivider = 0;
};

} // namespace quorl

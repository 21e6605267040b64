#pragma once

#include "app/AppModel.h"
#include "decision/VeritorResults.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <qqmlregistration.h>

#include <optional>
#include <vector>

namespace quorl {

class AnswerCorrection;

// What the cards of one run have in common.
struct RunOnCards {
    QuorlKind kind = QuorlKind::generation;
    ScoringMode scoring = ScoringMode::binary;
    std::vector<DecisionQuestion> questions; // none for a generation

    bool operator==(const RunOnCards&) const = default;
};

// What answer cards are made of, borrowed by all of them.
struct AnswerCardParts {
    AppModel& model;
    Clipboard& clipboard;
    AnswerCorrection& correction;
};

// One answer in the words of its card, with every judgement of it. Thread: main. Failures: in the model's
// alert.
class AnswerCardModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by AnswerCardListModel")

    // The answer
    Q_PROPERTY(QString answerID READ answerID CONSTANT)
    Q_PROPERTY(bool isDecision READ isDecision CONSTANT)
    Q_PROPERTY(QString modelName READ modelName NOTIFY answerChanged)
    Q_PROPERTY(State state READ state NOTIFY answerChanged)
    Q_PROPERTY(QString text READ text NOTIFY answerChanged)
    // Of a decision `{prompt, answer, confidence, signals: [{label, percent}]}`; none where its text holds
    // none.
    Q_PROPERTY(QVariantList results READ results NOTIFY answerChanged)
    Q_PROPERTY(bool canRunAgain READ canRunAgain NOTIFY answerChanged)
    Q_PROPERTY(bool canLogIn READ canLogIn NOTIFY answerChanged) // to Claude Code, which may be what failed

    // Its details
    Q_PROPERTY(QString transport READ transport NOTIFY answerChanged)
    Q_PROPERTY(QString error READ error NOTIFY answerChanged) // empty for none
    Q_PROPERTY(QString time READ time NOTIFY answerChanged)
    Q_PROPERTY(QString tokens READ tokens NOTIFY answerChanged)
    Q_PROPERTY(QString cost READ cost NOTIFY answerChanged) // empty where it is not known

    // Its judgements
    Q_PROPERTY(bool isRated1To10 READ isRated1To10 CONSTANT) // else by the thumbs
    Q_PROPERTY(bool isAccepted READ isAccepted NOTIFY judgementChanged)
    Q_PROPERTY(bool isRefused READ isRefused NOTIFY judgementChanged)
    Q_PROPERTY(QString thumbsUpHelp READ thumbsUpHelp NOTIFY judgementChanged)
    Q_PROPERTY(QString thumbsDownHelp READ thumbsDownHelp NOTIFY judgementChanged)
    Q_PROPERTY(int rating READ rating NOTIFY judgementChanged) // 0 for none
    Q_PROPERTY(QString ratingLabel READ ratingLabel NOTIFY judgementChanged)
    Q_PROPERTY(bool isSaved READ isSaved NOTIFY judgementChanged)
    Q_PROPERTY(bool isPreferred READ isPreferred NOTIFY judgementChanged)
    Q_PROPERTY(QString preferenceEntry READ preferenceEntry NOTIFY judgementChanged) // of the card's menu
    Q_PROPERTY(bool canPrefer READ canPrefer NOTIFY answerChanged)

public:
    AnswerCardModel(const AnswerCardParts& borrowed, const RunOnCards& ofRun, ModelAnswer shown,
                    QObject* parent);

    enum class State { Running, Done, Failed };
    Q_ENUM(State)

    [[nodiscard]] QString answerID() const;
    [[nodiscard]] bool isDecision() const { return run.kind == QuorlKind::decision; }
    [[nodiscard]] QString modelName() const;
    [[nodiscard]] State state() const;
    [[nodiscard]] QString text() const;
    [[nodiscard]] QVariantList results() const;
    [[nodiscard]] bool canRunAgain() const { return state() != State::Running; }
    [[nodiscard]] bool canLogIn() const;

    [[nodiscard]] QString transport() const;
    [[nodiscard]] QString error() const;
    [[nodiscard]] QString time() const;
    [[nodiscard]] QString tokens() const;
    [[nodiscard]] QString cost() const;

    [[nodiscard]] bool isRated1To10() const { return run.scoring == ScoringMode::scale; }
    [[nodiscard]] bool isAccepted() const { return answer.accepted == true; }
    [[nodiscard]] bool isRefused() const { return answer.accepted == false; }
    [[nodiscard]] QString thumbsUpHelp() const;
    [[nodiscard]] QString thumbsDownHelp() const;
    [[nodiscard]] int rating() const { return static_cast<int>(answer.rating.value_or(0)); }
    [[nodiscard]] QString ratingLabel() const;
    [[nodiscard]] bool isSaved() const { return answer.datasetID.has_value(); }
    [[nodiscard]] bool isPreferred() const { return answer.chosenCorrect; }
    [[nodiscard]] QString preferenceEntry() const;
    [[nodiscard]] bool canPrefer() const { return isDecision() && state() == State::Done; }

    Q_INVOKABLE void pressThumbsUp();
    Q_INVOKABLE void pressThumbsDown();
    Q_INVOKABLE void rate(int value); // 1 to 10
    Q_INVOKABLE void clearRating();
    Q_INVOKABLE void saveToDataset();
    Q_INVOKABLE void removeFromDataset();
    Q_INVOKABLE void togglePreferred();
    Q_INVOKABLE void copy();
    Q_INVOKABLE void runAgain();
    Q_INVOKABLE void logIn();

    /// Judgements by a key that is pressed wherever one is: nothing unless the card has such a button.
    Q_INVOKABLE void acceptByKey();
    Q_INVOKABLE void refuseByKey();
    Q_INVOKABLE void rateByKey(int value);

    [[nodiscard]] const ModelAnswer& record() const { return answer; }
    void update(const ModelAnswer& next);

    /// What a screen reader says when the answer has come.
    [[nodiscard]] QString spokenOutcome() const;

Q_SIGNALS:
    void answerChanged();
    void judgementChanged();
    void arrived(); // the answer awaited is here

private:
    [[nodiscard]] const std::vector<DecisionResult>& decisionResults() const;
    [[nodiscard]] bool isJudged(ScoringMode by) const { return state() == State::Done && run.scoring == by; }

    AnswerCardParts parts;
    const RunOnCards& run;
    ModelAnswer answer;
    mutable std::optional<std::vector<DecisionResult>> readResults; // of `answer.text`, once they were wanted
};

} // namespace quorl

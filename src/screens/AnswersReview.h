#pragma once

#include "screens/AnswerCardListModel.h"
#include "screens/BatchProgress.h"
#include "screens/ModelAdapter.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <qqmlregistration.h>

#include <cstddef>
#include <vector>

namespace quorl {

class Announcer;

// The answers side of the Compare screen: what is shown of the comparison on show, and of the batch that is
// stepped through. Reads that run and its batch alone. Thread: main. Failures: in the model's alert.
class AnswersReview : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DraftScreen")
    Q_PROPERTY(bool hasRun READ hasRun NOTIFY changed)
    Q_PROPERTY(QString finishedCount READ finishedCount NOTIFY changed)
    Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY changed) // nobody has answered yet
    Q_PROPERTY(QString awaited READ awaited NOTIFY changed)  // whose answer is awaited then
    Q_PROPERTY(int rated READ rated NOTIFY changed)
    Q_PROPERTY(int total READ total NOTIFY changed)
    Q_PROPERTY(QString nextLabel READ nextLabel NOTIFY changed)
    Q_PROPERTY(quorl::AnswerCardListModel* cards READ cards CONSTANT)

    // The batch
    Q_PROPERTY(bool isStepping READ isStepping NOTIFY changed)
    Q_PROPERTY(QString stepLabel READ stepLabel NOTIFY changed)
    Q_PROPERTY(QString question READ question NOTIFY changed) // what is being judged
    Q_PROPERTY(bool canStepBack READ canStepBack NOTIFY changed)
    Q_PROPERTY(bool canStepOn READ canStepOn NOTIFY changed)
    Q_PROPERTY(int place READ place NOTIFY changed)                     // in the batch, from 0
    Q_PROPERTY(QString batchProgress READ batchProgress NOTIFY changed) // while it runs; else empty
    Q_PROPERTY(double batchShare READ batchShare NOTIFY changed) // 0 to 1, of its answers that have ended

public:
    /// All are borrowed and must outlive the review.
    AnswersReview(AppModel& appModel, ModelAdapter& adapter, Clipboard& clipboard, Announcer& announcer);

    [[nodiscard]] bool hasRun() const { return shown.hasRun; }
    [[nodiscard]] QString finishedCount() const;
    [[nodiscard]] bool isWaiting() const { return shown.total > 0 && shown.finished == 0; }
    [[nodiscard]] QString awaited() const;
    [[nodiscard]] int rated() const { return shown.rated; }
    [[nodiscard]] int total() const { return shown.total; }
    [[nodiscard]] QString nextLabel() const;
    [[nodiscard]] AnswerCardListModel* cards() { return &answers; }

    [[nodiscard]] bool isStepping() const { return shown.batchTotal > 0; }
    [[nodiscard]] QString stepLabel() const;
    [[nodiscard]] QString question() const { return shown.question; }
    [[nodiscard]] bool canStepBack() const { return shown.place > 0; }
    [[nodiscard]] bool canStepOn() const { return shown.place + 1 < shown.batchTotal; }
    [[nodiscard]] int place() const { return shown.place; }
    [[nodiscard]] QString batchProgress() const { return shown.progress.words(); }
    [[nodiscard]] double batchShare() const { return shown.progress.share(); }

    Q_INVOKABLE void reset() { model.newComparison(); }
    Q_INVOKABLE void next() { model.nextQuestion(); }
    Q_INVOKABLE void stepBack();
    Q_INVOKABLE void stepOn();
    Q_INVOKABLE void jumpTo(int place);
    /// The entries of "Jump to question". Reads all questions of the batch.
    [[nodiscard]] Q_INVOKABLE QStringList batchQuestions() const;

Q_SIGNALS:
    void changed();

private:
    struct Shown {
        bool hasRun = false;
        int total = 0;
        int finished = 0;
        int rated = 0;
        QString onlyModel;  // its name, if there is just one answer
        int batchTotal = 0; // 0 where no batch is stepped through
        int place = 0;
        QString question;
        BatchProgress progress;

        bool operator==(const Shown&) const = default;
    };

    void refresh(const ModelChanges& changes);
    void refresh();
    [[nodiscard]] const QuorlRun* activeRun() const;
    [[nodiscard]] std::vector<const QuorlRun*> batchOf(const QuorlRun* run) const;
    [[nodiscard]] Shown current(const QuorlRun* run, std::span<const ModelAnswer> of) const;

    AppModel& model;
    Announcer& speaker;
    AnswerCardListModel answers;
    Shown shown;
};

} // namespace quorl

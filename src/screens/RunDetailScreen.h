#pragma once

#include "screens/AnswerCardListModel.h"
#include "screens/ModelAdapter.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

class Announcer;

// One comparison: what was asked, and what was answered. Nothing is shown of a run that has gone. Thread:
// main. Failures: in the model's alert.
class RunDetailScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(bool hasRun READ hasRun NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY changed)
    Q_PROPERTY(QString promptLabel READ promptLabel NOTIFY changed)
    Q_PROPERTY(QString prompt READ prompt NOTIFY changed)
    Q_PROPERTY(QString questions READ questions NOTIFY changed)       // a line each; empty for none
    Q_PROPERTY(QString systemPrompt READ systemPrompt NOTIFY changed) // empty for none
    Q_PROPERTY(quorl::AnswerCardListModel* cards READ cards CONSTANT)

public:
    /// All that is a reference is borrowed and must outlive the screen.
    RunDetailScreen(const UUID& run, AppModel& appModel, ModelAdapter& adapter, Clipboard& clipboard,
                    Clock& clockForAges, Announcer& announcer);

    [[nodiscard]] bool hasRun() const { return shown.hasRun; }
    [[nodiscard]] QString title() const { return shown.title; }
    [[nodiscard]] QString subtitle() const { return shown.subtitle; }
    [[nodiscard]] QString promptLabel() const { return shown.promptLabel; }
    [[nodiscard]] QString prompt() const { return shown.prompt; }
    [[nodiscard]] QString questions() const { return shown.questions; }
    [[nodiscard]] QString systemPrompt() const { return shown.systemPrompt; }
    [[nodiscard]] AnswerCardListModel* cards() { return &answers; }

    Q_INVOKABLE void runVariation();
    Q_INVOKABLE void requestDelete();
    /// As time goes by: how long ago it was.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void changed();

private:
    struct Shown {
        bool hasRun = false;
        QString title;
        QString subtitle;
        QString promptLabel;
        QString prompt;
        QString questions;
        QString systemPrompt;

        bool operator==(const Shown&) const = default;
    };

    [[nodiscard]] Shown current(const QuorlRun& run) const;

    AppModel& model;
    Clock& clock;
    Announcer& speaker;
    const UUID runID;
    AnswerCardListModel answers;
    Shown shown;
};

} // namespace quorl

#pragma once

#include "screens/ModelAdapter.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

class Announcer;

// The toast. One that has gone keeps its words, for it fades. Thread: main. Failures: none.
class FeedbackModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    // Another for each announcement, and empty while none is shown.
    Q_PROPERTY(QString feedbackID READ feedbackID NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed) // its name
    Q_PROPERTY(bool isMilestone READ isMilestone NOTIFY changed)

public:
    /// All are borrowed and must outlive the toast.
    FeedbackModel(AppModel& appModel, ModelAdapter& adapter, Announcer& speaker);

    [[nodiscard]] bool isShown() const { return shown; }
    [[nodiscard]] QString feedbackID() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString detail() const;
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] bool isMilestone() const { return latest.isMilestone; }

Q_SIGNALS:
    void changed();

private:
    void refresh();

    AppModel& model;
    Announcer& announcer;
    bool shown = false;
    QuorlFeedback latest;
};

} // namespace quorl

#pragma once

#include "screens/AlertModel.h"
#include "screens/Announcer.h"
#include "screens/DraftScreen.h"
#include "screens/FeedbackModel.h"
#include "screens/ModelAdapter.h"
#include "screens/Motion.h"
#include "screens/ScreenTable.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// What the window shows: the screen of the destination, and what stands above all screens. Thread: main.
// Failures: none.
//
// A screen consists of
//  - its model, `screens/HistoryScreen.h`: a QObject, QML_ELEMENT and QML_UNCREATABLE, made of those of the
//    ScreenParts that it needs;
//  - its file, `qml/history/HistoryScreen.qml`, whose root has `required property HistoryScreen screen` and
//    fills the place it is given;
//  - its line in ScreenTable.cpp, which names the two.
// Both are made when the screen is entered and go when it is left, and with them what they hold: a search
// text, a selection. A screen that is not on show costs nothing. Compare alone keeps its model, for a
// comparison goes on while one looks elsewhere.
class RootScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(Destination destination READ destination NOTIFY destinationChanged)
    Q_PROPERTY(QString screenFile READ screenFile NOTIFY screenChanged) // below qml/
    Q_PROPERTY(QObject* screen READ screen NOTIFY screenChanged)        // the model of that file
    Q_PROPERTY(quorl::AlertModel* alert READ alert CONSTANT)
    Q_PROPERTY(quorl::FeedbackModel* feedback READ feedback CONSTANT)
    Q_PROPERTY(quorl::Announcer* announcer READ announcer CONSTANT)

public:
    /// What is passed is borrowed and must outlive the screen.
    RootScreen(AppModel& appModel, ScreenServices desktop);
    ~RootScreen() override;

    enum class Destination { Draft, History, Scores, Dataset, Models, Categories, Batches, Run };
    Q_ENUM(Destination)

    /// Where the user has gone. The screen of a run that has been deleted shows Compare all the same.
    [[nodiscard]] Destination destination() const { return shownDestination; }
    [[nodiscard]] QString screenFile() const { return file; }
    [[nodiscard]] QObject* screen() { return visited.model ? visited.model.get() : &draftScreen; }

    [[nodiscard]] DraftScreen* draft() { return &draftScreen; }
    [[nodiscard]] AlertModel* alert() { return &alertModel; }
    [[nodiscard]] FeedbackModel* feedback() { return &feedbackModel; }
    [[nodiscard]] Announcer* announcer() { return &speaker; }
    [[nodiscard]] Motion& motion() { return movement; }
    [[nodiscard]] WindowState& windowState() { return services.windowState; }

    /// Any destination but a run. No more than that: a comparison on show stays open.
    Q_INVOKABLE void goTo(quorl::RootScreen::Destination next);
    Q_INVOKABLE void newComparison() { model.newComparison(); }

    /// The save dialog belongs to the window, which is made after its screens. Borrowed.
    void setFileSaver(FileSaver& saver) { services.fileSaver = &saver; }

    /// Carries out what waits for the end of this turn of the event loop. For a program that is about to end.
    void settle() { adapter.deliver(); }

Q_SIGNALS:
    void destinationChanged();
    void screenChanged();

private:
    void refresh();
    void enter(const quorl::Destination& next);

    // The destination whose screen is on show.
    [[nodiscard]] quorl::Destination wanted() const;

    AppModel& model;
    ScreenServices services;
    ModelAdapter adapter;
    Motion movement;
    Announcer speaker;
    DraftScreen draftScreen;
    AlertModel alertModel;
    FeedbackModel feedbackModel;
    Destination shownDestination = Destination::Draft;
    quorl::Destination entered = Screen::draft;
    QString file;
    VisitedScreen visited;
};

} // namespace quorl

#pragma once

#include "screens/AlertModel.h"
#include "screens/DraftScreen.h"
#include "screens/ModelAdapter.h"

#include <QObject>
#include <qqmlregistration.h>

namespace quorl {

// What the window shows: its screens, and what stands above all of them. Thread: main.
class RootScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(quorl::DraftScreen* draft READ draft CONSTANT)
    Q_PROPERTY(quorl::AlertModel* alert READ alert CONSTANT)

public:
    /// `appModel` is borrowed and must outlive the screen.
    explicit RootScreen(AppModel& appModel);

    [[nodiscard]] DraftScreen* draft() { return &draftScreen; }
    [[nodiscard]] AlertModel* alert() { return &alertModel; }

    Q_INVOKABLE void newComparison() { model.newComparison(); }

    /// Carries out what waits for the end of this turn of the event loop. For a program that is about to end.
    void settle() { adapter.deliver(); }

private:
    AppModel& model;
    ModelAdapter adapter;
    DraftScreen draftScreen;
    AlertModel alertModel;
};

} // namespace quorl

#include "screens/RootScreen.h"

#include <utility>

namespace quorl {

namespace {

RootScreen::Destination shownAs(const Destination& destination) {
    if (std::holds_alternative<RunScreen>(destination))
        return RootScreen::Destination::Run;
    switch (std::get<Screen>(destination)) {
    case Screen::draft:
        return RootScreen::Destination::Draft;
    case Screen::history:
        return RootScreen::Destination::History;
    case Screen::scores:
        return RootScreen::Destination::Scores;
    case Screen::dataset:
        return RootScreen::Destination::Dataset;
    case Screen::models:
        return RootScreen::Destination::Models;
    case Screen::categories:
        return RootScreen::Destination::Categories;
    case Screen::batches:
        return RootScreen::Destination::Batches;
    }
    Q_UNREACHABLE();
}

Screen plainScreen(RootScreen::Destination destination) {
    switch (destination) {
    case RootScreen::Destination::Draft:
        return Screen::draft;
    case RootScreen::Destination::History:
        return Screen::history;
    case RootScreen::Destination::Scores:
        return Screen::scores;
    case RootScreen::Destination::Dataset:
        return Screen::dataset;
    case RootScreen::Destination::Models:
        return Screen::models;
    case RootScreen::Destination::Categories:
        return Screen::categories;
    case RootScreen::Destination::Batches:
        return Screen::batches;
    case RootScreen::Destination::Run:
        break;
    }
    Q_UNREACHABLE(); // a run has an identifier
}

} // namespace

RootScreen::RootScreen(AppModel& appModel, ScreenServices desktop)
    : model(appModel), services(desktop), adapter(model), movement(services.defaults),
      draftScreen({model, adapter, services, speaker}), alertModel(model, adapter),
      feedbackModel(model, adapter, speaker) {
    connect(&adapter, &ModelAdapter::changed, this, [this](const ModelChanges& changes) {
        if (changes.hasAny({AppField::destination, AppField::runs}))
            refresh();
    });
    movement.setReducedBySystem(services.motion.isReduced());
    services.motion.onChange([this](bool isReduced) { movement.setReducedBySystem(isReduced); });
    refresh();
}

RootScreen::~RootScreen() {
    services.motion.onChange([](bool) {});
}

void RootScreen::goTo(Destination next) {
    model.destination = plainScreen(next);
}

quorl::Destination RootScreen::wanted() const {
    const auto* const run = std::get_if<RunScreen>(&*model.destination);
    return run && !model.library.findRun(run->runID) ? Screen::draft : *model.destination;
}

void RootScreen::refresh() {
    const Destination next = shownAs(*model.destination);
    if (next != shownDestination) {
        shownDestination = next;
        Q_EMIT destinationChanged();
    }
    if (file.isEmpty() || wanted() != entered)
        enter(wanted());
}

void RootScreen::enter(const quorl::Destination& next) {
    VisitedScreen left;
    if (next == quorl::Destination(Screen::draft)) {
        file = QStringLiteral("CompareScreen.qml");
        left = std::exchange(visited, {});
    } else {
        left = std::exchange(visited, visit(next, {model, adapter, services, speaker}));
        file = visited.file;
    }
    entered = next;
    Q_EMIT screenChanged();
    // What is drawn of it goes with the end of this turn, and not before.
    if (QObject* gone = left.model.release())
        gone->deleteLater();
}

} // namespace quorl

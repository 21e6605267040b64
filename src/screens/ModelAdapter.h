#pragma once

#include "app/AppModel.h"

#include <QObject>

#include <bitset>
#include <initializer_list>
#include <unordered_set>

namespace quorl {

// The fields of the model that were changed since the screens last looked.
class ModelChanges {
public:
    [[nodiscard]] bool has(AppField field) const { return fields[static_cast<std::size_t>(field)]; }
    [[nodiscard]] bool hasAny(std::initializer_list<AppField> of) const;

    /// Whether answers of that run may have changed.
    [[nodiscard]] bool hasAnswersOf(const UUID& runID) const;

    [[nodiscard]] bool isEmpty() const { return fields.none(); }
    void add(const AppChange& change);

private:
    std::bitset<64> fields;
    std::unordered_set<UUID> runsWithAnswers;
    bool allAnswers = false;
};

// The one observer of the model on behalf of all screens. It gathers what changes in one turn of the event
// loop and tells it once, so that a thousand answers that arrive together cost one redraw. Thread: main.
// Failures: none.
class ModelAdapter : public QObject {
    Q_OBJECT

public:
    /// `model` is borrowed and must outlive the adapter.
    explicit ModelAdapter(AppModel& model);

    /// Tells what has been gathered, if anything, without waiting for the turn to end.
    void deliver();

Q_SIGNALS:
    void changed(const quorl::ModelChanges& changes);

private:
    void gather(const AppChange& change);

    ModelChanges gathered;
    Observers::Subscription subscription; // last, since it reports to the others
};

} // namespace quorl

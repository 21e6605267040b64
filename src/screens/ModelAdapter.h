#pragma once

#include "app/AppModel.h"

#include <QObject>

#include <bitset>
#include <initializer_list>
#include <optional>
#include <unordered_set>

namespace quorl {

// The fields of the model that were changed since the screens last looked.
class ModelChanges {
public:
    [[nodiscard]] bool has(AppField field) const { return fields[static_cast<std::size_t>(field)]; }
    [[nodiscard]] bool hasAny(std::initializer_list<AppField> of) const;

    /// Whether that run may have come, gone or changed; whether answers of it may have.
    [[nodiscard]] bool hasRun(const UUID& id) const;
    [[nodiscard]] bool hasAnswersOf(const UUID& runID) const;

    [[nodiscard]] bool isEmpty() const { return fields.none(); }
    void add(const AppChange& change);

private:
    // The runs that changed, or all of them.
    struct Runs {
        std::unordered_set<UUID> ids;
        bool all = false;

        [[nodiscard]] bool has(const UUID& id) const { return all || ids.contains(id); }
        void add(const std::optional<UUID>& id);
    };

    std::bitset<64> fields;
    Runs runs;
    Runs runsWithAnswers;
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

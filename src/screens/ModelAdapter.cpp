#include "screens/ModelAdapter.h"

#include <algorithm>
#include <utility>

namespace quorl {

bool ModelChanges::hasAny(std::initializer_list<AppField> of) const {
    return std::any_of(of.begin(), of.end(), [this](AppField field) { return has(field); });
}

bool ModelChanges::hasRun(const UUID& id) const {
    return runs.has(id);
}

bool ModelChanges::hasAnswersOf(const UUID& runID) const {
    return runsWithAnswers.has(runID);
}

void ModelChanges::add(const AppChange& change) {
    fields.set(static_cast<std::size_t>(change.field));
    if (change.field == AppField::runs)
        runs.add(change.id);
    if (change.field == AppField::answersByRun)
        runsWithAnswers.add(change.id);
}

void ModelChanges::Runs::add(const std::optional<UUID>& id) {
    if (id)
        ids.insert(*id);
    else
        all = true;
}

ModelAdapter::ModelAdapter(AppModel& model)
    : subscription(model.observe([this](const AppChange& change) { gather(change); })) {}

void ModelAdapter::deliver() {
    if (!gathered.isEmpty())
        Q_EMIT changed(std::exchange(gathered, {}));
}

void ModelAdapter::gather(const AppChange& change) {
    if (gathered.isEmpty())
        QMetaObject::invokeMethod(this, &ModelAdapter::deliver, Qt::QueuedConnection);
    gathered.add(change);
}

} // namespace quorl

#include "screens/AlertModel.h"

#include "screens/Strings.h"

#include <utility>

namespace quorl {

namespace {

QString titleOf(PendingDelete::Kind kind) {
    switch (kind) {
    case PendingDelete::Kind::model:
        return AlertModel::tr("Delete this model?");
    case PendingDelete::Kind::category:
        return AlertModel::tr("Delete this category?");
    case PendingDelete::Kind::run:
        return AlertModel::tr("Delete this comparison?");
    case PendingDelete::Kind::example:
        return AlertModel::tr("Remove this example from the dataset?");
    case PendingDelete::Kind::batch:
        return AlertModel::tr("Delete this batch?");
    }
    Q_UNREACHABLE();
}

} // namespace

AlertModel::AlertModel(AppModel& appModel, ModelAdapter& adapter) : model(appModel) {
    connect(&adapter, &ModelAdapter::changed, this, [this](const ModelChanges& changes) {
        if (changes.hasAny({AppField::alertMessage, AppField::pendingDelete}))
            refresh();
    });
    refresh();
}

AlertModel::Alert AlertModel::current() const {
    if (const auto& deletion = *model.pendingDelete)
        return {Kind::Deletion, titleOf(deletion->kind), QString()};
    if (const auto& message = *model.alertMessage)
        return {Kind::General, tr("Something needs attention"), toQString(*message)};
    return {};
}

void AlertModel::refresh() {
    Alert next = current();
    if (next == shown)
        return;
    shown = std::move(next);
    Q_EMIT changed();
}

} // namespace quorl

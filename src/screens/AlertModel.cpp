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

void AlertModel::confirmDelete() {
    model.confirmDelete();
    refresh();
}

void AlertModel::cancelDelete() {
    model.pendingDelete = std::nullopt;
    refresh();
}

void AlertModel::dismiss() {
    model.alertMessage = std::nullopt;
    refresh();
}

void AlertModel::refresh() {
    Alert next = shown;
    next.kind = Kind::None;
    if (const auto& message = *model.alertMessage) {
        next.kind = Kind::General;
        next.message = toQString(*message);
    }
    if (const auto& deletion = *model.pendingDelete) {
        next.kind = Kind::Deletion;
        next.deletionTitle = titleOf(deletion->kind);
    }
    if (next == shown)
        return;
    shown = std::move(next);
    Q_EMIT changed();
}

} // namespace quorl

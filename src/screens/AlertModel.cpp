#include "screens/AlertModel.h"

#include "screens/Strings.h"

namespace quorl {

AlertModel::AlertModel(AppModel& appModel, ModelAdapter& adapter) : model(appModel) {
    connect(&adapter, &ModelAdapter::changed, this, [this](const ModelChanges& changes) {
        if (changes.has(AppField::alertMessage))
            refresh();
    });
    refresh();
}

void AlertModel::refresh() {
    const auto& message = *model.alertMessage;
    auto next = message ? std::optional(toQString(*message)) : std::nullopt;
    if (next == shown)
        return;
    shown = std::move(next);
    Q_EMIT changed();
}

} // namespace quorl

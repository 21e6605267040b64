#pragma once

#include "app/AppModel.h"
#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

#include <string>

namespace quorl {

// A model of the catalogue.
struct ModelRow {
    UUID id;
    std::string name;
    ProviderKind provider = ProviderKind::openAI;
    Readiness readiness;

    bool operator==(const ModelRow&) const = default;
};

// The catalogue.
class ModelListModel : public RecordListModel<ModelRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ModelsScreen")

public:
    using RecordListModel::RecordListModel;

    // The state is "ready", "disabled" or "blocked"; the obstacle says why it is the last.
    enum Role { ModelNameRole = Qt::UserRole, WayRole, ReadinessRole, ObstacleRole };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace quorl

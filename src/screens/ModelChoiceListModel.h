#pragma once

#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

#include <string>

namespace quorl {

// A model that the draft can be put to.
struct ModelChoice {
    UUID id;
    std::string name;
    bool isChosen = false;
    bool isReady = false;
    std::string obstacle; // why it is not ready, as a sentence; empty if it is

    bool operator==(const ModelChoice&) const = default;
};

// The models to choose from.
class ModelChoiceListModel : public RecordListModel<ModelChoice> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DraftScreen")

public:
    using RecordListModel::RecordListModel;

    enum Role { ModelIDRole = Qt::UserRole, ModelNameRole, ChosenRole, ReadyRole, ObstacleRole };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace quorl

#pragma once

#include "decision/DecisionQuestion.h"
#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

namespace quorl {

// The options of a choice.
class OptionListModel : public RecordListModel<DecisionOption> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by QuestionEditor")

public:
    using RecordListModel::RecordListModel;

    enum Role {
        OptionIDRole = Qt::UserRole,
        LabelRole,
        DetailRole, // what the option means; may be empty
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace quorl

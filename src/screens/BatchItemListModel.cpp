#include "screens/BatchItemListModel.h"

#include <QStringList>

namespace quorl {

UUID BatchItemListModel::idAt(int row) const {
    return row >= 0 && row < rowCount() ? rows[static_cast<std::size_t>(row)].id : UUID();
}

QVariant BatchItemListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const BatchItemRow& row = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case PromptRole:
        return row.prompt;
    case CategoryRole:
        return row.category;
    case ModelCountRole:
        return row.models;
    case RunningRole:
        return row.running;
    case FailedRole:
        return row.failed;
    case SpokenRole: {
        QStringList parts{row.prompt, row.category, row.models, row.running, row.failed};
        parts.removeAll(QString());
        return parts.join(QLatin1String(", "));
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> BatchItemListModel::roleNames() const {
    return {{PromptRole, "prompt"},         {CategoryRole, "category"}, {ModelCountRole, "modelCount"},
            {RunningRole, "runningStatus"}, {FailedRole, "failed"},     {SpokenRole, "spoken"}};
}

} // namespace quorl

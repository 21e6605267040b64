#include "screens/BatchListModel.h"

#include <QStringList>

namespace quorl {

int BatchListModel::rowOf(const UUID& id) const {
    const auto found = std::ranges::find(rows, id, &BatchRow::id);
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

UUID BatchListModel::idAt(int row) const {
    return row >= 0 && row < rowCount() ? rows[static_cast<std::size_t>(row)].id : UUID();
}

QVariant BatchListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const BatchRow& row = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case BatchNameRole:
        return row.name;
    case KindTitleRole:
        return row.kind;
    case RunCountRole:
        return row.count;
    case StatusRole:
        return row.status;
    case ProgressRole:
        return row.progress;
    case WhenRole:
        return row.when;
    case IsRunningRole:
        return row.isRunning;
    case SpokenRole: {
        QStringList parts{row.name, row.kind, row.count, row.status, row.progress, row.when};
        parts.removeAll(QString());
        return parts.join(QLatin1String(", "));
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> BatchListModel::roleNames() const {
    return {{BatchNameRole, "batchName"}, {KindTitleRole, "kindTitle"}, {RunCountRole, "runCount"},
            {StatusRole, "status"},       {ProgressRole, "progress"},   {WhenRole, "when"},
            {IsRunningRole, "isRunning"}, {SpokenRole, "spoken"}};
}

} // namespace quorl

#include "screens/ModelChoiceListModel.h"

#include "screens/Strings.h"

namespace quorl {

QVariant ModelChoiceListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ModelChoice& choice = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case ModelIDRole:
        return toQString(choice.id.text());
    case Qt::DisplayRole:
    case ModelNameRole:
        return toQString(choice.name);
    case ChosenRole:
        return choice.isChosen;
    case ReadyRole:
        return choice.isReady;
    case ObstacleRole:
        return toQString(choice.obstacle);
    default:
        return {};
    }
}

QHash<int, QByteArray> ModelChoiceListModel::roleNames() const {
    return {
        {ModelIDRole, "modelID"}, {ModelNameRole, "modelName"}, {ChosenRole, "chosen"},
        {ReadyRole, "ready"},     {ObstacleRole, "obstacle"},
    };
}

} // namespace quorl

#include "screens/ModelListModel.h"

#include "screens/Strings.h"

namespace quorl {

namespace {

QString nameOf(Readiness::State state) {
    switch (state) {
    case Readiness::State::ready:
        return QStringLiteral("ready");
    case Readiness::State::disabled:
        return QStringLiteral("disabled");
    case Readiness::State::blocked:
        return QStringLiteral("blocked");
    }
    Q_UNREACHABLE();
}

} // namespace

QVariant ModelListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ModelRow& row = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case ModelNameRole:
        return toQString(row.name);
    case WayRole:
        return QString(toQString(title(row.provider)) + QStringLiteral(" · ") +
                       toQString(transportTitle(row.provider)));
    case ReadinessRole:
        return nameOf(row.readiness.state);
    case ObstacleRole:
        return toQString(row.readiness.message);
    default:
        return {};
    }
}

QHash<int, QByteArray> ModelListModel::roleNames() const {
    return {
        {ModelNameRole, "modelName"},
        {WayRole, "way"},
        {ReadinessRole, "readiness"},
        {ObstacleRole, "obstacle"},
    };
}

} // namespace quorl

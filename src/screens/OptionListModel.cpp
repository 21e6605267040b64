#include "screens/OptionListModel.h"

#include "screens/Strings.h"

namespace quorl {

QVariant OptionListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const DecisionOption& option = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case OptionIDRole:
        return toQString(option.id.text());
    case Qt::DisplayRole:
    case LabelRole:
        return toQString(option.label);
    case DetailRole:
        return toQString(option.detail);
    default:
        return {};
    }
}

QHash<int, QByteArray> OptionListModel::roleNames() const {
    return {{OptionIDRole, "optionID"}, {LabelRole, "label"}, {DetailRole, "detail"}};
}

} // namespace quorl

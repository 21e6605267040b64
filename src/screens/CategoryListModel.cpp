#include "screens/CategoryListModel.h"

#include "screens/Strings.h"

namespace quorl {

QVariant CategoryListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const CategoryRow& row = rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case CategoryNameRole:
        return toQString(row.name);
    case SubcategoryRole:
        return row.isSubcategory;
    default:
        return {};
    }
}

QHash<int, QByteArray> CategoryListModel::roleNames() const {
    return {{CategoryNameRole, "categoryName"}, {SubcategoryRole, "isSubcategory"}};
}

} // namespace quorl

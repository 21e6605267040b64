#pragma once

#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

#include <string>

namespace quorl {

// A category where it stands in the tree: under its parent, if it has one.
struct CategoryRow {
    UUID id;
    std::string name;
    bool isSubcategory = false;

    bool operator==(const CategoryRow&) const = default;
};

// The tree of categories, row by row.
class CategoryListModel : public RecordListModel<CategoryRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by CategoriesScreen")

public:
    using RecordListModel::RecordListModel;

    enum Role { CategoryNameRole = Qt::UserRole, SubcategoryRole };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace quorl

#include "app/AppModel.h"

#include "base/Text.h"
#include "store/QuorlStore.h"

#include <algorithm>

namespace quorl {

const Category* AppModel::findSibling(std::string_view name, const std::optional<UUID>& parentID) const {
    const auto& all = library.categories();
    const auto found = std::ranges::find_if(all, [&](const Category& category) {
        return category.parentID == parentID && Text::equalsIgnoringCase(category.name, name);
    });
    return found == all.end() ? nullptr : &*found;
}

// The index runs over the whole list and not per parent.
Category AppModel::makeCategory(std::string_view name, const std::optional<UUID>& parentID) const {
    const auto& all = library.categories();
    const auto last = std::ranges::max_element(all, {}, &Category::sortIndex);
    return {UUID::random(), std::string(name), parentID, last == all.end() ? 0 : last->sortIndex + 1};
}

void AppModel::addCategory(std::string_view name, const std::optional<UUID>& parent) {
    const std::string_view trimmed = Text::trimmed(name);
    if (trimmed.empty())
        return;
    const Category* parentCategory = parent ? library.findCategory(*parent) : nullptr;
    if (parentCategory && parentCategory->parentID) {
        alertMessage = "Subcategories are one level deep.";
        return;
    }
    // Adding a name that exists is finding it.
    if (const Category* sibling = findSibling(trimmed, parent)) {
        selectedCategoryID = sibling->id;
        return;
    }
    const Category category = makeCategory(trimmed, parent);
    alertOnFailure([&] { store->saveCategory(category); });
    library.appendCategory(category);
    selectedCategoryID = category.id;
}

void AppModel::renameCategory(const UUID& id, std::string_view name) {
    const Category* found = library.findCategory(id);
    if (!found)
        return;
    const std::string_view trimmed = Text::trimmed(name);
    Category category = *found;
    category.name = trimmed.empty() ? "Untitled" : trimmed;
    library.replaceCategory(category);
    alertOnFailure([&] { store->saveCategory(category); });
}

UUID AppModel::findOrCreateCategory(std::string_view name, const std::optional<UUID>& parentID) {
    if (const Category* sibling = findSibling(name, parentID))
        return sibling->id;
    const Category category = makeCategory(name, parentID);
    library.appendCategory(category);
    alertOnFailure([&] { store->saveCategory(category); });
    return category.id;
}

} // namespace quorl

#include "screens/CategoriesScreen.h"

#include "app/ScoreMath.h"
#include "base/Text.h"
#include "screens/Strings.h"

#include <utility>
#include <vector>

namespace quorl {

namespace {

bool isBlank(const QString& text) {
    return Text::isBlank(text.toStdString());
}

QString trailingSpace(const QString& text) {
    const std::string bytes = text.toStdString();
    const std::string_view trimmed = Text::trimmed(bytes);
    if (trimmed.empty())
        return {};
    const auto end = static_cast<std::size_t>(trimmed.data() - bytes.data()) + trimmed.size();
    return toQString(std::string_view(bytes).substr(end));
}

} // namespace

CategoriesScreen::CategoriesScreen(AppModel& appModel, ModelAdapter& adapter) : model(appModel) {
    connect(&adapter, &ModelAdapter::changed, this, [this](const ModelChanges& changes) {
        if (changes.hasAny({AppField::categories, AppField::selectedCategoryID}))
            refresh();
    });
    refresh();
}

QString CategoriesScreen::name() const {
    return shown ? toQString(shown->name) : QString();
}

QString CategoriesScreen::subtitle() const {
    if (!shown)
        return {};
    if (!shown->parentID)
        return tr("Top-level category. Add a subcategory when you want a finer score.");
    const std::string parent = ScoreMath::categoryName(shown->parentID, model.library.categories());
    return tr("Subcategory of %1").arg(toQString(std::string_view(parent).substr(0, parent.find(" / "))));
}

bool CategoriesScreen::canAdd() const {
    return !isBlank(typedName);
}

bool CategoriesScreen::canAddSubcategory() const {
    return !isBlank(typedSubcategory);
}

void CategoriesScreen::setNewName(const QString& text) {
    if (std::exchange(typedName, text) != text)
        Q_EMIT newNameChanged();
}

void CategoriesScreen::setNewSubcategory(const QString& text) {
    if (std::exchange(typedSubcategory, text) != text)
        Q_EMIT newSubcategoryChanged();
}

void CategoriesScreen::select(int row) {
    model.selectedCategoryID = rows.idAt(row);
    refreshSelection();
}

void CategoriesScreen::add() {
    if (!canAdd())
        return;
    model.addCategory(typedName.toStdString(), std::nullopt);
    setNewName({});
    refresh();
}

void CategoriesScreen::addSubcategory() {
    if (!shown || !canAddSubcategory())
        return;
    model.addCategory(typedSubcategory.toStdString(), shown->id);
    setNewSubcategory({});
    refresh();
}

void CategoriesScreen::requestDelete() {
    if (shown)
        model.requestDelete({PendingDelete::Kind::category, shown->id});
}

void CategoriesScreen::rename(const QString& text) {
    if (!shown)
        return;
    const QString before = name();
    const bool isBehind = text.size() > before.size() && text.startsWith(before);
    const QString wanted = isBehind ? before + heldSpace + text.mid(before.size()) : text;

    model.renameCategory(shown->id, wanted.toStdString());
    refresh();
    heldSpace = trailingSpace(wanted);
    Q_EMIT nameChanged(); // also when it is what it was before: the field holds something else
    if (isBlank(wanted))
        Q_EMIT nameReplaced();
}

void CategoriesScreen::refresh() {
    refreshRows();
    refreshSelection();
}

void CategoriesScreen::refreshRows() {
    std::vector<CategoryRow> next;
    for (const Category& root : model.roots()) {
        next.push_back({root.id, root.name, false});
        for (const Category& child : model.children(root.id))
            next.push_back({child.id, child.name, true});
    }
    rows.setRows(next);
}

void CategoriesScreen::refreshSelection() {
    const auto& id = *model.selectedCategoryID;
    const Category* selected = id ? model.library.findCategory(*id) : nullptr;
    const auto before = std::exchange(shown, selected ? std::optional(*selected) : std::nullopt);
    if (before != shown) {
        heldSpace.clear();
        Q_EMIT nameChanged();
    }
    // Even if the row is the same one: a list view moves its own mark when rows come and go.
    Q_EMIT selectionChanged();
}

} // namespace quorl

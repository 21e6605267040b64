#pragma once

#include "screens/CategoryListModel.h"
#include "screens/ModelAdapter.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <optional>

namespace quorl {

// The Categories screen: the tree, and beside it the selected category to be edited. Thread: main. Failures:
// in the alert of the model.
class CategoriesScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(quorl::CategoryListModel* categories READ categories CONSTANT)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged) // -1 for none
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY selectionChanged)
    Q_PROPERTY(bool takesSubcategories READ takesSubcategories NOTIFY selectionChanged)
    Q_PROPERTY(QString newName READ newName WRITE setNewName NOTIFY newNameChanged)
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY newNameChanged)
    Q_PROPERTY(
        QString newSubcategory READ newSubcategory WRITE setNewSubcategory NOTIFY newSubcategoryChanged)
    Q_PROPERTY(bool canAddSubcategory READ canAddSubcategory NOTIFY newSubcategoryChanged)

public:
    /// Both are borrowed and must outlive the screen.
    CategoriesScreen(AppModel& appModel, ModelAdapter& adapter);

    [[nodiscard]] CategoryListModel* categories() { return &rows; }
    [[nodiscard]] int selectedRow() const { return rows.rowOf(*model.selectedCategoryID); }
    [[nodiscard]] bool hasSelection() const { return shown.has_value(); }

    // Of the selected category; empty without one.
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] bool takesSubcategories() const { return shown && !shown->parentID; }

    // What is typed.
    [[nodiscard]] QString newName() const { return typedName; }
    [[nodiscard]] bool canAdd() const;
    [[nodiscard]] QString newSubcategory() const { return typedSubcategory; }
    [[nodiscard]] bool canAddSubcategory() const;
    void setNewName(const QString& text);
    void setNewSubcategory(const QString& text);

    Q_INVOKABLE void select(int row);
    Q_INVOKABLE void add();
    Q_INVOKABLE void addSubcategory();
    Q_INVOKABLE void requestDelete();

    /// What the field of the name holds now. The category is renamed at once, and what has become of the name
    /// belongs into the field: white space at its ends goes, and an empty one is replaced. White space at the
    /// end comes back with the next letter behind it, or nobody could type a second word.
    Q_INVOKABLE void rename(const QString& text);
    /// The next letter is not typed behind the last one.
    Q_INVOKABLE void endTyping() { heldSpace.clear(); }

Q_SIGNALS:
    void selectionChanged();
    void nameChanged();
    void nameReplaced(); // by one that stands in for an empty name
    void newNameChanged();
    void newSubcategoryChanged();

private:
    void refresh();
    void refreshRows();
    void refreshSelection();

    AppModel& model;
    CategoryListModel rows;
    std::optional<Category> shown;
    QString heldSpace; // trimmed from the end of the name as it was typed last
    QString typedName;
    QString typedSubcategory;
};

} // namespace quorl

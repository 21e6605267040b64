#include "screens/WindowTest.h"

namespace quorl::test {
namespace {

// The Categories screen as a person uses it, by mouse and by keys.
class CategoriesWindowTest : public WindowTest {
protected:
    Category add(const std::string& name, const std::optional<Category>& parent = std::nullopt) {
        Category category = makeCategory(name, parent ? std::optional(parent->id) : std::nullopt);
        category.sortIndex = nextIndex++;
        harness.file().saveCategory(category);
        return category;
    }

    void openCategories(const std::optional<Category>& selected = std::nullopt, QSize size = {1240, 800}) {
        open(size);
        harness.model().destination = Screen::categories;
        if (selected)
            harness.model().selectedCategoryID = selected->id;
        settle();
    }

    QQuickItem* findRow(const char* name) { return find(QString::fromUtf8(name), QAccessible::ListItem); }
    QQuickItem* findField(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::EditableText);
    }
    QQuickItem* findHeading(const char* name) { return find(QString::fromUtf8(name), QAccessible::Heading); }

    std::string nameField() { return findField("Name")->property("text").toString().toStdString(); }
    std::string nameOf(const Category& category) {
        return harness.model().library.findCategory(category.id)->name;
    }
    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const Category& category : harness.model().library.categories())
            all.push_back(category.name);
        return all;
    }

private:
    std::int64_t nextIndex = 0;
};

using Names = std::vector<std::string>;

TEST_F(CategoriesWindowTest, WithoutASelectionItSaysWhatCategoriesAreFor) {
    add("Support");
    openCategories();

    EXPECT_NE(findText("Type a name when you compare models. Scores remember it. "
                       "A subcategory sits one level under a parent."),
              nullptr);
    EXPECT_NE(findText("Pick a category"), nullptr);
    EXPECT_NE(findText("Type a name on the left, or select one you have already used."), nullptr);
    EXPECT_EQ(findField("Name"), nullptr);
    EXPECT_EQ(findButton("Delete"), nullptr);
}

TEST_F(CategoriesWindowTest, CategoriesAreAddedByTheButtonAndByReturn) {
    openCategories();
    EXPECT_FALSE(findButton("Add")->isEnabled());

    click(findField("New category"));
    type(" Support");
    click(findButton("Add"));
    EXPECT_EQ(focused(), "New category");
    type("Contracts");
    press(Qt::Key_Return);
    type(" ");
    press(Qt::Key_Return);

    EXPECT_EQ(names(), (Names{"Support", "Contracts"}));
    EXPECT_FALSE(findButton("Add")->isEnabled());
    EXPECT_NE(findHeading("Contracts"), nullptr);
}

TEST_F(CategoriesWindowTest, AClickSelectsARow) {
    const Category support = add("Support");
    const Category tone = add("Tone", support);
    openCategories();

    click(findRow("Tone"));

    EXPECT_EQ(*harness.model().selectedCategoryID, tone.id);
    EXPECT_NE(findHeading("Tone"), nullptr);
    EXPECT_NE(findText("Subcategory of Support"), nullptr);
    EXPECT_EQ(findField("Type a subcategory"), nullptr);
    EXPECT_EQ(findButton("Add subcategory"), nullptr);
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(findRow("Tone"))->state().selected);
}

TEST_F(CategoriesWindowTest, TheArrowsSelectInTheList) {
    const Category support = add("Support");
    add("Tone", support);
    openCategories();
    click(findField("New category"));

    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Categories"); // no row is selected yet
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Support");
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Tone");
    press(Qt::Key_Return);
    EXPECT_EQ(focused(), "Name");
}

TEST_F(CategoriesWindowTest, ASubcategoryIsAdded) {
    openCategories(add("Support"));
    EXPECT_FALSE(findButton("Add subcategory")->isEnabled());

    click(findField("Type a subcategory"));
    type("Tone");
    click(findButton("Add subcategory"));

    EXPECT_EQ(names(), (Names{"Support", "Tone"}));
    EXPECT_NE(findText("Subcategory of Support"), nullptr);
}

TEST_F(CategoriesWindowTest, DeletingAsksFirst) {
    const Category support = add("Support");
    openCategories(support);

    click(findButton("Delete"));

    EXPECT_EQ(*harness.model().pendingDelete, (PendingDelete{PendingDelete::Kind::category, support.id}));
}

// --- The name ---

TEST_F(CategoriesWindowTest, AnotherCategoryBringsItsOwnName) {
    const Category support = add("Support");
    add("Contracts");
    openCategories(support);
    EXPECT_EQ(nameField(), "Support");

    click(findRow("Contracts"));

    EXPECT_EQ(nameField(), "Contracts");
    EXPECT_EQ(names(), (Names{"Support", "Contracts"}));
}

TEST_F(CategoriesWindowTest, EachLetterIsARenameAndTheCaretStays) {
    const Category support = add("Support");
    openCategories(support);
    click(findField("Name"));
    press(Qt::Key_Home);
    press(Qt::Key_Right);
    type("ab");

    EXPECT_EQ(nameField(), "Sabupport");
    EXPECT_EQ(nameOf(support), "Sabupport");
    EXPECT_NE(findRow("Sabupport"), nullptr);
    EXPECT_EQ(findField("Name")->property("cursorPosition").toInt(), 3);
}

TEST_F(CategoriesWindowTest, ASpaceAtTheEndGoesAtOnceAndTwoWordsCanBeTyped) {
    const Category support = add("Code");
    openCategories(support);
    click(findField("Name"));
    press(Qt::Key_End);

    type(" ");
    EXPECT_EQ(nameField(), "Code");
    type("review");

    EXPECT_EQ(nameField(), "Code review");
    EXPECT_EQ(nameOf(support), "Code review");
    type(" s");
    press(Qt::Key_Backspace);
    EXPECT_EQ(nameField(), "Code review");
}

TEST_F(CategoriesWindowTest, ASpaceAtTheStartGoesAtOnceAndTheCaretStays) {
    openCategories(add("Code"));
    click(findField("Name"));
    press(Qt::Key_Home);

    type(" x");

    EXPECT_EQ(nameField(), "xCode");
}

TEST_F(CategoriesWindowTest, ASpaceIsForgottenWhenTheCaretHasBeenElsewhere) {
    openCategories(add("Code"));
    click(findField("Name"));
    press(Qt::Key_End);
    type(" ");

    click(findField("New category"));
    click(findField("Name"));
    press(Qt::Key_End);
    type("s");

    EXPECT_EQ(nameField(), "Codes");
}

TEST_F(CategoriesWindowTest, AnEmptiedNameIsUntitledUntilTheNextLetter) {
    const Category support = add("S");
    openCategories(support);
    click(findField("Name"));
    press(Qt::Key_End);
    press(Qt::Key_Backspace);
    EXPECT_EQ(nameField(), "Untitled");
    EXPECT_EQ(nameOf(support), "Untitled");

    type("Contracts");

    EXPECT_EQ(nameField(), "Contracts");
    EXPECT_EQ(nameOf(support), "Contracts");
}

// --- Narrow windows ---

TEST_F(CategoriesWindowTest, InANarrowWindowTheListStandsAboveWithFiveRowsAtMost) {
    for (const char* name : {"A", "B", "C", "D", "E", "F"})
        add(name);
    openCategories(add("Support"), {420, 800});

    QQuickItem* list = find(QStringLiteral("Categories"), QAccessible::List);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->height(), 5 * 38);
    EXPECT_GT(findField("Name")->mapToScene({}).y(), list->mapToScene({}).y() + list->height());
}

} // namespace
} // namespace quorl::test

#include "screens/CategoriesScreen.h"

#include "screens/ScreenHarness.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace quorl::test {
namespace {

class CategoriesScreenTest : public testing::Test {
protected:
    Category add(const std::string& name, const std::optional<Category>& parent = std::nullopt) {
        Category category = makeCategory(name, parent ? std::optional(parent->id) : std::nullopt);
        category.sortIndex = nextIndex++;
        harness.file().saveCategory(category);
        return category;
    }

    CategoriesScreen& show(const std::optional<Category>& selected = std::nullopt) {
        RootScreen& root = harness.show();
        root.goTo(RootScreen::Destination::Categories);
        if (selected)
            harness.model().selectedCategoryID = selected->id;
        ScreenHarness::endTurn();
        return screen();
    }

    CategoriesScreen& screen() { return *qobject_cast<CategoriesScreen*>(harness.root().screen()); }

    // The tree as it is drawn, a subcategory with a dash before it.
    std::vector<std::string> tree() {
        std::vector<std::string> lines;
        for (int row = 0; row < screen().categories()->rowCount(); ++row) {
            const QModelIndex index = screen().categories()->index(row);
            const bool isIndented =
                screen().categories()->data(index, CategoryListModel::SubcategoryRole).toBool();
            const std::string name = screen()
                                         .categories()
                                         ->data(index, CategoryListModel::CategoryNameRole)
                                         .toString()
                                         .toStdString();
            lines.push_back(isIndented ? "- " + name : name);
        }
        return lines;
    }

    // As if the letters were typed one by one behind what the field holds.
    void type(const char* letters) {
        for (const char* letter = letters; *letter; ++letter)
            screen().rename(screen().name() + QLatin1Char(*letter));
    }

    std::string nameOf(const Category& category) {
        return harness.model().library.findCategory(category.id)->name;
    }

    ScreenHarness harness;

private:
    std::int64_t nextIndex = 0;
};

using Lines = std::vector<std::string>;

// --- The list ---

TEST_F(CategoriesScreenTest, EachRootIsFollowedByItsChildren) {
    const Category support = add("Support");
    const Category contracts = add("Contracts");
    add("Tone", support);
    add("Clauses", contracts);
    add("Returns", support);
    show();

    EXPECT_EQ(tree(), (Lines{"Support", "- Tone", "- Returns", "Contracts", "- Clauses"}));
}

TEST_F(CategoriesScreenTest, ATypedNameIsAddedTrimmedAndSelectedAndTheFieldEmptied) {
    show();
    EXPECT_FALSE(screen().canAdd());
    screen().setNewName(QStringLiteral(" \n"));
    EXPECT_FALSE(screen().canAdd());
    screen().setNewName(QStringLiteral(" Support "));
    EXPECT_TRUE(screen().canAdd());

    screen().add();

    EXPECT_EQ(screen().newName(), QString());
    EXPECT_FALSE(screen().canAdd());
    EXPECT_EQ(tree(), Lines{"Support"});
    EXPECT_EQ(screen().selectedRow(), 0);
    EXPECT_EQ(harness.file().loadCategories().size(), 1u);
}

TEST_F(CategoriesScreenTest, ABlankNameIsNotAddedAndStays) {
    show();
    screen().setNewName(QStringLiteral("  "));

    screen().add();

    EXPECT_EQ(screen().newName(), QStringLiteral("  "));
    EXPECT_EQ(tree(), Lines());
}

TEST_F(CategoriesScreenTest, ANameThatExistsIsFoundAndSelected) {
    add("Support");
    const Category contracts = add("Contracts");
    show();
    screen().setNewName(QStringLiteral("contracts"));

    screen().add();

    EXPECT_EQ(*harness.model().selectedCategoryID, contracts.id);
    EXPECT_EQ(tree(), (Lines{"Support", "Contracts"}));
    EXPECT_EQ(screen().newName(), QString());
}

TEST_F(CategoriesScreenTest, AClickedRowIsSelectedAndStaysSoElsewhere) {
    add("Support");
    const Category contracts = add("Contracts");
    show();
    EXPECT_EQ(screen().selectedRow(), -1);

    screen().select(1);
    EXPECT_EQ(*harness.model().selectedCategoryID, contracts.id);
    EXPECT_EQ(screen().name(), QStringLiteral("Contracts"));

    harness.root().goTo(RootScreen::Destination::History);
    ScreenHarness::endTurn();
    harness.root().goTo(RootScreen::Destination::Categories);
    ScreenHarness::endTurn();
    EXPECT_EQ(screen().selectedRow(), 1);
}

TEST_F(CategoriesScreenTest, TheTreeFollowsTheLibraryRowByRow) {
    const Category support = add("Support");
    add("Contracts");
    show();
    const QAbstractItemModelTester tester(screen().categories());
    const QSignalSpy resets(screen().categories(), &QAbstractItemModel::modelReset);

    harness.model().addCategory("Tone", support.id);
    harness.model().renameCategory(support.id, "Help");
    ScreenHarness::endTurn();

    EXPECT_EQ(tree(), (Lines{"Help", "- Tone", "Contracts"}));
    EXPECT_EQ(resets.count(), 0);
}

// --- The editor ---

TEST_F(CategoriesScreenTest, WithoutASelectionThereIsNothingToEdit) {
    const Category gone = makeCategory();
    add("Support");
    show(gone);

    EXPECT_FALSE(screen().hasSelection());
    EXPECT_FALSE(screen().takesSubcategories());
    EXPECT_EQ(screen().name(), QString());
    EXPECT_EQ(screen().subtitle(), QString());
}

TEST_F(CategoriesScreenTest, ARootTakesSubcategories) {
    show(add("Support"));

    EXPECT_TRUE(screen().hasSelection());
    EXPECT_TRUE(screen().takesSubcategories());
    EXPECT_EQ(screen().subtitle(),
              QStringLiteral("Top-level category. Add a subcategory when you want a finer score."));
}

TEST_F(CategoriesScreenTest, ASubcategoryNamesItsParentAndTakesNone) {
    const Category support = add("Support");
    show(add("Tone", support));
    EXPECT_FALSE(screen().takesSubcategories());
    EXPECT_EQ(screen().subtitle(), QStringLiteral("Subcategory of Support"));

    harness.model().renameCategory(support.id, "In / out");
    ScreenHarness::endTurn();
    EXPECT_EQ(screen().subtitle(), QStringLiteral("Subcategory of In"));
}

TEST_F(CategoriesScreenTest, ASubcategoryIsAddedUnderTheSelectedRootAndTheFieldEmptied) {
    const Category support = add("Support");
    show(support);
    EXPECT_FALSE(screen().canAddSubcategory());
    screen().setNewSubcategory(QStringLiteral("\t"));
    EXPECT_FALSE(screen().canAddSubcategory());
    screen().setNewSubcategory(QStringLiteral("Tone"));
    EXPECT_TRUE(screen().canAddSubcategory());

    screen().addSubcategory();

    EXPECT_EQ(screen().newSubcategory(), QString());
    EXPECT_EQ(tree(), (Lines{"Support", "- Tone"}));
    EXPECT_EQ(screen().name(), QStringLiteral("Tone"));
    EXPECT_EQ(harness.model().library.categories()[1].parentID, support.id);
}

TEST_F(CategoriesScreenTest, ARefusalIsSaidAndTheFieldEmptied) {
    const Category support = add("Support");
    show(add("Tone", support));
    screen().setNewSubcategory(QStringLiteral("Third"));

    screen().addSubcategory();

    EXPECT_EQ(*harness.model().alertMessage, "Subcategories are one level deep.");
    EXPECT_EQ(screen().newSubcategory(), QString());
    EXPECT_EQ(tree(), (Lines{"Support", "- Tone"}));
}

TEST_F(CategoriesScreenTest, DeletingAsksFirst) {
    const Category support = add("Support");
    show(support);

    screen().requestDelete();
    EXPECT_EQ(*harness.model().pendingDelete, (PendingDelete{PendingDelete::Kind::category, support.id}));

    harness.model().confirmDelete();
    ScreenHarness::endTurn();
    EXPECT_EQ(tree(), Lines());
    EXPECT_FALSE(screen().hasSelection());
}

// --- The name ---

TEST_F(CategoriesScreenTest, EveryLetterIsARename) {
    const Category support = add("Support");
    show(support);

    screen().rename(QStringLiteral("Suppor"));

    EXPECT_EQ(nameOf(support), "Suppor");
    EXPECT_EQ(harness.file().loadCategories()[0].name, "Suppor");
    EXPECT_EQ(tree(), Lines{"Suppor"});
}

TEST_F(CategoriesScreenTest, ASpaceAtTheEndIsTrimmedAtOnceAndToldToTheField) {
    const Category support = add("Support");
    show(support);
    const QSignalSpy told(&screen(), &CategoriesScreen::nameChanged);

    screen().rename(QStringLiteral("Support "));

    EXPECT_EQ(screen().name(), QStringLiteral("Support"));
    EXPECT_EQ(nameOf(support), "Support");
    EXPECT_EQ(told.count(), 1);
}

TEST_F(CategoriesScreenTest, TheTrimmedSpaceComesBackWithTheNextLetter) {
    const Category support = add("Code");
    show(support);

    type(" re");
    EXPECT_EQ(nameOf(support), "Code re");
    type("  view");
    EXPECT_EQ(nameOf(support), "Code re  view");
}

TEST_F(CategoriesScreenTest, TheTrimmedSpaceIsForgottenWhenTypingEndsOrGoesOnElsewhere) {
    const Category support = add("Code");
    const Category contracts = add("Code");
    show(support);

    type(" ");
    screen().endTyping();
    type("s");
    EXPECT_EQ(nameOf(support), "Codes");

    type(" ");
    screen().rename(QStringLiteral("Code"));
    type("r");
    EXPECT_EQ(nameOf(support), "Coder");

    type(" ");
    screen().select(1);
    type("x");
    EXPECT_EQ(nameOf(contracts), "Codex");
}

TEST_F(CategoriesScreenTest, AnEmptiedNameIsUntitledAtOnce) {
    const Category support = add("Support");
    show(support);
    const QSignalSpy replaced(&screen(), &CategoriesScreen::nameReplaced);

    screen().rename(QString());
    EXPECT_EQ(screen().name(), QStringLiteral("Untitled"));
    EXPECT_EQ(nameOf(support), "Untitled");
    screen().rename(QStringLiteral("  "));
    EXPECT_EQ(screen().name(), QStringLiteral("Untitled"));
    EXPECT_EQ(replaced.count(), 2);

    type("x");
    EXPECT_EQ(nameOf(support), "Untitledx");
}

TEST_F(CategoriesScreenTest, ACategoryThatHasGoneIsNotRenamed) {
    const Category support = add("Support");
    show(support);
    harness.model().pendingDelete = PendingDelete{PendingDelete::Kind::category, support.id};
    harness.model().confirmDelete();

    screen().rename(QStringLiteral("Ghost"));

    EXPECT_EQ(harness.file().loadCategories().size(), 0u);
    EXPECT_FALSE(screen().hasSelection());
}

} // namespace
} // namespace quorl::test

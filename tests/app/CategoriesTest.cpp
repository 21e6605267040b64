#include "app/Harness.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;

namespace {

class CategoriesTest : public testing::Test {
protected:
    void SetUp() override {
        harness.file().saveModel(makeModel());
        harness.start();
    }

    std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const Category& category : model().library.categories())
            result.push_back(category.name);
        return result;
    }

    AppModel& model() { return harness.model(); }

    Harness harness;
};

TEST_F(CategoriesTest, ANewCategoryIsTrimmedSelectedAndWritten) {
    model().addCategory("  Support\n", std::nullopt);

    ASSERT_THAT(names(), ElementsAre("Support"));
    EXPECT_EQ(*model().selectedCategoryID, model().library.categories()[0].id);
    EXPECT_EQ(harness.file().loadCategories(), model().library.categories());
}

TEST_F(CategoriesTest, ABlankNameAddsNothing) {
    model().addCategory(" \n\t", std::nullopt);

    EXPECT_TRUE(names().empty());
    EXPECT_FALSE(model().selectedCategoryID->has_value());
}

TEST_F(CategoriesTest, ANameThatDiffersOnlyInCaseOrInOuterSpaceIsFound) {
    model().addCategory("Straße", std::nullopt);
    const UUID first = **model().selectedCategoryID;
    model().addCategory("Other", std::nullopt);

    model().addCategory(" STRAßE ", std::nullopt);

    EXPECT_THAT(names(), ElementsAre("Straße", "Other"));
    EXPECT_EQ(*model().selectedCategoryID, first);
}

TEST_F(CategoriesTest, AccentsTellNamesApart) {
    model().addCategory("resume", std::nullopt);
    model().addCategory("résumé", std::nullopt);

    EXPECT_THAT(names(), ElementsAre("resume", "résumé"));
}

TEST_F(CategoriesTest, TheSameNameMayStandUnderAnotherParent) {
    model().addCategory("A", std::nullopt);
    const UUID parent = **model().selectedCategoryID;
    model().addCategory("a", parent);

    ASSERT_EQ(model().library.categories().size(), 2u);
    EXPECT_EQ(model().library.categories()[1].parentID, parent);
}

TEST_F(CategoriesTest, AThirdLevelIsRefused) {
    model().addCategory("A", std::nullopt);
    model().addCategory("B", **model().selectedCategoryID);

    model().addCategory("C", **model().selectedCategoryID);

    EXPECT_EQ(*model().alertMessage, "Subcategories are one level deep.");
    EXPECT_THAT(names(), ElementsAre("A", "B"));
}

TEST_F(CategoriesTest, AParentThatNamesNoCategoryIsStoredAsGiven) {
    const UUID nowhere = UUID::random();
    model().addCategory("A", nowhere);

    EXPECT_EQ(model().library.categories()[0].parentID, nowhere);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(CategoriesTest, TheSortIndexRunsOverTheWholeList) {
    Category far = makeCategory("Far");
    far.sortIndex = 41;
    harness.file().saveCategory(far);
    harness.start();

    model().addCategory("Child", far.id);

    EXPECT_EQ(model().library.categories().back().sortIndex, 42);
}

TEST_F(CategoriesTest, TheFirstSortIndexIsZero) {
    model().addCategory("A", std::nullopt);

    EXPECT_EQ(model().library.categories()[0].sortIndex, 0);
}

TEST_F(CategoriesTest, RenamingTrimsAndKeepsTheSelection) {
    model().addCategory("A", std::nullopt);
    const UUID id = model().library.categories()[0].id;
    model().addCategory("B", std::nullopt);

    model().renameCategory(id, " b ");

    EXPECT_THAT(names(), ElementsAre("b", "B")); // no check for duplicates here
    EXPECT_NE(*model().selectedCategoryID, id);
    EXPECT_EQ(harness.file().loadCategories(), model().library.categories());
}

TEST_F(CategoriesTest, RenamingToBlanksGivesUntitled) {
    model().addCategory("A", std::nullopt);

    model().renameCategory(model().library.categories()[0].id, " \n");

    EXPECT_THAT(names(), ElementsAre("Untitled"));
}

TEST_F(CategoriesTest, RenamingAnUnknownCategoryDoesNothing) {
    model().renameCategory(UUID::random(), "X");

    EXPECT_TRUE(names().empty());
}

TEST_F(CategoriesTest, RootsAndChildrenAreSortedStably) {
    Category a = makeCategory("a");
    a.sortIndex = 1;
    Category b = makeCategory("b");
    b.sortIndex = 0;
    Category c = makeCategory("c", b.id);
    Category d = makeCategory("d");
    d.sortIndex = 1;
    for (const Category& category : {d, a, c, b})
        harness.file().saveCategory(category);
    harness.start();

    EXPECT_THAT(model().roots(), ElementsAre(b, a, d));
    EXPECT_THAT(model().children(b.id), ElementsAre(c));
    EXPECT_TRUE(model().children(a.id).empty());
}

TEST_F(CategoriesTest, AFailedWriteShowsTheErrorAndKeepsMemory) {
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE INSERT ON categories BEGIN SELECT RAISE(ABORT, 'no room'); END");

    model().addCategory("A", std::nullopt);

    EXPECT_EQ(*model().alertMessage, "no room");
    EXPECT_THAT(names(), ElementsAre("A"));
    EXPECT_TRUE(harness.file().loadCategories().empty());
}

} // namespace

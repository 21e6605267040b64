from screen_reader import ScreenTest, item, main


class CategoriesTest(ScreenTest):
    def setUp(self):
        self.press("push button", "Tools")
        self.press("menu item", "Categories")
        self.shows(item("heading", "Categories"))

    def test_without_a_category_it_says_what_they_are_for(self):
        self.shows(
            item("heading", "Categories"),
            item("text", "New category", editable=True),
            item("push button", "Add"),
            item("list", "Categories"),
            item("heading", "Categories"),
            item("label", "Pick a category"),
        )


if __name__ == "__main__":
    main()

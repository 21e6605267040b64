from screen_reader import SampleTest, ScreenTest, item, main


class ShellTest(ScreenTest):
    def test_the_navigation_is_found_by_its_words(self):
        self.shows(
            item("push button", "Quorl", description="Comparison workspace", focusable=True),
            item(
                "page tab list",
                "Screens",
                item("page tab", "Compare", focusable=True),
                item("page tab", "History", focusable=True),
                item("page tab", "Dataset", focusable=True),
            ),
            item("push button", "Tools", description="Models, performance, categories, and API batches"),
        )

    def test_an_entry_leads_to_its_screen_and_is_selected(self):
        self.press("page tab", "History")
        self.shows(item("page tab", "Compare", selected=False), item("page tab", "History", selected=True))
        self.press("page tab", "Compare")
        self.shows(item("page tab", "Compare", selected=True), item("page tab", "History", selected=False))

    def test_the_tools_are_a_menu(self):
        self.press("push button", "Tools")
        self.shows(
            item("menu item", "Models"),
            item("menu item", "Performance"),
            item("menu item", "Categories"),
            item("menu item", "API batches"),
            item("menu item", "Motion"),
        )
        self.press("menu item", "Models")
        self.lacks("menu item", "API batches")
        self.shows(item("page tab", "Compare", selected=False))


class ToastTest(SampleTest):
    def test_a_toast_is_read_unasked(self):
        self.press("push button", "Compare")
        self.find("push button", "Save to dataset")
        with self.hears("1 examples logged. Your first benchmark example is logged."):
            self.press("push button", "Save to dataset")


if __name__ == "__main__":
    main()

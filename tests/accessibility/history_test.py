from screen_reader import SampleTest, ScreenTest, item, main

QUESTION = (
    "Our small team answers the same customer questions again and again. "
    "Which should we build first: a searchable help page or a set of saved replies, and why?"
)


class EmptyHistoryTest(ScreenTest):
    def test_without_comparisons_it_says_what_will_be_here(self):
        self.press("page tab", "History")
        self.shows(
            item("heading", "History"),
            item("label", "Reopen a comparison or start a variation."),
            item("text", "Search comparison history", editable=True),
            item("label", "No comparisons yet"),
            item("label", "Completed comparisons will be available here."),
        )


class HistoryTest(SampleTest):
    def setUp(self):
        self.press("page tab", "Compare")
        self.press("push button", "Compare")
        self.find("push button", "Save to dataset")
        self.press("page tab", "History")

    def test_a_comparison_is_a_row_with_its_details_and_a_menu(self):
        self.shows(
            item("heading", "History"),
            item(
                "list",
                "History",
                item("label", QUESTION),
                item("label", "Single question"),
                item("label", "Uncategorized"),
                item("label", "4 models"),
                item("push button", f"Actions for {QUESTION}"),
            ),
        )
        self.press("push button", f"Actions for {QUESTION}")
        self.shows(
            item("menu item", "Open comparison"),
            item("menu item", "Run a variation"),
            item("menu item", "Delete"),
        )
        self.press("menu item", "Delete")
        self.shows(item("alert", "Delete this comparison?"))
        self.press("push button", "Cancel")
        self.lacks("alert", "Delete this comparison?")


if __name__ == "__main__":
    main()

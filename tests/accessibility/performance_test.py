from screen_reader import SampleTest, ScreenTest, item, main


class EmptyPerformanceTest(ScreenTest):
    def test_before_anything_was_asked_it_says_what_will_be_here(self):
        self.press("push button", "Tools")
        self.press("menu item", "Performance")
        self.shows(
            item("heading", "Performance"),
            item("label", "No scores yet"),
            item(
                "label",
                "Run a comparison and choose, accept, or rate a response. Results will be summarized here.",
            ),
        )


class PerformanceTest(SampleTest):
    def test_the_scores_are_tables_with_a_picture_in_words(self):
        self.press("push button", "Compare")
        self.find("push button", "Save to dataset")
        self.press("check box", "Mark answer correct and save to dataset")
        self.press("push button", "Tools")
        self.press("menu item", "Performance")
        columns = ("Answers", "Correct", "Avg score", "Time", "Cost", "Tokens")
        self.shows(
            item("heading", "Performance"),
            item("push button", "Export CSV"),
            item("combo box", "Category", description="All categories"),
            item("check box", "Include subcategories", checked=True),
            item("label", "4 models compared"),
            item("label", "1 judged responses"),
            item("label", "0 categories"),
            item(
                "table",
                "Overall",
                item("heading", "Overall"),
                item("table column header", "Model"),
                *(item("table column header", column) for column in columns),
                item("table cell", "100% · 1/1"),
            ),
            item(
                "table",
                "By category",
                item("heading", "By category"),
                item("table column header", "Category"),
                *(item("table column header", column) for column in columns),
                item("table cell", "Uncategorized"),
            ),
            item("heading", "Quality against speed and cost"),
        )

        self.press("table column header", "Answers")
        self.shows(item("table column header", "Answers", description="Sorted from the largest"))


if __name__ == "__main__":
    main()

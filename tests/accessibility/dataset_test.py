from screen_reader import SampleTest, ScreenTest, item, main


class EmptyDatasetTest(ScreenTest):
    def test_without_examples_it_says_how_to_save_one(self):
        self.press("page tab", "Dataset")
        self.shows(
            item("heading", "Dataset"),
            item("push button", "Export JSONL"),
            item("label", "Nothing saved yet"),
            item("label", "Use the bookmark beside an answer to save it here."),
        )


class DatasetTest(SampleTest):
    def test_the_examples_open_below_their_count(self):
        self.press("push button", "Compare")
        self.press("push button", "Save to dataset")
        self.press("page tab", "Dataset")
        self.shows(
            item("heading", "Dataset"),
            item("push button", "Export JSONL"),
            item("push button", "Training set", description="1 example", checked=False),
        )
        self.press("push button", "Training set")
        self.shows(
            item("push button", "Training set", checked=True),
            item("heading", "Saved examples"),
            item("text", "Search examples", editable=True),
            item(
                "list",
                "Saved examples",
                item("label", "Uncategorized"),
                item("label", "Sample · Brief"),
                item("label", "Saved"),
                item("push button", "Remove from the dataset"),
            ),
        )
        self.press("push button", "Remove from the dataset")
        self.shows(item("alert", "Remove this example from the dataset?"))


if __name__ == "__main__":
    main()

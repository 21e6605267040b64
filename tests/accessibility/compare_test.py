from screen_reader import SampleTest, ScreenTest, item, main


class ComposerTest(ScreenTest):
    """The composer of each mode, and what opens from it."""

    def switch_to(self, entry):
        self.press_any("push button", "Decision", "Bulk questions", "Ask models")
        self.press("menu item", entry)
        self.lacks("menu item", entry)

    def test_a_decision_with_a_choice(self):
        self.switch_to("Single question")
        self.switch_to("Decision models")
        self.press("radio button", "Choose one option")
        self.shows(
            item(
                "push button",
                "Decision",
                description="Switch between single questions, bulk questions, or language models",
                focusable=True,
            ),
            item("push button", "Comparison options", focusable=True),
            item("text", "Context", editable=True, multi_line=True, focusable=True),
            item(
                "push button",
                "About context",
                description="Required. Facts or instructions every model uses. In bulk mode, this is shared by every "
                "question.",
                focusable=True,
            ),
            item("text", "Question", editable=True, multi_line=True),
            item(
                "panel",
                "Answer format",
                item("radio button", "Choose one option", checked=True),
                item("radio button", "Place the answer on an ordered scale", checked=False),
                item("radio button", "Ask a yes or no question", checked=False),
            ),
            item("text", "Choice", editable=True),
            item("push button", "Choice description and options"),
            item("text", "Choice", editable=True),
            item("push button", "Choice description and options"),
            item("push button", "Add choice"),
            item("push button", "Choose models", description="Select the models to compare"),
            item("push button", "Compare", focusable=True),
            item("heading", "Answers"),
            item("label", "Your model responses will appear here."),
        )

    def test_the_description_of_a_choice(self):
        self.switch_to("Decision models")
        self.press("radio button", "Choose one option")
        self.press("push button", "Choice description and options")
        self.shows(item("text", "Description", editable=True, multi_line=True, focused=True))
        self.press("push button", "Choice description and options")

    def test_a_decision_with_a_score(self):
        self.switch_to("Decision models")
        self.press("radio button", "Place the answer on an ordered scale")
        self.shows(
            item("radio button", "Place the answer on an ordered scale", checked=True),
            item("label", "Score scale"),
            item("push button", "About score scales"),
            item("push button", "Use numbers", description="Replace these levels with a numeric scale"),
            item("label", "Lowest → highest"),
            item("text", "Lowest score level", editable=True),
            item("text", "Highest score level", editable=True),
            item("push button", "Add level"),
        )
        self.press("push button", "Use numbers")
        self.press("menu item", "1 to 5")
        self.shows(
            item("text", "Lowest score level", value="1"),
            item("push button", "Remove score level"),
            item("text", "Score level 2", value="2"),
            item("text", "Score level 4", value="4"),
            item("text", "Highest score level", value="5"),
            item("push button", "Remove score level"),
            item("push button", "Add level"),
        )
        self.press("push button", "Use numbers")
        self.press("menu item", "1 to 10")
        self.shows(
            item("text", "Highest score level", value="10"),
            item("push button", "Add level", description="A score can use up to ten ordered levels"),
        )

    def test_a_decision_with_yes_and_no(self):
        self.switch_to("Decision models")
        self.press("radio button", "Ask a yes or no question")
        self.shows(
            item("radio button", "Ask a yes or no question", checked=True),
            item("label", "Add optional definitions only when needed."),
            item("push button", "Define Yes and No"),
        )
        self.press("push button", "Define Yes and No")
        self.shows(
            item("text", "Yes means (optional)", editable=True, focused=True),
            item("text", "No means (optional)", editable=True),
        )
        self.press("push button", "Define Yes and No")

    def test_the_options_of_a_decision(self):
        self.switch_to("Decision models")
        self.press("push button", "Comparison options")
        self.shows(
            item(
                "panel",
                "Options",
                item(
                    "text",
                    "Question identifier (optional)",
                    description="An identifier for API responses. Generated automatically when blank.",
                    editable=True,
                    focused=True,
                ),
                item("push button", "Add another question"),
                item(
                    "panel",
                    "Rating",
                    item("radio button", "Yes / No", checked=True),
                    item("radio button", "1 to 10", checked=False),
                ),
                item("text", "Category (optional)", editable=True),
                item("text", "Subcategory (optional)", editable=True),
            )
        )
        self.press("push button", "Add another question")
        self.lacks("panel", "Options")
        self.shows(
            item("text", "Question", editable=True),
            item("text", "Additional question", editable=True),
            item("push button", "Remove question"),
        )
        self.press("push button", "Remove question")
        self.lacks("text", "Additional question")

    def test_a_question_to_language_models(self):
        self.switch_to("Ask language models")
        self.shows(
            item("push button", "Ask models"),
            item("text", "Question", editable=True, multi_line=True),
            item("push button", "Choose models"),
            item("push button", "Compare"),
        )
        self.lacks("text", "Context")
        self.press("push button", "Comparison options")
        self.shows(item("panel", "Options", item("text", "System prompt", editable=True)))
        self.lacks("push button", "Add another question")
        self.press("push button", "Comparison options")

    def test_a_list_of_questions(self):
        self.switch_to("Bulk questions")
        self.shows(
            item("push button", "Bulk questions"),
            item("text", "Shared context", editable=True),
            item("panel", "Answer format"),
            item("heading", "Questions"),
            item("label", "1"),
            item("push button", "Paste list", description="Add one question per line"),
            item("text", "Bulk question 1", editable=True),
            item("push button", "Question actions", description="Duplicate or remove question"),
            item("push button", "Add question"),
            item("push button", "Run 1 question"),
        )
        self.press("push button", "Question actions")
        self.shows(item("menu item", "Duplicate"), item("menu item", "Remove"))
        self.press("menu item", "Duplicate")
        self.shows(item("text", "Bulk question 2", editable=True), item("push button", "Run 2 questions"))

    def test_a_list_is_pasted_into_a_sheet(self):
        self.switch_to("Bulk questions")
        self.press("push button", "Paste list")
        self.shows(
            item(
                "dialog",
                "Paste questions",
                item("text", "Questions to paste", editable=True, multi_line=True, focused=True),
                item("push button", "Cancel"),
                item("push button", "Add 0 questions"),
            )
        )
        with self.hears("A batch can hold up to 200 questions."):
            self.write("text", "Questions to paste", "why\n" * 201)
        self.shows(
            item("alert", "A batch can hold up to 200 questions."),
            item("push button", "Add 201 questions"),
        )
        self.write("text", "Questions to paste", "")
        self.press("push button", "Cancel")
        self.lacks("dialog", "Paste questions")

    def test_what_is_missing_is_read_unasked(self):
        self.switch_to("Ask language models")
        with self.hears("Write a question first."):
            self.press("push button", "Compare")
        self.shows(item("push button", "Compare"), item("alert", "Write a question first."))
        with self.hears("Write a question first."):  # once more
            self.press("push button", "Compare")

        self.write("text", "Question", "Why?")
        self.lacks("alert", "Write a question first.")
        with self.hears("Choose at least one ready model."):
            self.press("push button", "Compare")
        self.shows(item("panel", "Models", item("push button", "Manage models…")))
        self.press("push button", "Choose models")
        self.write("text", "Question", "")


class SampleModelsTest(SampleTest):
    def test_models_are_switched_on_and_off(self):
        self.press("push button", "Sample · Brief + Sample · Thorough +2")
        self.shows(item("panel", "Models", item("check box", "Sample · Brief", checked=True)))
        self.press("check box", "Sample · Brief")
        self.shows(item("check box", "Sample · Brief", checked=False))
        self.find("push button", "Sample · Thorough + Sample · Step by step +1")


if __name__ == "__main__":
    main()

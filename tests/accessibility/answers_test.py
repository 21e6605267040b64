import contextlib
import json

from held_models import HeldModelsTest
from screen_reader import DemoTest, SampleTest, item, main

UP = "Mark answer correct and save to dataset"
DOWN = "Choose the correct answer and save it"


class ArrivalTest(HeldModelsTest):
    def test_answers_are_awaited_and_said_as_they_come(self):
        self.compare()
        self.shows(
            item("heading", "Answers"),
            item("label", "0 of 4"),
            item("push button", "Reset comparison", description="Return to the question and hide the current answers. "
                 "Your setup stays in place."),
            item("progress bar", "Waiting for a response from your selected models"),
            item("label", "Responses will appear here without moving this workspace."),
        )
        with self.hears("Sample · Brief: One."):
            self.endpoint.answer("sample-brief", "One.")
        self.shows(
            item("label", "1 of 4"),
            item("panel", "Sample · Brief", item("text", "One.", read_only=True)),
            item("panel", "Sample · Thorough",
                 item("progress bar", "Waiting for a response from Sample · Thorough")),
        )
        with self.hears("Sample · Skeptic: Couldn't get an answer"):
            self.endpoint.fail("sample-skeptic", "Tired.")
        self.shows(
            item("label", "2 of 4"),
            item("panel", "Sample · Skeptic", item("label", "Couldn't get an answer")),
        )
        self.shows(item("panel", "Sample · Skeptic", item("push button", "Retry")))
        self.press("push button", "Show error")
        self.shows(item("panel", "Sample · Skeptic", item("text", "HTTP 500: Tired.", read_only=True)))


class JudgedTest(HeldModelsTest):
    def test_an_answer_is_accepted_corrected_and_looked_into(self):
        for model in self.MODELS:
            self.endpoint.answer(model, "One.")
        self.compare()
        self.shows(
            item(
                "panel",
                "Sample · Brief",
                item("push button", "Actions for Sample · Brief", description="Details, copy, and more"),
                item("text", "One.", read_only=True),
                item("check box", UP, checked=False),
                item("check box", DOWN, checked=False),
                item("push button", "Save to dataset"),
            ),
            item("push button", "Next question"),
            item("label", "0 of 4 responses rated"),
        )
        with self.hears("1 examples logged. Your first benchmark example is logged."):
            self.press("check box", UP)
        self.shows(
            item("panel", "Sample · Brief", item("check box", "Clear positive rating", checked=True),
                 item("push button", "Saved to dataset")),
            item("label", "1 of 4 responses rated"),
        )

        self.press("check box", DOWN)
        self.shows(
            item(
                "dialog",
                "Enter the corrected response",
                item("label", "This response—not the model's answer—will be saved to your dataset."),
                item("text", "Corrected response", editable=True),
                item("push button", "Cancel"),
                item("push button", "Save correction"),
            )
        )
        self.write("text", "Corrected response", "Another.")
        with self.hears("Correction saved. Your dataset stays up to date."):
            self.press("push button", "Save correction")
        self.shows(item("panel", "Sample · Brief", item("check box", "Clear negative rating", checked=True)))

        self.press("push button", "Actions for Sample · Brief")
        self.press("menu item", "Response details")
        self.shows(
            item(
                "panel",
                "Sample · Brief",
                item("label", "Direct API"),
                item("label", "Tokens: 12 in · 3 out"),
                item("label", "Raw response"),
                item("text", "One.", read_only=True),
                item("push button", "Done"),
            )
        )
        self.press("push button", "Done")
        self.lacks("label", "Raw response")


class RatedTest(HeldModelsTest):
    DRAFT = {"draft.scoring": "scale"}

    def test_an_answer_is_rated_from_its_menu(self):
        for model in self.MODELS:
            self.endpoint.answer(model, "One.")
        self.compare()
        self.find("push button", "Rate")
        self.shows(item("push button", "Rate", description="Rate this answer from 1 to 10"))
        self.press("push button", "Rate")
        self.shows(*(item("menu item", str(value)) for value in range(1, 11)), item("menu item", "Clear rating"))
        with self.hears("Rating recorded. Keep going while the comparison is in view."):
            self.press("menu item", "8")
        self.shows(item("panel", "Sample · Brief", item("push button", "8 / 10")))


class DecisionTest(SampleTest):
    DRAFT = {
        "draft.kind": "decision",
        "draft.models": "DE300000-0000-4000-8000-000000000006",
        "draft.prompt": "A help page, where customers help themselves.",
    }

    def test_a_decision_shows_its_results_probabilities_and_choices(self):
        self.press("push button", "Compare")
        self.shows(
            item("panel", "Sample · Literal",
                 item("label", "Do the same questions come up again and again?"),
                 item("label", "First step"),
                 item("text", "Help page", read_only=True),
                 item("push button", "Top choice probabilities",
                      description="Hover or press to view the top three probabilities"))
        )

        self.press("push button", "Top choice probabilities")
        self.shows(
            item(
                "panel",
                "Choice probabilities",
                item("progress bar", "Help page 85%"),
                item("progress bar", "Neither 8%"),
                item("progress bar", "Saved replies 8%"),
            )
        )
        self.press("push button", "Top choice probabilities")
        self.lacks("panel", "Choice probabilities")

        self.press("check box", DOWN)
        self.shows(
            item(
                "dialog",
                "Choose the correct answer",
                item("label", "This correction will be saved to your dataset."),
                item("combo box", "Correct answer"),
                item("push button", "Cancel"),
                item("push button", "Save correction"),
            )
        )
        self.press("combo box", "Correct answer")
        self.press("menu item", "Neither")
        self.press("push button", "Save correction")
        self.shows(item("check box", "Clear negative rating", checked=True))
        with contextlib.closing(self.library()) as library:
            (completion,) = library.execute("SELECT completion FROM dataset").fetchone()
        self.assertEqual(json.loads(completion)["answers"]["first_step"]["choice"], "Neither")


class RunDetailTest(DemoTest):
    RUN = "DE300000-0000-4000-8000-0000000000A1"
    BATCH = "DE300000-0000-4000-8000-0000000000A2"

    @classmethod
    def prepare(cls):
        cls.fill_library("http://127.0.0.1:9/v1")
        with contextlib.closing(cls.library()) as library, library:
            library.execute("INSERT INTO batches VALUES (?, 'Nightly', 'api', 'generation', 0, 'done')", [cls.BATCH])
            library.execute(
                "INSERT INTO runs VALUES (?, 'generation', 'Which way?', 'Answer directly.', NULL, 'binary', 0, '', ?, 'api')",
                [cls.RUN, cls.BATCH],
            )
            library.execute(
                "INSERT INTO answers VALUES ('DE300000-0000-4000-8000-0000000000A3', ?, 'DE300000-0000-4000-8000-000000000001', "
                "'Sample · Brief', 'openAICompatible', 0, 'done', 'That way.', 420, 12, 3, 0, NULL, NULL, 0, NULL, NULL, NULL)",
                [cls.RUN],
            )

    def test_one_comparison_shows_what_was_asked_and_answered(self):
        self.press("push button", "Tools")
        self.press("menu item", "API batches")
        self.press("list item", self.name_of_first("list item"))
        self.shows(item("heading", "Nightly"))
        self.press("push button", "Which way?, Uncategorized, 1 models")
        self.shows(
            item("heading", "Generation"),
            item("push button", "Run a variation"),
            item("push button", "Delete"),
            item("heading", "Prompt"),
            item("text", "Which way?", read_only=True),
            item("heading", "System prompt"),
            item("text", "Answer directly.", read_only=True),
            item(
                "panel",
                "Sample · Brief",
                item("push button", "Actions for Sample · Brief", description="Details, copy, and more"),
                item("text", "That way.", read_only=True),
                item("check box", UP, checked=False),
                item("push button", "Save to dataset"),
            ),
        )


if __name__ == "__main__":
    main()

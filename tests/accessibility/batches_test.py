import contextlib
import os
import sqlite3
import time

from screen_reader import SampleTest, ScreenTest, item, main


class EmptyBatchesTest(ScreenTest):
    def test_without_batches_it_says_how_to_send_one(self):
        self.press("push button", "Tools")
        self.press("menu item", "API batches")
        self.shows(
            item("heading", "Batches"),
            item("label", "API"),
            item("label", "Batches submitted through the API show up here."),
            item("heading", "Local API"),
            item("push button", "Copy URL"),
            item("push button", "Copy token"),
            item("label", "Base URL"),
            item("text", "http://127.0.0.1:47821", read_only=True),
            item("label", "Token"),
            item("label", "No batch open"),
            item(
                "label",
                "POST /v1/batches with the token above. Finished items stay in this list, "
                "and each one opens as a comparison.",
            ),
        )


class BatchesTest(SampleTest):
    @classmethod
    def prepare(cls):
        super().prepare()
        folder = os.path.join(cls.environment["XDG_DATA_HOME"], "com.quorltest.app")
        created = time.time() - 3 * 3600
        with contextlib.closing(sqlite3.connect(os.path.join(folder, "quorl.sqlite"))) as library, library:
            library.execute(
                "INSERT INTO batches (id, name, source, kind, created_at, status)"
                " VALUES ('BA000000-0000-4000-8000-000000000001', 'Night run', 'api', 'generation', ?, 'done')",
                (created,),
            )
            library.execute(
                "INSERT INTO runs (id, kind, prompt, system_prompt, scoring_mode, created_at, batch_id, origin)"
                " VALUES ('BA000000-0000-4000-8000-000000000002', 'generation', 'Which way?', '', 'binary', ?,"
                " 'BA000000-0000-4000-8000-000000000001', 'api')",
                (created,),
            )

    def test_a_batch_opens_beside_the_list_and_each_item_is_a_button(self):
        self.press("push button", "Tools")
        self.press("menu item", "API batches")
        self.press("list item", "Night run, Generation, 1, Done, 3 hr. ago")
        self.shows(
            item(
                "list", "Batches", item("list item", "Night run, Generation, 1, Done, 3 hr. ago", selected=True)
            ),
            item("heading", "Night run"),
            item("label", "API · Generation · Done · 3 hr. ago"),
            item("push button", "Delete"),
            item(
                "list",
                "Items",
                item("push button", "Which way?, Uncategorized, 0 models", description="Open", focusable=True),
            ),
        )
        self.press("push button", "Which way?, Uncategorized, 0 models")
        self.lacks("heading", "Batches")


if __name__ == "__main__":
    main()

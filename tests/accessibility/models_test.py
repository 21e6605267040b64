from screen_reader import ScreenTest, item, main


class ModelsTest(ScreenTest):
    def setUp(self):
        self.press("push button", "Tools")
        self.press("menu item", "Models")
        self.shows(item("heading", "Models"))

    def test_the_catalogue_is_a_list_of_which_one_is_selected(self):
        self.shows(
            item("heading", "Models"),
            item("push button", "Add"),
            item(
                "list",
                "Models",
                item(
                    "list item",
                    "Zun",
                    item("unknown", "Add an API key."),
                    description="Zun · Veritor",
                    selectable=True,
                ),
                item("list item", "Claude Sonnet", description="Anthropic · Direct API", selectable=True),
                item("list item", "Codex", description="Codex · Local CLI", selectable=True),
            ),
        )
        self.press("list item", "Claude Sonnet")
        self.shows(
            item("list item", "Zun", selected=False),
            item("list item", "Claude Sonnet", selected=True),
            item("heading", "Claude Sonnet"),
        )

    def test_every_field_says_what_it_is(self):
        self.press("list item", "Nova Pro")
        self.shows(
            item("heading", "Nova Pro"),
            item("check box", "Enabled"),
            item("text", "Name", editable=True),
            item("combo box", "Provider", description="Amazon Bedrock"),
            item("text", "Model id", editable=True),
            item("text", "Region", editable=True),
            item("text", "Input $ / 1M tokens", editable=True),
            item("text", "Output $ / 1M tokens", editable=True),
            item("text", "Max output tokens", editable=True),
            item("heading", "Credentials"),
            # Qt tells no name of a field for passwords.
            item("password text", "", description="Access key"),
            item("password text", "", description="Secret key"),
            item("password text", "", description="Session token, if you use one"),
            item("push button", "Save credentials"),
            item("push button", "Remove credentials"),
            item("text", "Notes", editable=True),
            item("push button", "Test connection"),
            item("push button", "Delete model"),
        )


if __name__ == "__main__":
    main()

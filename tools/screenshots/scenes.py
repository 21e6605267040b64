"""The scenes of which `take` makes pictures, played on the real window as a screen reader's user would play them."""

import contextlib
import http.server
import json
import os
import pathlib
import sqlite3
import subprocess
import sys
import threading
import time
import traceback
import urllib.request

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests" / "accessibility"))
import screen_reader  # noqa: E402  found beside the tests
from screen_reader import Atspi, SampleTest, children_of, has_state  # noqa: E402

PICTURES = pathlib.Path(os.environ["QUORL_PICTURES"])
WIDTH, HEIGHT = os.environ["QUORL_WINDOW"].split("x")
API = "http://127.0.0.1:47821/v1"
SETTLED = 0.7  # seconds, after which every animation is over

TEXTS = {
    "long": "\n\n".join(f"{n}. " + "A paragraph of an answer that does not want to end. " * 8 for n in range(230)),
    "scripts": "مرحبا، هذه إجابة باللغة العربية مع كلمة Quorl في الوسط.\n"
    "זוהי תשובה בעברית, והיא ארוכה דיה כדי לעבור שורה.\n這是中文的回答,沒有空格,所以必須在任何字之間換行。\n"
    "これは日本語の答えです。\nहिन्दी में एक उत्तर। ภาษาไทยไม่มีช่องว่างระหว่างคำ\n"
    "👩‍👩‍👧‍👦 🏳️‍🌈 👍🏽 e\u0301 ﷽ Z͑ͫ̓a͎̱l͔g̡o",
    "word": "Donaudampfschifffahrtsgesellschaft" * 60,
}


def all_below(found):
    for child in children_of(found):
        yield child
        yield from all_below(child)


class Provider(http.server.BaseHTTPRequestHandler):
    """Answers in OpenAI's format with the text that the model is named for."""

    def do_POST(self):
        asked = json.loads(self.rfile.read(int(self.headers["content-length"])))
        body = json.dumps({"choices": [{"message": {"role": "assistant", "content": TEXTS[asked["model"]]}}]}).encode()
        self.send_response(200)
        self.send_header("content-length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Scenes(SampleTest):
    number = 0

    @classmethod
    def prepare(cls):
        super().prepare()
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Provider)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        config = pathlib.Path(cls.environment["XDG_CONFIG_HOME"], "com.quorltest.app")
        data = pathlib.Path(cls.environment["XDG_DATA_HOME"], "com.quorltest.app")
        state = pathlib.Path(cls.environment["XDG_STATE_HOME"], "com.quorltest.app")
        secret = next((config / "secrets").glob("*.json")).read_text()
        with sqlite3.connect(data / "quorl.sqlite") as library:
            cls.add_model(library, config, secret, 11, "A model of a very long name that somebody gave it, "
                          "and then some more of it", "sample-unavailable", None)
            for place, text in enumerate(TEXTS):
                cls.add_model(library, config, secret, 12 + place, f"Text · {text}", text,
                              f"http://127.0.0.1:{server.server_port}")
        library.close()
        state.mkdir()
        (state / "window.ini").write_text(f"[General]\nframe=0 0 {WIDTH} {HEIGHT}\n")

    @staticmethod
    def add_model(library, config, secret, number, name, model, endpoint):
        identifier = f"DE300000-0000-4000-8000-0000000001{number}"
        library.execute(
            "INSERT INTO models SELECT ?, ?, provider, ?, COALESCE(?, endpoint), executable_path, input_price, output_price,"
            " max_tokens, enabled, notes, ? FROM models ORDER BY sort_index LIMIT 1",
            (identifier, name, model, endpoint, number),
        )
        item = config / "secrets" / f"{identifier}.json"
        item.write_text(secret)
        item.chmod(0o600)

    def runTest(self):
        for scene in (
            self.empty_screens, self.compare, self.answers, self.decisions, self.bulk, self.batches, self.other_screens,
            self.long_texts,
        ):
            try:
                scene()
            except Exception:
                traceback.print_exc()
                self.take(f"lost-in-{scene.__name__}")
                self.key("Escape", 3)

    # The scenes

    def empty_screens(self):
        self.take("compare-at-start")
        self.go("History")
        self.take("history-empty")
        self.go("Dataset")
        self.take("dataset-empty")
        for tool in ("Performance", "API batches", "Categories", "Models"):
            self.tool(tool)
            self.take(f"{tool.lower().replace(' ', '-')}-at-start")
        self.press("push button", "Tools")
        self.take("tools-menu")
        self.press("menu item", "Motion")
        self.take("motion-menu")
        self.key("Escape", 2)

    def compare(self):
        self.compare_screen()
        self.press_help("Switch between single questions, bulk questions, or language models")
        self.take("mode-menu")
        self.key("Escape")
        self.press_help("Comparison options")
        self.take("options-generation")
        self.key("Escape")
        self.press_help("Select the models to compare")
        self.take("models-popover")
        self.key("Escape")

    def answers(self):
        self.press("push button", "Compare")
        self.take("all-running", wait=0.15)
        self.wait_for_answers()
        self.take("answers")
        self.press_first("Actions for Sample · Brief")
        self.take("card-menu")
        self.press("menu item", "Response details")
        self.take("response-details")
        self.key("Escape", 2)
        self.press_help("Choose the correct answer and save it")
        self.take("manual-correction")
        self.key("Escape")
        self.press_help("Mark answer correct and save to dataset")
        self.take("toast")
        self.press_first("Reset comparison")
        self.take("after-reset")

    def decisions(self):
        self.mode("Decision models")
        self.take("decision-composer")
        self.press("push button", "Compare")
        self.wait_for_answers()
        self.take("decision-answers")
        self.press_first("Top choice probabilities")
        self.take("probabilities")
        self.key("Escape")
        self.press_help("Choose the correct answer and save it")
        self.take("choice-correction")
        self.key("Escape")
        self.press_first("Reset comparison")
        self.press_help("Comparison options")
        self.take("options-decision")
        self.key("Escape")
        self.press_help("Choice description and options")
        self.take("choice-popover")
        self.key("Escape")
        self.press_help("Place the answer on an ordered scale")
        self.take("score-editor")
        self.press_help("Ask a yes or no question")
        self.take("yes-no-editor")
        self.press_help("Choose one option")

    def bulk(self):
        self.mode("Bulk questions")
        self.take("bulk")
        self.press("push button", "Paste list")
        self.take("paste-sheet")
        self.key("Escape")
        self.act(self.first(lambda found: found.get_name().startswith("Run "), "run button"))
        self.take("validation")
        self.mode("Ask language models")

    def batches(self):
        models = self.ask("GET", "models")["models"]
        generation = [m["id"] for m in models if m["name"].startswith("Sample") and m["serves"] == "generation"]
        for name, category in (("Ticket triage · night run", "Support"), ("Refund policy regression", "Contracts")):
            batch = self.ask("POST", "batches", {
                "kind": "generation", "name": name, "category": category, "subcategory": "Returns", "models": generation,
                "items": [{"prompt": f"Card declined three times since Sunday, and the customer travels tomorrow. What now? ({n})"}
                          for n in range(4)]})
        self.tool("API batches")
        self.take("batches-running", wait=1)
        self.wait_for(lambda: self.ask("GET", f"batches/{batch['id']}")["status"] == "done")
        for number, item in enumerate(self.ask("GET", f"batches/{batch['id']}")["items"]):
            for answer in item["answers"]:
                if answer["state"] == "done":
                    self.ask("POST", f"answers/{answer['id']}/mark", {"accepted": number % 3 > 0, "rating": 5 + number})
        self.take("batches-done")

    def other_screens(self):
        self.go("History")
        self.take("history")
        self.press_nth("list item", 0)
        self.take("run-reopened")
        self.go("History")
        self.type_into("Search comparison history", "customer")
        self.take("history-search")
        self.key("BackSpace", 8)
        self.go("Dataset")
        self.take("dataset")
        self.press("push button", "Training set")
        self.take("dataset-open")
        self.press_nth("list item", 0)
        self.take("example-open")
        self.tool("API batches")
        self.act(self.first(lambda found: found.get_name().startswith("Card declined"), "item"))
        self.take("run-detail")
        self.tool("Performance")
        self.take("performance")
        self.press("push button", "Export CSV")
        self.take("save-dialog")
        self.key("Escape")
        self.tool("Categories")
        self.take("categories")
        self.tool("Models")
        self.press_nth("list item", 1)
        self.take("models")
        with contextlib.suppress(AssertionError):
            self.press("push button", "Delete model")
            self.take("delete-alert")
        self.key("Escape")

    def long_texts(self):
        models = self.ask("GET", "models")["models"]
        chosen = [m["id"] for m in models if m["name"].startswith(("Text", "A model"))]
        self.ask("POST", "batches", {
            "kind": "generation", "name": "Texts of any kind " + TEXTS["word"][:80], "models": chosen,
            "items": [{"prompt": TEXTS["scripts"]}, {"prompt": TEXTS["word"]}, {"prompt": "Why is this so long?"}]})
        self.wait_for(lambda: self.ask("GET", "batches")["batches"][0]["status"] == "done")
        self.tool("API batches")
        self.take("long-batch")
        self.go("History")
        self.take("long-history")
        for place in range(2):
            self.go("History")
            self.press_nth("list item", place)
            self.take(f"long-run-{place}")
        self.compare_screen()
        self.take("long-compare")

    # How they are played

    def take(self, name, wait=SETTLED):
        Scenes.number += 1
        time.sleep(wait)
        subprocess.run(["import", "-window", "root", PICTURES / f"{Scenes.number:02}-{name}.png"], check=True)

    def key(self, name, times=1):
        for _ in range(times):
            code = {"Escape": 0xFF1B, "BackSpace": 0xFF08}[name]
            Atspi.generate_keyboard_event(code, None, Atspi.KeySynthType.SYM)
            time.sleep(0.3)

    def type_into(self, name, text):
        self.wait_for(lambda: self.found(lambda found: found.get_name() == name and has_state(found, "editable")))[0].grab_focus()
        Atspi.generate_keyboard_event(0, text, Atspi.KeySynthType.STRING)

    def found(self, fits):
        self.application.clear_cache()
        fitting = [found for found in all_below(self.application) if fits(found)]
        # What one would have to scroll to counts as not to be seen.
        return [found for found in fitting if has_state(found, "visible")] or fitting

    def wait_for_answers(self):
        self.first(lambda found: found.get_name() == "Save to dataset", "answer")
        self.wait_for(lambda: not self.found(lambda found: found.get_name().startswith("Waiting for a response from ")))

    def press(self, role, name):
        self.act(self.first(lambda found: (found.get_role_name(), found.get_name()) == (role, name), name))

    def first(self, fits, what):
        return self.wait_for(lambda: self.found(fits), lambda: f"no {what}")[0]

    def act(self, found):
        if has_state(found, "focusable"):
            found.grab_focus()  # which brings it into sight
            time.sleep(0.2)
        names = [Atspi.Action.get_action_name(found, place) for place in range(Atspi.Action.get_n_actions(found))]
        Atspi.Action.do_action(found, names.index("Press"))

    def press_first(self, *names):
        self.act(self.first(lambda found: found.get_name() in names, names))

    def press_help(self, text):
        self.act(self.first(lambda found: text in (found.get_description(), found.get_name()), text))

    def press_nth(self, role, place):
        def look():
            items = self.found(lambda found: found.get_role_name() == role)
            return items[place] if len(items) > place else None

        self.act(self.wait_for(look, lambda: f"no {role} {place}"))

    def go(self, title):
        self.act(self.first(lambda found: found.get_role_name() == "page tab" and found.get_name() == title, title))

    def compare_screen(self):
        self.press("push button", "Quorl")

    def tool(self, title):
        self.press("push button", "Tools")
        self.press("menu item", title)

    def mode(self, title):
        self.press_help("Switch between single questions, bulk questions, or language models")
        self.press("menu item", title)

    @classmethod
    def ask(cls, method, path, body=None):
        defaults = pathlib.Path(cls.environment["XDG_CONFIG_HOME"], "com.quorltest.app", "defaults.ini").read_text()
        token = next(line[len("api.token="):] for line in defaults.splitlines() if line.startswith("api.token="))
        request = urllib.request.Request(
            f"{API}/{path}", json.dumps(body).encode() if body else None, {"Authorization": f"Bearer {token}"}, method=method)
        with urllib.request.urlopen(request) as reply:
            return json.load(reply)


if __name__ == "__main__":
    os.environ["QUORL_PROGRAMS"] = sys.argv.pop(1)
    screen_reader.DEADLINE = 45
    PICTURES.mkdir(parents=True, exist_ok=True)
    screen_reader.unittest.main(argv=[sys.argv[0], "Scenes"])

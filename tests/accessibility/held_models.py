"""Models of the demo library that answer when a test tells them to, and not before."""

import json
import queue
import threading
from collections import defaultdict
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

from screen_reader import DEADLINE, DemoTest


class Endpoint(ThreadingHTTPServer):
    """A provider in the chat format, on loopback."""

    daemon_threads = True  # a request that is never answered goes with the test

    def __init__(self):
        super().__init__(("127.0.0.1", 0), Request)
        self.asked = defaultdict(lambda: threading.Semaphore(0))
        self.replies = defaultdict(queue.Queue)
        self.lock = threading.Lock()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    @property
    def url(self):
        return f"http://127.0.0.1:{self.server_port}/v1"

    def of(self, collection, model):
        with self.lock:
            return collection[model]

    def answer(self, model, text):
        self.of(self.replies, model).put(
            (200, {"choices": [{"message": {"content": text}}], "usage": {"prompt_tokens": 12, "completion_tokens": 3}})
        )

    def fail(self, model, message):
        self.of(self.replies, model).put((500, {"error": {"message": message}}))

    def forget(self):
        """Whoever waits for an answer now never gets one."""
        with self.lock:
            self.replies.clear()

    def wait_until_asked(self, *models):
        for model in models:
            assert self.of(self.asked, model).acquire(timeout=DEADLINE), f"{model} was not asked"


class Request(BaseHTTPRequestHandler):
    def do_POST(self):
        body = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
        self.server.of(self.server.asked, body["model"]).release()
        status, reply = self.server.of(self.server.replies, body["model"]).get()
        content = json.dumps(reply).encode()
        self.send_response(status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content)

    def log_message(self, *_):
        """The program under test says what has to be said."""


class HeldModelsTest(DemoTest):
    """With four models chosen, of "Sample · Brief" and so on, which are held."""

    MODELS = ("sample-brief", "sample-thorough", "sample-steps", "sample-skeptic")

    @classmethod
    def prepare(cls):
        cls.endpoint = Endpoint()
        cls.addClassCleanup(cls.endpoint.server_close)
        cls.addClassCleanup(cls.endpoint.shutdown)
        cls.fill_library(cls.endpoint.url)

    def compare(self):
        self.press("push button", "Compare")
        self.endpoint.wait_until_asked(*self.MODELS)

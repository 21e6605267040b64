#!/usr/bin/env python3
"""Lets many clients use Quorl's local API at once, and looks whether everything that they were told holds.

The clients post batches, wait for answers and judge them, against a Quorl of its own with a library of its own and the
sample endpoint behind it. Quorl is ended by SIGKILL at the end, with --kill-every at random moments as well, and
started again. After each start:
  - every batch that was answered 202 is in the library, with all its runs and answers,
  - no batch is there in part,
  - every answer that a client has seen done is as it was, and judged as the client was told,
  - every answer that was still to come has failed with the sentence for it,
  - SQLite finds the library whole.
Every reply has to be complete JSON. Exits with 1 if anything of this does not hold.
"""

import argparse
import http.client
import json
import os
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

PORT = 47821
CUT_OFF = "Quorl closed before this response finished."
SKIPPED = 77  # what ctest is told where there is nothing to run
JUDGEMENTS = ("chosen_correct", "accepted", "rating", "dataset_id")


class CutShort(Exception):
    """Quorl was killed before the whole reply was here."""


class Violation(Exception):
    """Something that must never be."""


class Quorl:
    """The program under test, its library and the endpoint behind its models."""

    def __init__(self, options, folder):
        self.program = options.quorl
        self.folder = folder
        self.library = folder / "data/com.quorltest.app/quorl.sqlite"
        self.environment = {
            "HOME": str(folder), "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen",
            "DBUS_SESSION_BUS_ADDRESS": "disabled:", "XDG_RUNTIME_DIR": str(folder / "runtime"),
            **{f"XDG_{name.upper()}_HOME": str(folder / name) for name in ("config", "data", "state", "cache")}}
        for name in ("runtime", "config", "data", "state", "cache"):
            (folder / name).mkdir(mode=0o700)
        self.endpoint = subprocess.Popen([options.endpoint, "--until-stdin-closes"], stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE, text=True)
        url = self.endpoint.stdout.readline().strip()
        subprocess.run([options.demo_library, "--endpoint", url], env=self.environment, check=True,
                       stdout=subprocess.DEVNULL)
        # The models of the demo take their time; a soak wants answers. A name that the endpoint does not know answers at once.
        with sqlite3.connect(self.library) as library:
            library.execute("UPDATE models SET model_identifier = 'at-once-' || rowid WHERE provider = 'openAICompatible'")
        library.close()
        self.process = None
        self.token = ""

    def start(self):
        # A soak that is killed leaves no Quorl behind.
        self.process = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", self.program], env=self.environment)
        settings = self.folder / "config/com.quorltest.app/defaults.ini"
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline:
            if self.process.poll() is not None:
                raise Violation(f"Quorl ended by itself with {self.process.returncode}.")
            # The token is in the settings a moment after its making, and its first line may be cut in two by a kill.
            lines = settings.read_text().splitlines() if settings.exists() else []
            self.token = next((line.removeprefix("api.token=") for line in lines if line.startswith("api.token=")), "")
            try:
                if self.ask("GET", "/v1/health")[0] == 200:
                    return
            except CutShort:
                pass
            time.sleep(0.05)
        raise Violation("Quorl does not answer.")

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    def close(self):
        if self.process and self.process.poll() is None:
            self.kill()
        self.endpoint.stdin.close()
        self.endpoint.wait(timeout=60)

    def ask(self, method, path, body=None):
        """Status and value of the reply to one request."""
        connection = http.client.HTTPConnection("127.0.0.1", PORT, timeout=60)
        try:
            connection.request(method, path, None if body is None else json.dumps(body),
                               {"Authorization": f"Bearer {self.token}"})
            reply = connection.getresponse()
            status, text = reply.status, reply.read()
        except (OSError, http.client.HTTPException) as error:
            raise CutShort(f"{method} {path}: {error!r}") from error
        finally:
            connection.close()
        try:
            return status, json.loads(text)
        except ValueError as error:
            raise Violation(f"{method} {path}: {status} with a body that is not JSON: {text[:200]!r}") from error


class Gate:
    """Lets the clients through as long as Quorl runs, and tells when none of them is under way."""

    def __init__(self):
        self.condition = threading.Condition()
        self.is_open = False
        self.inside = 0

    def open(self):
        with self.condition:
            self.is_open = True
            self.condition.notify_all()

    def close(self):
        with self.condition:
            self.is_open = False

    def wait_until_empty(self):
        with self.condition:
            self.condition.wait_for(lambda: self.inside == 0)

    def __enter__(self):
        with self.condition:
            self.condition.wait_for(lambda: self.is_open)
            self.inside += 1

    def __exit__(self, *_):
        with self.condition:
            self.inside -= 1
            self.condition.notify_all()


class Client(threading.Thread):
    """One client: its own batches, and what it was told of them."""

    def __init__(self, number, quorl, gate, deadline, seed):
        super().__init__(name=f"client {number}", daemon=True)
        self.number = number
        self.quorl = quorl
        self.gate = gate
        self.deadline = deadline
        self.random = random.Random(f"{seed} {number}")
        self.models = []
        self.batches = {}  # id: number of items
        self.done = {}  # id of an answer that was seen done: what it was then, with its judgements as last told
        self.doubtful = set()  # answers with a judgement under way when Quorl was killed
        self.requests = 0
        self.cut_short = 0
        self.problem = None

    def run(self):
        try:
            while time.monotonic() < self.deadline:
                with self.gate:
                    self.act()
        except Exception as problem:  # pylint: disable=broad-except
            # A thread's exception would be printed and forgotten.
            self.problem = problem

    def act(self):
        """One thing that a client does; whether a kill may cut it short is only known afterwards."""
        try:
            self.random.choices((self.post, self.look, self.judge, self.list), (3, 4, 6, 1))[0]()
        except CutShort as cut:
            self.cut_short += 1
            if self.gate.is_open:
                # The kill closes the gate first, so this was none.
                raise Violation(f"A reply was cut short: {cut}") from cut

    def ask(self, method, path, expected, body=None):
        self.requests += 1
        status, value = self.quorl.ask(method, path, body)
        if status != expected:
            raise Violation(f"{method} {path}: {status} {value}")
        return value

    def post(self):
        # Ahead of the queue by too much, no answer would ever be done.
        if len(self.batches) - self.finished() > 3:
            return self.look()
        items = self.random.randint(1, 4)
        models = self.random.randint(1, 2)
        name = f"{items} items, {models} models"
        body = {"kind": "generation", "name": name, "models": self.model_ids()[:models],
                "items": [{"prompt": f"Client {self.number} asks {place}."} for place in range(items)]}
        summary = self.ask("POST", "/v1/batches", 202, body)
        if summary["items"] != items or summary["name"] != name:
            raise Violation(f"Posted {name}, told {summary}")
        self.batches[summary["id"]] = False

    def finished(self):
        return sum(self.batches.values())

    def model_ids(self):
        if not self.models:
            models = self.ask("GET", "/v1/models", 200)["models"]
            self.models = [model["id"] for model in models
                           if model["ready"] and model["provider"] == "openAICompatible"]
        return self.models

    def look(self):
        waiting = [batch for batch, is_finished in self.batches.items() if not is_finished]
        if waiting:
            self.show(self.random.choice(waiting))

    def show(self, batch):
        payload = self.ask("GET", f"/v1/batches/{batch}", 200)
        for item in payload["items"]:
            for answer in item["answers"]:
                if answer["state"] == "done":
                    self.done[answer["id"]] = {**answer, "batch": batch}
        self.batches[batch] = payload["status"] == "done"
        return payload

    def list(self):
        listed = {batch["id"] for batch in self.ask("GET", "/v1/batches", 200)["batches"]}
        if missing := self.batches.keys() - listed:
            raise Violation(f"Batches are not listed: {missing}")

    def judge(self):
        if not self.done:
            return
        answer = self.random.choice(list(self.done.values()))
        path = f"/v1/answers/{answer['id']}"
        of_item = [other for other in self.done.values() if other["batch"] == answer["batch"]]
        what = self.random.choice(("rating", "accepted", "chosen_correct", "save", "remove"))
        self.doubtful.update(other["id"] for other in of_item)
        if what == "save":
            self.ask("POST", path + "/dataset", 200)
        elif what == "remove":
            self.ask("DELETE", path + "/dataset", 200)
        else:
            value = self.random.choice({"rating": (1, 5, 10, None), "accepted": (True, False, None),
                                        "chosen_correct": (True, False)}[what])
            told = self.ask("POST", path + "/mark", 200, {what: value})
            if told[what] != value:
                raise Violation(f"Marked {what} {value}, told {told}")
        self.show(answer["batch"])
        self.doubtful.difference_update(other["id"] for other in of_item)


def rows(library, query):
    cursor = library.execute(query)
    names = [column[0] for column in cursor.description]
    return [dict(zip(names, row)) for row in cursor]


class Check:
    """Compares the library of a Quorl that has just been started with what the clients were told; none of them is under way."""

    def __init__(self, quorl, clients):
        self.quorl = quorl
        self.clients = clients
        self.cut_off = 0  # answers that a kill kept from coming
        self.uncounted = 0  # batches that came into the library without their reply getting through
        self.count = 0

    def run(self):
        library = sqlite3.connect(f"file:{self.quorl.library}?mode=ro", uri=True)
        try:
            self.integrity(library)
            answers = self.whole_batches(library)
            self.answers(answers)
            self.examples(library, answers)
        finally:
            library.close()
        self.count += 1

    @staticmethod
    def integrity(library):
        found = library.execute("PRAGMA integrity_check").fetchall()
        if found != [("ok",)]:
            raise Violation(f"integrity_check: {found}")

    def whole_batches(self, library):
        answers = rows(library, "SELECT * FROM answers")
        answers_of, runs_of = {}, {}
        for answer in answers:
            answers_of[answer["run_id"]] = answers_of.get(answer["run_id"], 0) + 1
        for run in rows(library, "SELECT id, batch_id FROM runs WHERE batch_id IS NOT NULL"):
            runs_of.setdefault(run["batch_id"], []).append(run["id"])
        there = {batch["id"]: batch["name"] for batch in rows(library, "SELECT id, name FROM batches")}
        for batch, name in there.items():
            items, _, models, _ = name.split()
            counts = [answers_of.get(run, 0) for run in runs_of.pop(batch, [])]
            if counts != [int(models)] * int(items):
                raise Violation(f"Batch {batch} of {name} has runs with {counts} answers.")
        if runs_of:
            raise Violation(f"Runs without their batch: {runs_of}")
        told = {batch for client in self.clients for batch in client.batches}
        if missing := told - there.keys():
            raise Violation(f"Batches that were answered 202 are not there: {missing}")
        self.uncounted = len(there) - len(told)
        return {answer["id"]: answer for answer in answers}

    def answers(self, there):
        told = {name: answer for client in self.clients for name, answer in client.done.items()}
        doubtful = {name for client in self.clients for name in client.doubtful}
        self.cut_off = 0
        for name, answer in there.items():
            if answer["state"] == "failed" and answer["error"] == CUT_OFF:
                self.cut_off += 1
            elif answer["state"] != "done":
                raise Violation(f"An answer that was still to come is {answer}")
            expected = told.pop(name, None)
            if expected is None:
                continue
            keys = ["state", "text", "latency_ms"] + ([] if name in doubtful else list(JUDGEMENTS))
            for key in keys:
                if answer[key] != expected[key]:
                    raise Violation(f"{key} of {name} is {answer[key]!r} and was {expected[key]!r}.")
        if told:
            raise Violation(f"Answers that were done are not there: {told.keys()}")

    @staticmethod
    def examples(library, answers):
        linked = {answer["dataset_id"] for answer in answers.values()} - {None}
        there = {row[0] for row in library.execute("SELECT id FROM dataset")}
        if linked != there:
            raise Violation(f"Examples and the answers that name them differ: {linked ^ there}")


def soak(options, quorl):
    gate = Gate()
    deadline = time.monotonic() + options.seconds
    clients = [Client(number, quorl, gate, deadline, options.seed) for number in range(options.clients)]
    check = Check(quorl, clients)
    chance = random.Random(options.seed)
    kills = 0

    quorl.start()
    for client in clients:
        client.start()
    gate.open()
    while time.monotonic() < deadline and not any(client.problem for client in clients):
        pause = chance.expovariate(1 / options.kill_every) if options.kill_every else options.seconds
        time.sleep(max(0.0, min(pause, deadline - time.monotonic())))
        if not options.kill_every or time.monotonic() >= deadline:
            break
        if quorl.process.poll() is not None:
            raise Violation(f"Quorl ended by itself with {quorl.process.returncode}.")
        gate.close()
        quorl.kill()
        kills += 1
        gate.wait_until_empty()
        quorl.start()
        check.run()
        for client in clients:
            client.doubtful.clear()
            for batch in client.batches:
                client.show(batch)  # what is there now is what counts from here on
        gate.open()
    for client in clients:
        client.join()
    problems = [f"{client.name}: {client.problem!r}" for client in clients if client.problem]
    if not problems:
        quorl.kill()
        kills += 1
        quorl.start()
        check.run()

    print(f"{options.clients} clients, {options.seconds:g} s, seed {options.seed}")
    print(f"requests {sum(client.requests for client in clients)}, of which a kill cut short "
          f"{sum(client.cut_short for client in clients)}")
    print(f"batches {sum(len(client.batches) for client in clients)}, and {check.uncounted} more whose reply was cut short")
    print(f"answers seen done {sum(len(client.done) for client in clients)}, failed because Quorl ended {check.cut_off}")
    print(f"kills {kills}, checks {check.count}, losses {len(problems)}")
    return problems


def own_network():
    """Starts this script again in a network of its own, where the port is free; goes on here where that is not allowed."""
    for command in (["unshare", "--net"], ["unshare", "--net", "--map-root-user"]):
        if subprocess.run([*command, "ip", "link", "set", "lo", "up"], stderr=subprocess.DEVNULL, check=False).returncode == 0:
            os.execvp(command[0], [*command, "sh", "-c", 'ip link set lo up && exec "$@"', "sh", sys.executable, *sys.argv,
                                   "--network", "given"])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--quorl", default="build/debug/quorl")
    parser.add_argument("--endpoint", default="build/debug/quorl-sample-endpoint")
    parser.add_argument("--demo-library", default="build/debug/quorl-demo-library")
    parser.add_argument("--clients", type=int, default=10)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--kill-every", type=float, default=0, help="seconds between kills, on average; 0 for none")
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1_000_000))
    parser.add_argument("--network", choices=["own", "given"], default="own")
    options = parser.parse_args()
    for program in (options.quorl, options.endpoint, options.demo_library):
        if not shutil.which(program):
            print(f"{program} is not there: build it first.", file=sys.stderr)
            return SKIPPED
    if options.network == "own":
        own_network()

    with tempfile.TemporaryDirectory(prefix="quorl-soak.") as folder:
        quorl = Quorl(options, Path(folder))
        try:
            problems = soak(options, quorl)
        except Violation as violation:
            problems = [str(violation)]
        finally:
            quorl.close()
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())

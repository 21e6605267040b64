"""Holds the documents of the local API against a server that runs.

DocumentTest.py Structure|OpenAPI|CurlLines --subject PROGRAM --documents FOLDER
"""

import argparse
import http.client
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
import uuid
from pathlib import Path

import jsonschema
import yaml

arguments = None


class Subject:
    """The program behind the API, in one of the states that it can be in."""

    def __init__(self, state):
        self.process = subprocess.Popen(
            [arguments.subject, state], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        line = self.process.stdout.readline()
        if not line:
            raise RuntimeError(f"{arguments.subject} {state} did not start.")
        self.facts = json.loads(line)
        self.port = self.facts["port"]
        self.token = self.facts["token"]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.stdout.close()
        if self.process.wait(timeout=60) != 0:
            raise RuntimeError(f"The subject ended with status {self.process.returncode}.")

    def ask(self, method, path, body=b"", token=None):
        """Status, headers and body of the reply to one request."""
        token = self.token if token is None else token
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)
        try:
            try:
                connection.request(method, path, body, {"Authorization": f"Bearer {token}"})
            except OSError:
                pass  # A server that has read enough answers before everything is sent.
            reply = connection.getresponse()
            return reply.status, reply.headers, reply.read()
        finally:
            connection.close()


def load_openapi():
    with open(Path(arguments.documents) / "openapi.yaml", encoding="utf-8") as file:
        return yaml.safe_load(file)


def target_of(reference, document):
    """What a reference names; it has to be something in the document itself."""
    target = document
    for key in reference.removeprefix("#/").split("/"):
        target = target[key]
    return target


def inlined(schema, document):
    """The schema with what its references name put in their places; none of them leads back to itself."""
    if isinstance(schema, list):
        return [inlined(element, document) for element in schema]
    if not isinstance(schema, dict):
        return schema
    whole = {key: inlined(value, document) for key, value in schema.items() if key != "$ref"}
    if "$ref" in schema:
        whole = {**inlined(target_of(schema["$ref"], document), document), **whole}
    return whole


def values_of(key, tree):
    """What stands under that key, wherever in the tree it does."""
    if isinstance(tree, list):
        tree = dict(enumerate(tree))
    if isinstance(tree, dict):
        if key in tree:
            yield tree[key]
        for value in tree.values():
            yield from values_of(key, value)


def subschemas(schema):
    """The schema and those inside it."""
    yield schema
    for key in ("items", "additionalProperties"):
        if isinstance(schema.get(key), dict):
            yield from subschemas(schema[key])
    for part in [*schema.get("properties", {}).values(), *schema.get("anyOf", []), *schema.get("oneOf", [])]:
        yield from subschemas(part)


def error_texts(schema):
    """Each of the errors that a reply's schema tells, as a schema of its own."""
    error = schema.get("properties", {}).get("error")
    if error is None or "error" not in schema.get("required", []):
        return []
    found = []
    for alternative in error.get("anyOf", [error]):
        if "enum" in alternative:
            found += [{"const": text} for text in alternative["enum"]]
        else:
            found.append(alternative)
    return found


def holds(schema, value):
    return jsonschema.Draft202012Validator(schema).is_valid(value)


class Structure(unittest.TestCase):
    """docs/openapi.yaml is a document of OpenAPI 3.1, whether or not what it tells is true."""

    METHODS = {"get", "post", "delete", "options"}
    # JSON Schema takes any other word for a remark, and so a misspelt one.
    KEYWORDS = {"$ref", "description", "default", "type", "const", "enum", "pattern", "minLength", "minimum", "maximum",
                "items", "minItems", "maxItems", "properties", "required", "additionalProperties", "minProperties",
                "maxProperties", "anyOf", "oneOf"}

    @classmethod
    def setUpClass(cls):
        cls.document = load_openapi()
        cls.operations = [(path, method, operation) for path, item in cls.document["paths"].items()
                          for method, operation in item.items() if method != "parameters"]

    def responses(self):
        for path, method, operation in self.operations:
            for status, response in operation["responses"].items():
                yield f"{method} {path} {status}", inlined(response, self.document)

    def schemas(self):
        yield from values_of("schema", self.document)
        yield from self.document["components"]["schemas"].values()

    def test_it_says_what_it_is(self):
        self.assertRegex(self.document["openapi"], r"^3\.1\.[0-9]+$")
        for key in ("title", "version"):
            self.assertIsInstance(self.document["info"][key], str)
        self.assertEqual(set(self.document),
                         {"openapi", "info", "servers", "security", "paths", "components"})

    def test_every_reference_leads_to_something(self):
        for reference in values_of("$ref", self.document):
            with self.subTest(reference=reference):
                self.assertTrue(reference.startswith("#/components/"))
                self.assertIsInstance(target_of(reference, self.document), dict)

    def test_every_component_is_used(self):
        references = set(values_of("$ref", self.document))
        for kind, components in self.document["components"].items():
            for name in components:
                with self.subTest(kind=kind, name=name):
                    is_named = f"`{name}`" in self.document["info"]["description"]
                    is_required = kind == "securitySchemes" and {name: []} in self.document["security"]
                    self.assertTrue(f"#/components/{kind}/{name}" in references or is_named or is_required)

    def test_every_schema_is_one(self):
        for schema in self.schemas():
            with self.subTest(schema=schema):
                jsonschema.Draft202012Validator.check_schema(schema)
                for part in subschemas(schema):
                    self.assertLessEqual(set(part), self.KEYWORDS)
                    re.compile(part.get("pattern", ""))
                    if "default" in part:
                        self.assertTrue(holds(inlined(part, self.document), part["default"]))

    def test_every_path_names_its_parameters(self):
        for path, item in self.document["paths"].items():
            with self.subTest(path=path):
                self.assertTrue(path.startswith("/"))
                self.assertLessEqual(set(item), self.METHODS | {"parameters"})
                parameters = inlined(item.get("parameters", []), self.document)
                self.assertEqual([parameter["name"] for parameter in parameters], re.findall(r"{(\w+)}", path))
                for parameter in parameters:
                    self.assertEqual((parameter["in"], parameter["required"]), ("path", True))
                    self.assertIn("schema", parameter)

    def test_every_operation_has_a_name_of_its_own_and_replies(self):
        names = [operation["operationId"] for _, _, operation in self.operations]
        self.assertEqual(len(names), len(set(names)))
        for path, method, operation in self.operations:
            with self.subTest(path=path, method=method):
                self.assertLessEqual(set(operation), {"operationId", "summary", "description", "security",
                                                      "requestBody", "responses"})
                self.assertTrue(operation["responses"])
                self.assertEqual("requestBody" in operation, path != "/v1/answers/{id}/dataset" and method == "post")

    def test_every_reply_has_a_status_and_words(self):
        for place, response in self.responses():
            with self.subTest(place=place):
                self.assertRegex(place, r" [1-5][0-9]{2}$")
                self.assertLessEqual(set(response), {"description", "content"})
                self.assertTrue(response["description"])
                self.assertIn(set(response.get("content", {})), (set(), {"application/json"}))


class OpenAPI(unittest.TestCase):
    """Every reply is as docs/openapi.yaml tells it, and all that it tells has been a reply."""

    @classmethod
    def setUpClass(cls):
        document = load_openapi()
        cls.document = inlined(document, document)
        cls.replies = []  # path as documented, method, status, body
        cls.collect()

    @classmethod
    def collect(cls):
        with Subject("working") as subject:
            cls.working = subject.facts
            cls.refuse_and_preflight(subject)
            cls.read(subject)
            cls.create(subject)
            cls.judge(subject)
        with Subject("modelless") as subject:
            cls.request(subject, "GET", "/v1/models")
            cls.request(subject, "GET", "/v1/batches")
            for kind in ("decision", "generation"):
                cls.request(subject, "POST", "/v1/batches", {"kind": kind, "items": [{"prompt": "Up?"}]})
        for state in ("closed", "starting"):
            with Subject(state) as subject:
                for path, method in cls.operations():
                    # To a server without a model a preflight is a request like any other.
                    cls.request(subject, method, path)

    @classmethod
    def operations(cls):
        return [(path, method.upper()) for path, operations in cls.document["paths"].items()
                for method in operations if method != "parameters"]

    @classmethod
    def request(cls, subject, method, path, body=b"", id=None, token=None):
        """Asks at a documented path with that id, and notes the reply."""
        if not isinstance(body, bytes):
            body = json.dumps(body).encode()
        status, headers, reply = subject.ask(method, path.replace("{id}", id or str(uuid.uuid4())), body, token)
        if headers["Content-Type"] != "application/json; charset=utf-8":
            raise AssertionError(headers["Content-Type"])
        value = json.loads(reply) if reply else None
        cls.replies.append((path, method, status, value, body))
        return status, value

    @classmethod
    def refuse_and_preflight(cls, subject):
        for path, method in cls.operations():
            cls.request(subject, method, path, token="wrong")
            cls.request(subject, method, path, b"x" * 8_000_001)

    @classmethod
    def read(cls, subject):
        cls.request(subject, "GET", "/v1/health")
        cls.request(subject, "GET", "/v1/models")
        cls.request(subject, "GET", "/v1/batches")
        cls.request(subject, "GET", "/v1/batches/{id}", id=subject.facts["batch"])
        cls.request(subject, "GET", "/v1/batches/{id}", id=subject.facts["batch"].lower())
        cls.request(subject, "GET", "/v1/batches/{id}")
        cls.request(subject, "GET", "/v1/batches/{id}", id="none")

    @classmethod
    def create(cls, subject):
        def post(body):
            return cls.request(subject, "POST", "/v1/batches", body)

        def ask(**changes):
            return post({"kind": "generation", "items": [{"prompt": "Up?"}], **changes})

        def decide(questions, state="A lamp."):
            return post({"items": [{"state": state, "questions": questions}]})

        def choose(*options):
            return decide({"q": {"type": "choice", "instructions": "Which?", "criteria": list(options)}})

        noul = {"type": "noul", "instructions": "Is it so?"}
        post(b"no JSON")
        post([])
        ask(kind="x")
        ask(items=[])
        ask(items=[{}, 7])
        ask(items=[{"prompt": "Up?"}] * 201)
        ask(subcategory="Refunds")
        for names in (7, [7], "Nobody", "Twin", "Sample off", "Sample literal", "Sample keyless"):
            ask(models=names)
        post({"models": "Sample brief", "items": [{"state": "A lamp."}]})
        post({"models": "Sample keyless", "items": [{"state": "A lamp."}]})
        ask(items=[{"prompt": "Up?"}, {"prompt": " "}])
        decide(None)
        decide({"q": {"type": "score", "instructions": "How much?", "criteria": ["low"]}})
        decide({"q": noul}, state=" ")
        decide({f"q{number}": noul for number in range(33)})
        choose("one", " ")
        choose(*(str(number) for number in range(65)))
        choose("one", "one ")
        ask(name="Refused")

        accepted = [
            {"kind": "generation", "name": "Both", "items": [{"prompt": "Up?"}, {"state": "Down?", "system": "Briefly."}],
             "system": "Answer.", "models": ["sample brief", "sample-thorough"], "scoring": "scale",
             "category": "Support", "subcategory": "Refunds", "other": 7},
            {"items": [{"state": "A lamp.", "questions": {
                "q": {"type": "choice", "instructions": "Which?", "criteria": {"one": "first", "two": "second"}},
                "r": {"type": "score", "instructions": "How much?", "criteria": ["low", "high"]}, "s": noul}}]},
            {"kind": "generation", "items": [{"prompt": "Up?"}], "models": "Sample brief"},
        ]
        for body in accepted:
            status, summary = post(body)
            if status != 202:
                raise AssertionError(summary)
            path = f"/v1/batches/{summary['id']}"
            while summary["status"] != "done":
                summary = json.loads(subject.ask("GET", path)[2])
            cls.request(subject, "GET", "/v1/batches/{id}", id=summary["id"])

    @classmethod
    def judge(cls, subject):
        done, running, failed, empty = (subject.facts[name] for name in ("done", "running", "failed", "empty"))
        for body in (b"no JSON", b"{}", b'{"accepted":1}', b'{"rating":11}',
                     b'{"chosen_correct":true}', b'{"accepted":false,"rating":7}', b'{"chosen_correct":"yes"}',
                     b'{"accepted":null,"rating":null}'):
            cls.request(subject, "POST", "/v1/answers/{id}/mark", body, done)
        for method, path in (("POST", "/v1/answers/{id}/mark"), ("POST", "/v1/answers/{id}/dataset"),
                             ("DELETE", "/v1/answers/{id}/dataset")):
            for answer in (done, running, failed, empty, None, "none"):
                cls.request(subject, method, path, b'{"rating":5}', answer)
            if method == "POST":
                cls.request(subject, "GET", "/v1/batches/{id}", id=subject.facts["batch"])

        for method, path in (("POST", "/v1/health"), ("GET", "/nowhere?token=1"), ("GET", f"/v1/answers/{done}/dataset"),
                             ("get", "/v1/health"), ("PUT", "/")):
            status, _, reply = subject.ask(method, path)
            response = cls.document["components"]["responses"]["UnknownRoute"]
            schema = response["content"]["application/json"]["schema"]
            if status != 404 or not holds(schema, json.loads(reply)):
                raise AssertionError(f"{method} {path}: {status} {reply}")

    def documented(self):
        """(path, method, status) and the schema of each documented reply; none where the body is empty."""
        for path, method in self.operations():
            for status, response in self.document["paths"][path][method.lower()]["responses"].items():
                schema = response.get("content", {}).get("application/json", {}).get("schema")
                yield (path, method, int(status)), schema

    def test_every_reply_is_documented(self):
        schemas = dict(self.documented())
        for path, method, status, value, _ in self.replies:
            with self.subTest(method=method, path=path, status=status):
                self.assertIn((path, method, status), schemas, value)
                schema = schemas[path, method, status]
                if schema is None:
                    self.assertIsNone(value)
                else:
                    jsonschema.Draft202012Validator(schema).validate(value)

    def test_every_documented_status_has_been_a_reply(self):
        seen = {(path, method, status) for path, method, status, _, _ in self.replies}
        self.assertEqual({key for key, _ in self.documented()} - seen, set())

    def test_every_documented_error_has_been_a_reply(self):
        for key, schema in self.documented():
            errors = [value["error"] for path, method, status, value, _ in self.replies
                      if (path, method, status) == key and value and "error" in value]
            for text in error_texts(schema or {}):
                with self.subTest(key=key, text=text):
                    self.assertTrue(any(holds(text, error) for error in errors))

    def test_every_optional_key_has_been_there_and_has_been_missing(self):
        answers = [answer for path, _, status, value, _ in self.replies
                   if path == "/v1/batches/{id}" and status == 200 and value
                   for item in value["items"] for answer in item["answers"]]
        schema = self.document["components"]["schemas"]["Answer"]
        for key in set(schema["properties"]) - set(schema["required"]):
            with self.subTest(key=key):
                self.assertEqual({key in answer for answer in answers}, {True, False})

    def test_what_is_accepted_is_a_documented_body(self):
        for path, method, status, _, body in self.replies:
            operation = self.document["paths"][path][method.lower()]
            if "requestBody" in operation and status < 300:
                schema = operation["requestBody"]["content"]["application/json"]["schema"]
                with self.subTest(body=body[:80]):
                    # A preference that is no truth value is taken, ignored, and told to be so.
                    jsonschema.Draft202012Validator(schema).validate(json.loads(body))

    def test_schemas_are_schemas_and_leave_no_room_in_replies(self):
        def objects(schema):
            if isinstance(schema, dict):
                if schema.get("type") == "object":
                    yield schema
                for value in schema.values():
                    yield from objects(value)
            elif isinstance(schema, list):
                for element in schema:
                    yield from objects(element)

        for key, schema in self.documented():
            with self.subTest(key=key):
                if schema is None:
                    continue
                jsonschema.Draft202012Validator.check_schema(schema)
                for part in objects(schema):
                    self.assertIs(part["additionalProperties"], False)
                    self.assertLessEqual(set(part["required"]), set(part["properties"]))


class CurlLines(unittest.TestCase):
    """Every command of docs/api.md works as it is pasted."""

    def test_they_all_succeed_and_use_every_route(self):
        text = (Path(arguments.documents) / "api.md").read_text(encoding="utf-8")
        commands = "\n".join(re.findall(r"^```sh\n(.*?)^```$", text, re.MULTILINE | re.DOTALL))
        mentioned = len(re.findall(r"\bcurl ", commands))
        # None stands where it would not be tried.
        self.assertEqual(mentioned, len(re.findall(r"\bcurl .*http", text)))

        with Subject("working") as subject, tempfile.TemporaryDirectory() as home:
            settings = Path(home) / ".config/com.quorltest.app/defaults.ini"
            settings.parent.mkdir(parents=True)
            settings.write_text(f"[General]\napi.token={subject.token}\ndraft.kind=decision\n")
            # The commands as they stand, but to the port of this test; curl itself tells how each went.
            (Path(home) / ".curlrc").write_text(
                f'connect-to = "127.0.0.1:47821:127.0.0.1:{subject.port}"\n'
                'silent\nfail-with-body\nwrite-out = "%{stderr}%{method} %{url} %{http_code} %{exitcode}\\n"\n')
            environment = {"PATH": os.environ["PATH"], "HOME": home, "LC_ALL": "C.UTF-8"}
            run = subprocess.run(["bash", "-euo", "pipefail", "-c", commands], env=environment, text=True,
                                 capture_output=True, timeout=120, check=False)

        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        used = set()
        for line in run.stderr.splitlines():
            method, url, status, code = line.split()
            self.assertEqual(code, "0", line)
            self.assertTrue(status.startswith("2"), line)
            path = re.sub(r"[0-9A-F-]{36}", "{id}", url.removeprefix("http://127.0.0.1:47821"))
            used.add((method, path))
        self.assertGreaterEqual(len(run.stderr.splitlines()), mentioned)
        routes = {(method.upper(), path) for path, operations in load_openapi()["paths"].items() for method in operations
                  if method not in ("parameters", "options")}
        self.assertEqual(used, routes)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("document", choices=["Structure", "OpenAPI", "CurlLines"])
    parser.add_argument("--subject", required=True)
    parser.add_argument("--documents", required=True)
    arguments = parser.parse_args()
    unittest.main(argv=[sys.argv[0], arguments.document])

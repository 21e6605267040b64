"""What a screen reader finds in the program's window, over the bus that screen readers use.

A test of a screen is a file beside this one:

    from screen_reader import ScreenTest, item

    class HistoryTest(ScreenTest):
        def test_is_found_by_its_words(self):
            self.press("page tab", "History")
            self.shows(
                item("heading", "History"),
                item("list", "Comparisons",
                     item("list item", "return_decision", description="Bulk", focusable=True)))

Roles are AT-SPI's names. All that is expected has to stand in the window in that order; what stands between does not matter.
"""

import contextlib
import os
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  the version comes first

DEADLINE = 30  # seconds; the machine may be busy with other things


def item(role, name, *children, description=None, value=None, **states):
    """An object with that role, accessible name and text; states as AT-SPI names them, such as selected=True."""
    return Expected(role, name, children, description, value, states)


class Expected:
    def __init__(self, role, name, children, description, value, states):
        self.role = role
        self.name = name
        self.children = children
        self.description = description
        self.value = value
        self.states = states

    def __str__(self):
        states = "".join(f", {state}={value}" for state, value in self.states.items())
        return f'{self.role} "{self.name}"{states}'

    def fits(self, found):
        return (
            found.get_role_name() == self.role
            and found.get_name() == self.name
            and self.description in (None, found.get_description())
            and (self.value is None or self.value == text_of(found))
            and all(has_state(found, state) == value for state, value in self.states.items())
        )


def has_state(found, state):
    return found.get_state_set().contains(getattr(Atspi.StateType, state.upper()))


def text_of(found):
    return Atspi.Text.get_text(found, 0, -1)


def children_of(found):
    for place in range(found.get_child_count()):
        child = found.get_child_at_index(place)
        if child:  # gone since it was counted
            yield child


def below(found):
    """All that is shown below, in reading order."""
    for child in children_of(found):
        if has_state(child, "showing") or child.get_role_name() in ("filler", "panel", "unknown"):
            yield child
        yield from below(child)


def find(expected, candidates):
    """The first candidate that fits, with its children in order below it. The candidates behind it are left."""
    for found in candidates:
        if expected.fits(found) and find_all(expected.children, below(found)) is None:
            return found
    return None


def find_all(expected, candidates):
    """The first of what is expected that is missing."""
    for each in expected:
        if find(each, candidates) is None:
            return each
    return None


def iterate():
    while GLib.MainContext.default().iteration(False):
        pass


class ScreenTest(unittest.TestCase):
    """The program, started anew for each class, on a library of its first start."""

    @classmethod
    def setUpClass(cls):
        session = tempfile.TemporaryDirectory()
        cls.addClassCleanup(session.cleanup)
        cls.environment = os.environ | {
            f"XDG_{kind}_HOME": os.path.join(session.name, kind.lower()) for kind in ("CONFIG", "DATA", "STATE")
        }
        for kind in ("CONFIG", "DATA", "STATE"):
            os.mkdir(cls.environment[f"XDG_{kind}_HOME"])
        cls.prepare()
        cls.run_program()

    @classmethod
    def run_program(cls):
        cls.program = cls.start("quorl")
        cls.application = cls.wait_for(cls.find_application)

    @classmethod
    def prepare(cls):
        """Before the program starts."""

    @classmethod
    def start(cls, name, *arguments, **options):
        """One of the programs of the build, which ends with the class."""
        program = subprocess.Popen(
            [os.path.join(os.environ["QUORL_PROGRAMS"], name), *arguments], env=cls.environment, **options
        )
        cls.addClassCleanup(cls.end, program)
        return program

    @classmethod
    def end(cls, program):
        program.terminate()
        program.communicate(timeout=DEADLINE)

    @classmethod
    def find_application(cls):
        assert cls.program.poll() is None, "the program has ended by itself"
        for application in children_of(Atspi.get_desktop(0)):
            if application.get_process_id() == cls.program.pid and application.get_child_count() > 0:
                return application
        return None

    @classmethod
    def wait_for(cls, look, message=lambda: "the deadline is over"):
        """What `look` gives as soon as it gives something."""
        end = time.monotonic() + DEADLINE
        while True:
            iterate()
            with contextlib.suppress(GLib.Error):  # an object that goes while one looks at it
                if found := look():
                    return found
            if time.monotonic() > end:
                raise AssertionError(message())
            time.sleep(0.05)

    def everything(self):
        self.application.clear_cache()  # what the library remembers may be over
        return below(self.application)

    def find(self, role, name):
        expected = item(role, name)
        return self.wait_for(
            lambda: find(expected, self.everything()), lambda: f"no {expected} in\n{self.picture()}"
        )

    def shows(self, *expected):
        """Waits until all of it is there, in that order."""
        missing = None

        def look():
            nonlocal missing
            missing = find_all(expected, self.everything())
            return missing is None

        self.wait_for(look, lambda: f"no {missing}, in its place, in\n{self.picture()}")

    def lacks(self, role, name):
        """Waits until it is gone."""
        expected = item(role, name)
        self.wait_for(lambda: find(expected, self.everything()) is None, lambda: f"{expected} is still there")

    def press(self, role, name):
        self.press_any(role, name)

    def press_any(self, role, *names):
        """The one of them that is there."""

        def look():
            for name in names:
                if found := find(item(role, name), self.everything()):
                    count = Atspi.Action.get_n_actions(found)
                    actions = [Atspi.Action.get_action_name(found, place) for place in range(count)]
                    self.assertIn("Press", actions, f"{role} {name}")
                    return found, actions.index("Press")
            return None

        found, action = self.wait_for(look, lambda: f"no {role} {names} in\n{self.picture()}")
        Atspi.Action.do_action(found, action)

    def write(self, role, name, text):
        """In the place of what stands there."""
        field = self.find(role, name)
        self.assertTrue(Atspi.EditableText.set_text_contents(field, text), f"{role} {name}")

    def name_of_first(self, role):
        """For what is named after the time that has passed."""
        return self.wait_for(
            lambda: next((each.get_name() for each in self.everything() if each.get_role_name() == role), None),
            lambda: f"no {role} in\n{self.picture()}",
        )

    def text_of(self, role, name):
        field = self.find(role, name)
        return Atspi.Text.get_text(field, 0, Atspi.Text.get_character_count(field))

    @contextlib.contextmanager
    def hears(self, words):
        """Waits until a notification with these words has come into sight while the block ran or since."""
        heard = []

        def listen(event):
            with contextlib.suppress(GLib.Error):  # something else, and gone since
                if event.detail1 and event.source.get_role_name() == "notification":
                    heard.append(event.source.get_name())

        listener = Atspi.EventListener.new(listen)
        listener.register("object:state-changed:showing")
        try:
            yield
            self.wait_for(lambda: words in heard, lambda: f'heard {heard} and not "{words}"')
        finally:
            listener.deregister("object:state-changed:showing")

    def picture(self):
        """The tree as text."""
        self.application.clear_cache()
        lines = []

        def draw(found, depth):
            lines.append(f'{"  " * depth}{found.get_role_name()} "{found.get_name()}"')
            for child in children_of(found):
                draw(child, depth + 1)

        draw(self.application, 0)
        return "\n".join(lines)


class DemoTest(ScreenTest):
    """The program on the demo library, whose models are at an endpoint."""

    DRAFT = {}  # in place of what the demo asks, by the keys of the settings

    @classmethod
    def fill_library(cls, url):
        library = cls.start("quorl-demo-library", "--endpoint", url)
        assert library.wait(DEADLINE) == 0
        settings = os.path.join(cls.environment["XDG_CONFIG_HOME"], "com.quorltest.app", "defaults.ini")
        with open(settings, "a", encoding="utf-8") as file:  # of the same key the last one counts
            file.writelines(f'{key}="{value}"\n' for key, value in cls.DRAFT.items())


    @classmethod
    def library(cls):
        return sqlite3.connect(os.path.join(cls.environment["XDG_DATA_HOME"], "com.quorltest.app", "quorl.sqlite"))


class SampleTest(DemoTest):
    """With sample models, which answer."""

    @classmethod
    def prepare(cls):
        endpoint = cls.start(
            "quorl-sample-endpoint", "--until-stdin-closes", stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
        )
        cls.fill_library(endpoint.stdout.readline().strip())


def main():
    """Runs the tests of the file it is called from: FILE FOLDER, the folder being that of the built programs"""
    os.environ["QUORL_PROGRAMS"] = sys.argv.pop(1)
    unittest.main(module="__main__")

"""What becomes of answers under way when the program is ended."""

import contextlib
import ctypes
import signal
import time

from held_models import HeldModelsTest
from screen_reader import DEADLINE, item, main

CUT_OFF = "Quorl closed before this response finished."


class X11ClientMessage(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int),
        ("serial", ctypes.c_ulong),
        ("send_event", ctypes.c_int),
        ("display", ctypes.c_void_p),
        ("window", ctypes.c_ulong),
        ("message_type", ctypes.c_ulong),
        ("format", ctypes.c_int),
        ("data", ctypes.c_long * 5),
        ("rest", ctypes.c_long * 24),  # of the union of all events
    ]


class X11:
    """As much of it as a window manager needs to close a window."""

    CLIENT_MESSAGE = 33

    def __init__(self):
        self.library = ctypes.CDLL("libX11.so.6")
        for name, result in {"XOpenDisplay": ctypes.c_void_p, "XInternAtom": ctypes.c_ulong}.items():
            getattr(self.library, name).restype = result
        self.library.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.library.XOpenDisplay(None))

    def atom(self, name):
        return self.library.XInternAtom(self.display, name.encode(), False)

    def windows(self):
        """All at the top, from the one at the back to that in front."""
        root, parent = ctypes.c_ulong(), ctypes.c_ulong()
        found, count = ctypes.POINTER(ctypes.c_ulong)(), ctypes.c_uint()
        self.library.XQueryTree(
            self.display,
            ctypes.c_ulong(self.library.XDefaultRootWindow(self.display)),
            *map(ctypes.byref, (root, parent, found, count)),
        )
        return [found[place] for place in range(count.value)]

    def name_of(self, window):
        name = ctypes.c_char_p()
        self.library.XFetchName(self.display, ctypes.c_ulong(window), ctypes.byref(name))
        return name.value

    def close(self, window):
        message = X11ClientMessage(type=self.CLIENT_MESSAGE, window=window, format=32)
        message.message_type = self.atom("WM_PROTOCOLS")
        message.data[0] = self.atom("WM_DELETE_WINDOW")
        self.library.XSendEvent(self.display, ctypes.c_ulong(window), False, 0, ctypes.byref(message))
        self.library.XFlush(self.display)


class EndingTest:
    """Ends the program while three of four answers are under way, and starts it again."""

    def read(self, statement):
        with contextlib.closing(self.library()) as library:
            return library.execute(statement).fetchall()

    def end_and_time(self):
        start = time.monotonic()
        self.end_program()
        status = self.program.wait(DEADLINE)
        return status, time.monotonic() - start

    def test_nothing_is_lost_and_the_next_start_says_what_was_cut_off(self):
        self.compare()
        self.endpoint.answer("sample-brief", "One.")
        self.press("check box", "Mark answer correct and save to dataset")
        self.shows(item("push button", "Saved to dataset"))
        self.write("text", "Question", "What comes next?")
        self.wait_for(lambda: self.text_of("text", "Question") == "What comes next?")

        status, seconds = self.end_and_time()

        self.endpoint.forget()
        self.assertEqual(status, self.STATUS)
        self.assertLess(seconds, 10)  # whatever the models take
        self.assertEqual(self.read("PRAGMA integrity_check"), [("ok",)])
        self.assertEqual(
            self.read("SELECT state, text, accepted, dataset_id IS NOT NULL FROM answers ORDER BY position"),
            [("done", "One.", 1, 1)] + 3 * [("running", "", None, 0)],
        )
        self.assertEqual(self.read("SELECT completion, accepted FROM dataset"), [("One.", 1)])

        type(self).run_program()

        self.assertEqual(
            self.read("SELECT state, error FROM answers ORDER BY position"),
            [("done", None)] + 3 * [("failed", CUT_OFF)],
        )
        self.assertEqual(self.text_of("text", "Question"), "What comes next?")
        self.open_the_comparison()
        self.shows(
            item("panel", "Sample · Brief", item("check box", "Clear positive rating", checked=True)),
            *(
                item("panel", f"Sample · {name}", item("label", "Couldn't get an answer"), item("push button", "Retry"))
                for name in ("Thorough", "Step by step", "Skeptic")
            ),
        )
        self.press("push button", "Show error")
        self.shows(item("text", CUT_OFF))

        self.press("push button", "Done")
        self.press("push button", "Retry")
        self.endpoint.wait_until_asked("sample-thorough")
        self.endpoint.answer("sample-thorough", "Another.")
        self.shows(item("text", "Another."))

    def open_the_comparison(self):
        self.press("page tab", "History")
        self.press("list item", self.name_of_first("list item"))


class ClosedWindowTest(EndingTest, HeldModelsTest):
    STATUS = 0

    def end_program(self):
        desktop = X11()
        desktop.close(next(window for window in desktop.windows() if desktop.name_of(window) == b"Quorl"))


class TerminatedTest(EndingTest, HeldModelsTest):
    STATUS = -signal.SIGTERM

    def end_program(self):
        self.program.terminate()


if __name__ == "__main__":
    main()

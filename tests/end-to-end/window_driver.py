# SPDX-License-Identifier: GPL-3.0-or-later
"""Drives Complexion's real window on a virtual desktop: controls are found by their accessible names, mouse and keys
are real X events. Everything waits for a condition, nothing sleeps for luck.
"""

import math
import os
import signal
import subprocess
import tempfile
from pathlib import Path

from PIL import Image

from virtual_desktop import WAIT_SECONDS, output_of, wait_until

ROOT = Path(__file__).resolve().parent.parent.parent
BUILD = Path(os.environ.get("COMPLEXION_BUILD", ROOT / "build/release"))
LONGEST_CLICK_SECONDS = 0.2
EXIT_QUESTION = "All unsaved changes will be lost. Are you sure you want to exit the application?"
SAVE_SUCCESS = "Image saved successfully."
LOAD_FAILURE = "The image could not be loaded."
ANSWER_MILLISECONDS = 1000  # for a question over the accessibility bus; the library's 15 s also go to ended programs


class Complexion:
    """The program under test, with a temporary folder and a state folder of its own."""

    def __init__(self, desktop, program=BUILD / "app/complexion"):
        self.desktop = desktop
        self.program = program
        self.temporary = Path(tempfile.mkdtemp(prefix="temporary-", dir=desktop.folder))
        self.state_home = Path(tempfile.mkdtemp(prefix="state-", dir=desktop.folder))
        self.output = desktop.folder / "complexion.log"
        self.process = None
        self.environment = {}  # beyond the desktop's; None takes a variable away

    def start(self, *files, is_photo=True):
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi
        Atspi.set_timeout(ANSWER_MILLISECONDS, ANSWER_MILLISECONDS)
        self.atspi = Atspi
        environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", TMPDIR=str(self.temporary),
                           XDG_STATE_HOME=str(self.state_home))
        environment = {name: value for name, value in (environment | self.environment).items() if value is not None}
        with open(self.output, "wb") as log:
            self.process = subprocess.Popen([self.program, *map(str, files)], stdout=log, stderr=log,
                                            env=environment)
        wait_until(lambda: self.is_showing("Photo"), "the window")
        # Keys typed before it has the focus go nowhere.
        wait_until(self._takes_focus, "the window's focus")
        if files and is_photo:
            self.wait_for_photo()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process and self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
            self.process.wait()

    # Looking.

    def _application(self):
        desktop = self.atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application and application.get_process_id() == self.process.pid:
                application.set_cache_mask(self.atspi.Cache.NONE)
                return application
        return None

    def _all(self, accessible):
        yield accessible
        for index in range(accessible.get_child_count()):
            child = accessible.get_child_at_index(index)
            if child:
                yield from self._all(child)

    def find(self, name, role=None):
        """The control of that accessible name (any, when none is given) and role that is on the screen, or none."""
        if self.process.poll() is not None:
            raise AssertionError(f"the program has ended with {self.process.returncode}: {self.output.read_text()}")
        try:
            application = self._application()
            for accessible in self._all(application) if application else ():
                if name in (None, accessible.get_name()) and role in (None, accessible.get_role_name()) and \
                        accessible.get_state_set().contains(self.atspi.StateType.SHOWING):
                    return accessible
        except self._gone():
            pass  # it went while it was looked at
        return None

    def all_of(self, role):
        """All controls of a role that are on the screen."""
        return [accessible for accessible in self._all(self._application())
                if accessible.get_role_name() == role and
                accessible.get_state_set().contains(self.atspi.StateType.SHOWING)]

    def combo_box(self, label):
        """The pop-up with that label: its own name is the title that it shows."""
        def labelled():
            for box in self.all_of("combo box"):
                for relation in box.get_relation_set():
                    if relation.get_relation_type() == self.atspi.RelationType.LABELLED_BY and \
                            relation.get_target(0).get_name() == label:
                        return box
            return None
        return wait_until(labelled, f"the pop-up “{label}”")

    def focused_name(self):
        """The accessible name of the control that has the focus; its label's where it shows a value as its name. The
        chosen entries of closed pop-ups call themselves focused too, from Qt 6.8 on."""
        try:
            for accessible in self._all(self._application()):
                if accessible.get_state_set().contains(self.atspi.StateType.FOCUSED) and \
                        accessible.get_role_name() != "list item":
                    for relation in accessible.get_relation_set():
                        if relation.get_relation_type() == self.atspi.RelationType.LABELLED_BY:
                            return relation.get_target(0).get_name()
                    return accessible.get_name()
        except self._gone():
            pass  # it went while it was looked at
        return None

    def _gone(self):
        from gi.repository import GLib
        return GLib.Error

    def is_showing(self, name, role=None):
        return self.find(name, role) is not None

    def wait_for(self, name, role=None):
        return wait_until(lambda: self.find(name, role), f"“{name or role}”")

    def wait_until_gone(self, name):
        wait_until(lambda: not self.is_showing(name), f"“{name}” to go")

    def is_enabled(self, name):
        return self.wait_for(name).get_state_set().contains(self.atspi.StateType.ENABLED)

    def wait_for_photo(self):
        wait_until(lambda: self.is_enabled("Save image"), "the photo")

    def wait_for_still_picture(self):
        """Until the photo's view looks the same twice."""
        wait_until(lambda: self.photo_on_screen() == self.photo_on_screen(), "a picture that stays")

    def windows(self):
        """The numbers of the program's windows on the X server, the main one first."""
        return output_of("xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid)).split()

    def window(self):
        return self.windows()[0]

    def journals(self):
        return sorted(self.state_home.glob("complexion/*"))

    def state_images(self):
        return sorted(self.temporary.glob("**/stateImage*"))

    def _focused_process(self):
        try:
            return int(output_of("xdotool", "getwindowfocus", "getwindowpid"))
        except (subprocess.CalledProcessError, ValueError):
            return None

    def _takes_focus(self):
        """Whether the window has the focus. Otherwise asks the window manager for it, which may give none to a window that
        was there before it managed windows, and sets it without the window manager, which may also refuse."""
        if self._focused_process() == self.process.pid:
            return True
        try:
            window = self.window()
            subprocess.run(["wmctrl", "-i", "-a", window], check=True)
            if self._focused_process() != self.process.pid:
                subprocess.run(["xdotool", "windowfocus", window], check=True)
        except (subprocess.CalledProcessError, IndexError):
            pass  # it is not there yet, or not managed
        return self._focused_process() == self.process.pid

    # Acting.

    def press(self, name, role=None):
        """Clicks the middle of a control."""
        self.press_middle(self.wait_for(name, role))

    def press_middle(self, control):
        rect = control.get_extents(self.atspi.CoordType.SCREEN)
        self.click_at(rect.x + rect.width // 2, rect.y + rect.height // 2)

    def choose_effect(self, index):
        self.press_middle(self.combo_box("Effect"))
        wait_until(lambda: len(self.windows()) == 2, "the list of effects")
        self.keys("Home", *["Down"] * index, "Return")
        wait_until(lambda: len(self.windows()) == 1, "the list of effects to close")

    def screen_area(self, name, role=None):
        """Where a control stands on the screen: x, y, width, height."""
        rect = self.wait_for(name, role).get_extents(self.atspi.CoordType.SCREEN)
        return rect.x, rect.y, rect.width, rect.height

    def photo_on_screen(self, with_disc=False):
        """The photo with what lies over it, as the screen shows it. Without the edit disc: the pointer is taken away."""
        x, y, width, height = self.screen_area("Photo")
        if not with_disc:
            subprocess.run(["xdotool", "mousemove", str(x + width - 1), str(y - 8)], check=True)
        pixels = output_of("import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-",
                           text=False)
        return Image.frombytes("RGB", (width, height), pixels)

    def click_at(self, x, y):
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"], check=True)

    def drag_photo(self, dx, dy, steps=8):
        """Drags from the middle of the photo's view, longer than a click takes, by so many points in so many moves."""
        x, y, width, height = self.screen_area("Photo")
        moves = [part for _ in range(steps) for part in ("mousemove_relative", "--", str(dx // steps), str(dy // steps))]
        subprocess.run(["xdotool", "mousemove", str(x + width // 2), str(y + height // 2), "mousedown", "1",
                        *moves, "sleep", str(LONGEST_CLICK_SECONDS + 0.1), "mouseup", "1"], check=True)

    def drop(self, address):
        """Begins a drag of an address and lets it fall on the photo's view. Returns the drag, to wait for its end."""
        drag = Drag(address)
        x, y, width, height = self.screen_area("Photo")
        drag.to(x + width // 2, y + height // 2)
        return drag

    def keys(self, *keys):
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)

    def type(self, text):
        subprocess.run(["xdotool", "type", "--delay", "2", text], check=True)

    def click_photo(self, x, y, width, height):
        """Clicks on pixel (x, y), counted from the top left, of the fitted photo of that size. Returns the pixel that
        the screen's coarser grid makes of it."""
        rect = self.wait_for("Photo").get_extents(self.atspi.CoordType.SCREEN)
        scale = min(rect.width / width, rect.height / height)
        left = rect.x + (rect.width - width * scale) / 2
        top = rect.y + (rect.height - height * scale) / 2
        screen_x = round(left + (x + 0.5) * scale)
        screen_y = round(top + (y + 0.5) * scale)
        self.click_at(screen_x, screen_y)
        return math.floor((screen_x - left) / scale), math.floor((screen_y - top) / scale)

    def retouch(self, x, y, width, height):
        """Clicks as click_photo does and waits for the repair to be recorded."""
        before = len(self.state_images())
        place = self.click_photo(x, y, width, height)
        wait_until(lambda: len(self.state_images()) > before, f"the repair at {x}, {y}")
        return place

    def save(self, path=None):
        """Saves through the panel, under the name it proposes when none is given."""
        self.start_saving(path)
        self.answer(SAVE_SUCCESS, "OK")

    def start_saving(self, path=None):
        self.keys("ctrl+s")
        self.wait_for("Save image", "dialog")
        if path:
            self.keys("ctrl+a")
            self.type(str(path))
        self.keys("Return")

    def answer(self, question, button):
        self.wait_for(question)
        self.press(button)
        self.wait_until_gone(question)

    def confirm(self, question):
        """Answers with the button that the Return key presses: the first."""
        self.wait_for(question)
        self.keys("Return")
        self.wait_until_gone(question)

    def confirm_to_end(self, question):
        self.wait_for(question)
        self.keys("Return")
        self._wait_for_end()

    def ask_to_close(self):
        """What the window's close button does, through the window manager."""
        subprocess.run(["wmctrl", "-i", "-c", self.window()], check=True)

    def answer_to_end(self, question, button):
        """Answers a question with which the program ends; fails when it does not end well."""
        self.wait_for(question)
        self.press(button)
        self._wait_for_end()

    def _wait_for_end(self):
        status = self.process.wait(WAIT_SECONDS)
        if status != 0:
            raise AssertionError(f"the program has ended with {status}: {self.output.read_text()}")


class Drag:
    """A drag of one address out of another program's window."""

    def __init__(self, address):
        self.source = subprocess.Popen([BUILD / "tests/drag_source", address], stdout=subprocess.PIPE, text=True)
        self._expect("ready")

    def _line(self):
        return self.source.stdout.readline().strip()

    def _expect(self, line):
        if (said := self._line()) != line:
            raise AssertionError(f"the drag's source says “{said}” where it should say “{line}”")

    def to(self, x, y):
        """Moves to a place of the screen, where a copy must be offered, and lets go."""
        subprocess.run(["xdotool", "mousemove", "5", "5", "mousedown", "1"], check=True)
        self._expect("dragging")
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "mousemove_relative", "1", "1"], check=True)
        self._expect("copy offered")
        subprocess.run(["xdotool", "mouseup", "1"], check=True)

    def to_where_none_is_taken(self, x, y):
        """Moves to a place of the screen, lets go whatever is offered, and waits for the end."""
        subprocess.run(["xdotool", "mousemove", "5", "5", "mousedown", "1"], check=True)
        self._expect("dragging")
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "sleep", "0.2", "mousemove_relative", "1", "1",
                        "sleep", "0.2", "mouseup", "1"], check=True)
        while self._line() not in ("finished", ""):
            pass
        self.source.wait(WAIT_SECONDS)

    def wait_for_end(self):
        """Until the window has dealt with what was dropped."""
        self._expect("finished")
        self.source.wait(WAIT_SECONDS)

# SPDX-License-Identifier: GPL-3.0-or-later
"""Drives Complexion's real window on a virtual desktop: finds controls by their accessible names and sends real X
events. Waits for conditions instead of sleeping."""

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
MAX_CLICK_SECONDS = 0.2
EXIT_QUESTION = "All unsaved changes will be lost. Are you sure you want to exit the application?"
SAVE_SUCCESS = "Image saved successfully."
LOAD_FAILURE = "The image could not be loaded."
ANSWER_MILLISECONDS = 1000  # timeout of the accessibility bus; the default of 15 s would also apply to ended programs


class Complexion:
    """The program under test, with a temporary folder and a state folder of its own."""

    def __init__(self, desktop, program=BUILD / "app/complexion"):
        self.desktop = desktop
        self.program = program
        self.temporary = Path(tempfile.mkdtemp(prefix="temporary-", dir=desktop.folder))
        self.state_home = Path(tempfile.mkdtemp(prefix="state-", dir=desktop.folder))
        self.output = desktop.folder / "complexion.log"
        self.process = None
        self.environment = {}  # in addition to the desktop's; None unsets a variable

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
        # Keys typed before the window has the focus are lost.
        wait_until(self._takes_focus, "the window's focus")
        if files and is_photo:
            self.wait_for_photo()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process and self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
            self.process.wait()

    # Observing.

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
        """The visible control with this accessible name and role (None matches any); None if there is none."""
        if self.process.poll() is not None:
            raise AssertionError(f"the program has ended with {self.process.returncode}: {self.output.read_text()}")
        try:
            application = self._application()
            for accessible in self._all(application) if application else ():
                if name in (None, accessible.get_name()) and role in (None, accessible.get_role_name()) and \
                        accessible.get_state_set().contains(self.atspi.StateType.SHOWING):
                    return accessible
        except (self._gone(), UnicodeDecodeError):  # the library may return freed memory for the name
            pass  # it disappeared meanwhile
        return None

    def all_of(self, role):
        """All visible controls with this role."""
        return [accessible for accessible in self._all(self._application())
                if accessible.get_role_name() == role and
                accessible.get_state_set().contains(self.atspi.StateType.SHOWING)]

    def combo_box(self, label):
        """The combo box with this label; its accessible description is its current entry."""
        def labelled():
            for box in self.all_of("combo box"):
                for relation in box.get_relation_set():
                    if relation.get_relation_type() == self.atspi.RelationType.LABELLED_BY and \
                            relation.get_target(0).get_name() == label:
                        return box
            return None
        return wait_until(labelled, f"the combo box “{label}”")

    def focused_name(self):
        """The name of the focused control's label if it has one, otherwise its own accessible name. Skips list items:
        from Qt 6.8 on, the current entries of closed combo boxes report the focus, too."""
        try:
            for accessible in self._all(self._application()):
                if accessible.get_state_set().contains(self.atspi.StateType.FOCUSED) and \
                        accessible.get_role_name() != "list item":
                    for relation in accessible.get_relation_set():
                        if relation.get_relation_type() == self.atspi.RelationType.LABELLED_BY:
                            return relation.get_target(0).get_name()
                    return accessible.get_name()
        except self._gone():
            pass  # it disappeared meanwhile
        return None

    def _gone(self):
        from gi.repository import GLib
        return GLib.Error

    def is_showing(self, name, role=None):
        return self.find(name, role) is not None

    def wait_for(self, name, role=None):
        return wait_until(lambda: self.find(name, role), f"“{name or role}”")

    def wait_until_gone(self, name):
        wait_until(lambda: not self.is_showing(name), f"“{name}” to disappear")

    def is_enabled(self, name):
        return self.wait_for(name).get_state_set().contains(self.atspi.StateType.ENABLED)

    def wait_for_photo(self):
        wait_until(lambda: self.is_enabled("Save image"), "the photo")

    def wait_for_still_picture(self):
        """Waits until two consecutive screenshots of the view are equal."""
        wait_until(lambda: self.photo_on_screen() == self.photo_on_screen(), "a stable picture")

    def windows(self):
        """The X window ids of the program, the main window first."""
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
        """Whether the window has the focus. If not, requests it from the window manager, which may refuse it to a
        window that was there before the window manager; then sets it directly, which may also fail."""
        if self._focused_process() == self.process.pid:
            return True
        try:
            window = self.window()
            subprocess.run(["wmctrl", "-i", "-a", window], check=True)
            if self._focused_process() != self.process.pid:
                subprocess.run(["xdotool", "windowfocus", window], check=True)
        except (subprocess.CalledProcessError, IndexError):
            pass  # not there yet, or not yet managed
        return self._focused_process() == self.process.pid

    # Acting.

    def press(self, name, role=None):
        """Clicks the centre of a control."""
        self.press_centre(self.wait_for(name, role))

    def press_centre(self, control):
        x, y, width, height = self.area_of(control)
        self.click_at(x + width // 2, y + height // 2)

    def area_of(self, control):
        """The position and size of a control on the screen: x, y, width, height."""
        rect = control.get_extents(self.atspi.CoordType.SCREEN)
        return rect.x, rect.y, rect.width, rect.height

    def choose_effect(self, index):
        self.choose("Effect", index)

    def choose(self, label, index):
        """Chooses an entry of a pop-up button with the mouse and the keys."""
        self.press_centre(self.combo_box(label))
        wait_until(lambda: len(self.windows()) == 2, f"the list of “{label}”")
        self.keys("Home", *["Down"] * index, "Return")
        wait_until(lambda: len(self.windows()) == 1, f"the list of “{label}” to close")

    def screen_area(self, name, role=None):
        """As area_of, by the control's name."""
        return self.area_of(self.wait_for(name, role))

    def photo_on_screen(self, with_disc=False):
        """A screenshot of the view. Moves the pointer away first, to hide the edit disc, unless `with_disc`."""
        x, y, width, height = self.screen_area("Photo")
        if not with_disc:
            subprocess.run(["xdotool", "mousemove", str(x + width - 1), str(y - 8)], check=True)
        pixels = output_of("import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-",
                           text=False)
        return Image.frombytes("RGB", (width, height), pixels)

    def click_at(self, x, y):
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"], check=True)

    def drag_photo(self, dx, dy, steps=8):
        """Drags from the centre of the view by (dx, dy) in `steps` moves, for longer than a click may take."""
        x, y, width, height = self.screen_area("Photo")
        moves = [part for _ in range(steps) for part in ("mousemove_relative", "--", str(dx // steps), str(dy // steps))]
        subprocess.run(["xdotool", "mousemove", str(x + width // 2), str(y + height // 2), "mousedown", "1",
                        *moves, "sleep", str(MAX_CLICK_SECONDS + 0.1), "mouseup", "1"], check=True)

    def drop(self, address):
        """Drags an address to the view and drops it there. Returns the drag, to wait for its end."""
        drag = Drag(address)
        x, y, width, height = self.screen_area("Photo")
        drag.to(x + width // 2, y + height // 2)
        return drag

    def keys(self, *keys):
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)

    def type(self, text):
        subprocess.run(["xdotool", "type", "--delay", "2", text], check=True)

    def _fitted(self, width, height):
        """The left and top edge on the screen, and the scale, of the fitted photo of size (width, height)."""
        left, top, view_width, view_height = self.screen_area("Photo")
        scale = min(view_width / width, view_height / height)
        return left + (view_width - width * scale) / 2, top + (view_height - height * scale) / 2, scale

    def place_on_screen(self, x, y, width, height):
        """The screen position of pixel (x, y), from the top left, of the fitted photo of size (width, height)."""
        left, top, scale = self._fitted(width, height)
        return round(left + (x + 0.5) * scale), round(top + (y + 0.5) * scale)

    def click_photo(self, x, y, width, height):
        """Clicks on pixel (x, y), from the top left, of the fitted photo of size (width, height). Returns the pixel
        that was hit, given the coarser grid of the screen."""
        left, top, scale = self._fitted(width, height)
        screen_x, screen_y = self.place_on_screen(x, y, width, height)
        self.click_at(screen_x, screen_y)
        return math.floor((screen_x - left) / scale), math.floor((screen_y - top) / scale)

    def retouch(self, x, y, width, height):
        """Clicks like click_photo and waits for the repair to be recorded."""
        before = len(self.state_images())
        place = self.click_photo(x, y, width, height)
        wait_until(lambda: len(self.state_images()) > before, f"the repair at {x}, {y}")
        return place

    def save(self, path=None):
        """Saves through the panel, by default under the proposed name."""
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
        """Answers with the default button, by the Return key."""
        self.wait_for(question)
        self.keys("Return")
        self.wait_until_gone(question)

    def confirm_to_end(self, question):
        self.wait_for(question)
        self.keys("Return")
        self._wait_for_end()

    def ask_to_close(self):
        """Closes the window through the window manager, as its close button does."""
        subprocess.run(["wmctrl", "-i", "-c", self.window()], check=True)

    def answer_to_end(self, question, button):
        """Answers the question before quitting; fails unless the program then exits with 0."""
        self.wait_for(question)
        self.press(button)
        self._wait_for_end()

    def _wait_for_end(self):
        status = self.process.wait(WAIT_SECONDS)
        if status != 0:
            raise AssertionError(f"the program has ended with {status}: {self.output.read_text()}")


class Drag:
    """A drag of one address out of another program's window, which is at `place` on the screen."""

    place = 5, 5

    def __init__(self, address, **environment):
        self.source = subprocess.Popen([BUILD / "tests/drag_source", address], stdout=subprocess.PIPE, text=True,
                                       env=os.environ | environment)
        self._expect("ready")

    def _line(self):
        return self.source.stdout.readline().strip()

    def _expect(self, line):
        if (said := self._line()) != line:
            raise AssertionError(f"the drag source printed “{said}” instead of “{line}”")

    def _start(self):
        subprocess.run(["xdotool", "mousemove", *map(str, self.place), "mousedown", "1"], check=True)
        self._expect("dragging")

    def to(self, x, y):
        """Drags to a place on the screen where a copy must be offered, and drops there."""
        self._start()
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "mousemove_relative", "1", "1"], check=True)
        self._expect("copy offered")
        subprocess.run(["xdotool", "mouseup", "1"], check=True)

    def to_without_offer(self, x, y):
        """Drags to a place on the screen, drops whatever is offered, and waits for the end."""
        self._start()
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "sleep", "0.2", "mousemove_relative", "1", "1",
                        "sleep", "0.2", "mouseup", "1"], check=True)
        while self._line() not in ("finished", ""):
            pass
        self.source.wait(WAIT_SECONDS)

    def wait_for_end(self):
        """Waits until the window has handled the drop."""
        self._expect("finished")
        self.source.wait(WAIT_SECONDS)

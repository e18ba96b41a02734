# SPDX-License-Identifier: GPL-3.0-or-later
"""The main job with the keyboard and the accessibility bus only, as users do who cannot see or use a pointer."""

import math
import re
import shutil
import subprocess
import unittest

from PIL import Image

import sample_portrait
from picture_changes import changed_pixels, check_only_discs_changed
from portrait_test_case import PortraitTestCase
from sample_portrait import RADIUS
from virtual_desktop import wait_until
from window_driver import EXIT_QUESTION, SAVE_SUCCESS

BLEMISH = (548, 418)
NOTHING_FOUND = "No blemishes found."
PLACE = re.compile(r"Column (\d+), row (\d+)\. (.*)")


class KeyboardTest(PortraitTestCase):
    def setUp(self):
        super().setUp()
        self.photo = self.photos / "face.png"
        shutil.copy(self.painted, self.photo)
        # Keep the pointer off the photo.
        subprocess.run(["xdotool", "mousemove", "1279", "799"], check=True)

    def focused(self):
        return self.program.focused_name()

    def tab_to(self, name):
        """Presses Tab until the named control has the focus."""
        seen = []
        while (now := self.focused()) != name:
            self.assertLess(len(seen), 40, f"Tab never reaches “{name}”, only {seen}")
            seen.append(now)
            self.program.keys("Tab")
            wait_until(lambda: self.focused() != now, f"the focus to leave “{now}”")

    def description(self):
        return self.program.wait_for("Photo").get_description()

    def place(self):
        """The column and row of the disc and the effect of a click, from the photo's accessible description."""
        match = wait_until(lambda: PLACE.fullmatch(self.description()), "the disc's description")
        return int(match[1]) - 1, int(match[2]) - 1, match[3]

    def next_place(self, last):
        """The column and row, once the ring is elsewhere than at the last place; or that there is nothing."""
        description = self.description()
        match = PLACE.fullmatch(description)
        if description == NOTHING_FOUND:
            return description
        return match and match.groups()[:2] != last and match.groups()[:2]

    def move_disc_to(self, column, row):
        """Moves the disc with the arrow keys, in steps of 100, 10 and 1 pixels."""
        self.program.keys("Right")
        at = self.place()[:2]
        for axis, target, forward, back in ((0, column, "Right", "Left"), (1, row, "Down", "Up")):
            distance = target - at[axis]
            key = forward if distance > 0 else back
            for size, modifier in ((100, "ctrl+"), (10, "shift+"), (1, "")):
                count, distance = divmod(abs(distance), size)
                if count:
                    self.program.keys(*[modifier + key] * count)
        wait_until(lambda: self.place()[:2] == (column, row), f"the disc to reach {column}, {row}")

    def test_a_blemish_is_repaired_and_the_result_saved_without_a_mouse(self):
        # Open the photo through the panel.
        self.program.start()
        self.program.keys("ctrl+o")
        self.program.wait_for("Select image", "dialog")
        wait_until(lambda: "name" in (self.focused() or ""), "the panel's name field")
        self.program.type(str(self.photo))
        self.program.keys("Return")
        self.program.wait_for_photo()

        # Change a setting.
        self.tab_to("Threshold")
        threshold = self.program.wait_for("Threshold", "slider")
        self.program.keys("Right", "Right")
        wait_until(lambda: threshold.get_value_iface().get_current_value() == 12, "the threshold to be 12")
        size = self.program.wait_for("Edit area size", "spin button")
        self.assertEqual(size.get_value_iface().get_current_value(), RADIUS)

        # Repair a blemish: the description first announces the effect, then the result.
        self.tab_to("Photo")
        self.move_disc_to(*BLEMISH)
        self.assertRegex(self.place()[2], r"\d+ pixels would be repaired\.")
        self.program.keys("Return")
        wait_until(lambda: re.fullmatch(r"Repaired \d+ pixels\.", self.description()), "the result's description")
        self.assertEqual(len(self.program.state_images()), 2)

        # Undo and redo it.
        self.tab_to("Undo")
        self.program.keys("space")
        wait_until(lambda: self.program.is_enabled("Redo"), "the undo")
        self.assertEqual(self.focused(), "Photo")
        self.tab_to("Redo")
        self.program.keys("space")
        wait_until(lambda: self.program.is_enabled("Undo"), "the redo")

        self.program.start_saving()
        self.program.confirm(SAVE_SUCCESS)
        saved = self.photos / "face_retouched.png"
        check_only_discs_changed(self.photo, saved, [BLEMISH], RADIUS)
        self.program.ask_to_close()
        self.program.confirm_to_end(EXIT_QUESTION)

    def test_a_face_is_done_by_suggestions_alone(self):
        self.program.start(self.photo)
        self.program.keys("n")
        last = None
        for _ in range(30):
            found = wait_until(lambda: self.next_place(last), "the next suggestion")
            if found == NOTHING_FOUND:
                break
            last = found
            self.program.keys("Return")
        self.assertEqual(found, NOTHING_FOUND)
        self.program.start_saving()
        self.program.confirm(SAVE_SUCCESS)
        saved = self.photos / "face_retouched.png"
        blemishes = sample_portrait.paint(self.photos / "again.png")
        touched = set()
        for x, y, _ in changed_pixels(self.photo, saved):
            inside = [each for each in blemishes if math.dist((each.x, each.y), (x, y)) <= 2 * each.radius + 4]
            self.assertTrue(inside, f"pixel {x}, {y} has changed, at no blemish")
            touched.update(inside)
        self.assertGreaterEqual(len(touched), 10)
        self.program.ask_to_close()
        self.program.confirm_to_end(EXIT_QUESTION)

    def test_the_photo_can_be_pressed_over_the_accessibility_bus(self):
        self.program.start(self.photo)
        photo = self.program.wait_for("Photo").get_action_iface()
        names = [photo.get_action_name(index) for index in range(photo.get_n_actions())]
        photo.do_action(names.index("Press"))
        wait_until(lambda: len(self.program.state_images()) == 2, "the repair to be recorded")

    def test_whatever_happens_is_announced(self):
        """The toolkit of Debian 12 has no announcements, so that they are descriptions that change."""
        self.program.start(self.photo)
        zoom = self.program.wait_for("Zoom").get_value_iface()
        fitted = zoom.get_current_value()
        self.program.keys("ctrl+1")
        wait_until(lambda: zoom.get_current_value() == 100, "the zoom's value")
        self.assertEqual(self.program.wait_for("Zoom").get_description(), "100 %")
        self.program.keys("ctrl+0")
        wait_until(lambda: zoom.get_current_value() == fitted, "the fitted zoom's value")

        for key, announced in (("n", r"Suggestion 1 of \d+: .*"), ("n", r"Suggestion 2 of \d+: .*"),
                               ("Right", r"Column \d+, row \d+\. .*"), ("Return", r"Repaired \d+ pixels\."),
                               ("ctrl+z", r"Undone: repair\."), ("ctrl+shift+z", r"Redone: repair\.")):
            self.program.keys(key)
            wait_until(lambda: re.search(announced, self.description()), f"“{announced}” after {key}")

    def test_a_notice_is_an_alert_that_says_what_a_save_loses(self):
        moving = self.photos / "moving.gif"
        frames = [Image.new("RGB", (64, 48), color) for color in ("tan", "wheat")]
        frames[0].save(moving, save_all=True, append_images=frames[1:])
        self.program.start(moving)
        notice = self.program.wait_for("In the saved copy: only the first of 2 frames.")
        self.assertIn(notice.get_role_name(), ("alert", "notification"))

    def test_the_comparison_is_pressed_while_the_original_is_shown(self):
        self.program.start(self.photo)
        self.program.keys("n", "Return")
        wait_until(lambda: len(self.program.state_images()) == 2, "the repair")
        pressed = self.program.atspi.StateType.PRESSED
        compare = self.program.wait_for("Show the original", "push button")
        self.assertFalse(compare.get_state_set().contains(pressed))
        subprocess.run(["xdotool", "keydown", "b"], check=True)
        wait_until(lambda: compare.get_state_set().contains(pressed), "the comparison to be pressed")
        subprocess.run(["xdotool", "keyup", "b"], check=True)
        wait_until(lambda: not compare.get_state_set().contains(pressed), "the comparison to end")

    def test_every_control_has_an_accessible_name(self):
        self.program.start(self.photo)
        buttons = [self.program.all_of(role) for role in ("push button", "button")]  # AT-SPI's old and new role names
        self.assertTrue(any(buttons))
        for role in ("push button", "button", "toggle button", "check box", "slider", "spin button", "text", "canvas"):
            for control in self.program.all_of(role):
                self.assertTrue(control.get_name(), f"a {role} without a name")
        for name in ("Repair", "Effect"):
            self.assertTrue(self.program.find(name, "combo box"))
        sizes = [control for role in ("spin button", "text") for control in self.program.all_of(role)]
        self.assertEqual([control.get_name() for control in sizes], ["Edit area size"])


if __name__ == "__main__":
    unittest.main(verbosity=2)

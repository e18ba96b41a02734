# SPDX-License-Identifier: GPL-3.0-or-later
"""The features of the editor in the real window: drops, history, effects, zoom and pan, reloading, quitting."""

import unittest

from PIL import Image, ImageChops, ImageStat

from picture_changes import check_only_discs_changed
from portrait_test_case import PortraitTestCase
from sample_portrait import RADIUS, SIZE
from virtual_desktop import wait_until
from window_driver import BUILD, EXIT_QUESTION, LOAD_FAILURE, Complexion, Drag

BLEMISHES = [(548, 418), (690, 690)]
EFFECTS = ["Chrome", "Fade", "Instant", "Mono", "Noir", "Process", "Tonal", "Transfer"]
BLACK_AND_WHITE = {"Mono", "Noir", "Tonal"}
DROP_QUESTION = "All unsaved changes will be lost. Are you sure you want to add a new image?"
RELOAD_QUESTION = "All unsaved changes will be lost. Are you sure you want to reload the image?"


def is_black_and_white(image):
    red, green, blue = image.split()
    return ImageChops.difference(red, green).getbbox() is None and ImageChops.difference(red, blue).getbbox() is None


def look_alike(one, other):
    """Whether two screenshots are equal up to rounding (a partial repaint may round differently)."""
    return max(high for _, high in ImageChops.difference(one, other).getextrema()) <= 2


def paint_map(path, mirrored=False):
    """Writes a photo in which the colour of each pixel encodes its position."""
    width, height = SIZE
    pixels = bytes(value for y in range(height) for x in range(width)
                   for value in (x % 256, y % 256, x // 256 + 16 * (y // 256)))
    image = Image.frombytes("RGB", SIZE, pixels)
    (image.transpose(Image.Transpose.FLIP_LEFT_RIGHT) if mirrored else image).save(path)


def place_on_map(pixel):
    red, green, blue = pixel
    return red + 256 * (blue % 16), green + 256 * (blue // 16)


class WholeEditorTest(PortraitTestCase):
    def file(self, name, content):
        path = self.photos / name
        path.write_bytes(content)
        return path

    def drop(self, path, answer=None):
        """Drops a file, answers the expected question, if any, and waits until the drop is handled."""
        drag = self.program.drop(path.as_uri())
        if answer:
            self.program.answer(DROP_QUESTION, answer)
        drag.wait_for_end()

    def face(self):
        """The centre of the view, free of overlays."""
        photo = self.program.photo_on_screen()
        middle, height = photo.width // 2, photo.height
        return photo.crop((middle - height // 4, height // 8, middle + height // 4, height * 4 // 5))

    def wait_for_face(self, expected, what):
        wait_until(lambda: look_alike(self.face(), expected), what)

    def wait_for_another_face(self, *seen):
        """Waits until the face differs from all of these and is stable. Returns it."""
        def another():
            now = self.face()
            return now if not any(look_alike(now, face) for face in seen) and now == self.face() else None
        return wait_until(another, "another picture")

    def test_a_drop_opens_a_photo_and_refuses_everything_else(self):
        notes = self.file("notes.txt", b"no photo")
        fake = self.file("fake.png", b"no photo either")
        photo = self.file("Face.final.PNG", self.painted.read_bytes())
        program = self.program
        program.start()
        for refused in (notes, fake):
            self.drop(refused)
            program.wait_for(f"“{refused.name}” is not a picture. Complexion opens JPEG, PNG, TIFF, GIF and BMP.")
        program.drop("https://localhost/face.png").wait_for_end()
        self.assertEqual(program.state_images(), [])
        self.assertFalse(program.is_enabled("Save image"))
        self.assertFalse(program.is_enabled("Zoom in"))

        self.drop(photo)
        program.wait_for_photo()
        program.retouch(*BLEMISHES[0], *SIZE)
        states = program.state_images()
        self.assertEqual(len(states), 2)
        shown = self.face()

        self.drop(notes)  # nothing could follow a question
        program.drop("https://localhost/face.png").wait_for_end()
        self.drop(fake, answer="Yes")
        self.drop(self.painted, answer="No")
        self.assertEqual(program.state_images(), states)
        self.assertTrue(program.is_enabled("Undo"))
        self.wait_for_face(shown, "the photo that was open")

        self.drop(self.painted, answer="Yes")
        wait_until(lambda: not program.is_enabled("Undo"), "the dropped photo")
        self.assertEqual(len(program.state_images()), 1)
        self.assertFalse(set(program.state_images()) & set(states))

    def test_a_relative_path_whose_folder_is_gone_shows_the_load_failure(self):
        gone = self.photos / "gone"
        gone.mkdir()
        script = self.file("start", f'#!/bin/sh\ncd "{gone}" && rmdir "{gone}" && exec "{BUILD}/app/complexion" face.png\n'
                           .encode())
        script.chmod(0o755)
        with Complexion(self.desktop, script) as program:
            program.start()
            program.confirm(LOAD_FAILURE)
            self.assertFalse(program.is_enabled("Save image"))

    def test_undo_and_redo_show_and_save_the_recorded_pictures(self):
        photo = self.file("face.png", self.painted.read_bytes())
        program = self.program
        program.start(photo)
        faces, places = [self.face()], []
        for blemish in BLEMISHES:
            places.append(program.retouch(*blemish, *SIZE))
            faces.append(self.wait_for_another_face(*faces))
        program.keys("ctrl+z")
        self.wait_for_face(faces[1], "the first repair")
        program.press("Undo")
        self.wait_for_face(faces[0], "the photo without repairs")
        self.assertFalse(program.is_enabled("Undo"))
        program.press("Redo")
        self.wait_for_face(faces[1], "the first repair again")
        self.assertTrue(program.is_enabled("Redo"))
        program.save()
        check_only_discs_changed(photo, photo.with_stem("face_retouched"), places[:1], RADIUS)
        program.keys("ctrl+shift+z")
        self.wait_for_face(faces[2], "the second repair again")
        self.assertFalse(program.is_enabled("Redo"))

        program.keys("ctrl+z")
        self.wait_for_face(faces[1], "the first repair")
        program.click_photo(604, 492, *SIZE)
        wait_until(lambda: not program.is_enabled("Redo"), "the undone repair to be forgotten")
        self.assertEqual(len(program.state_images()), 3)

    def test_each_effect_is_shown_and_saved_and_leaves_the_photo_alone(self):
        photo = self.file("face.png", self.painted.read_bytes())
        program = self.program
        program.start(photo)
        program.retouch(*BLEMISHES[0], *SIZE)
        program.keys("ctrl+z")
        wait_until(lambda: not program.is_enabled("Undo"), "the photo without repairs")
        states = program.state_images()
        normal = self.face()
        self.assertFalse(is_black_and_white(normal))
        seen = [normal]
        for index, effect in enumerate(EFFECTS, start=1):
            program.choose_effect(index)
            face = self.wait_for_another_face(*seen)
            self.assertEqual(is_black_and_white(face), effect in BLACK_AND_WHITE, effect)
            seen.append(face)

        program.choose_effect(1 + EFFECTS.index("Noir"))
        self.wait_for_face(seen[1 + EFFECTS.index("Noir")], "the same picture as before")
        program.save()
        with Image.open(photo.with_stem("face_retouched")) as saved:
            self.assertEqual(saved.size, SIZE)
            self.assertTrue(is_black_and_white(saved.convert("RGB")))
            self.assertGreater(ImageStat.Stat(saved.convert("L")).stddev[0], 20)
        program.choose_effect(0)
        self.wait_for_face(normal, "the photo without an effect")
        self.assertEqual(program.state_images(), states)

    def view_of_map(self):
        """The map's pixel in the centre of the view, and screen points per pixel of the map (None if out of range)."""
        view = self.program.photo_on_screen()
        x, y, reach = view.width // 2, view.height // 2, view.width * 35 // 100
        left, middle, right = (place_on_map(view.getpixel((x + dx, y))) for dx in (-reach, 0, reach))
        pixels = right[0] - left[0]
        return middle, 2 * reach / pixels if pixels > 0 else None

    def wait_for_scale(self, scale, what):
        # The tolerance allows for an error of one pixel in about 180.
        wait_until(lambda: (now := self.view_of_map()[1]) and abs(now / scale - 1) < 0.008, what)

    def test_zoom_stops_at_its_limits_and_a_drag_pans(self):
        photo = self.photos / "map.png"
        paint_map(photo)
        program = self.program
        program.start(photo)
        _, _, width, height = program.screen_area("Photo")
        fitted_scale = min(width / SIZE[0], height / SIZE[1])
        fitted = self.face()
        program.press("Zoom out")
        program.press("Zoom in")
        self.wait_for_another_face(fitted)  # zooming out had no effect, so this is one step from the fitted size
        program.keys(*["ctrl+plus"] * 23)
        self.wait_for_scale(fitted_scale * 1.1 ** 24, "24 steps")
        program.keys("ctrl+plus")
        self.wait_for_scale(fitted_scale * 10, "the upper limit")
        largest = program.photo_on_screen()
        program.keys("ctrl+plus", "ctrl+minus", "ctrl+plus")  # 10 * 0.9 * 1.1
        self.wait_for_scale(fitted_scale * 9.9, "a step out and one in")
        program.keys("ctrl+plus")
        wait_until(lambda: program.photo_on_screen() == largest, "the upper limit again")

        states = program.state_images()
        (x, y), scale = self.view_of_map()
        program.drag_photo(-160, 80)
        expected = x + 160 / scale, y - 80 / scale
        wait_until(lambda: all(abs(now - then) <= 1 for now, then in zip(self.view_of_map()[0], expected)),
                   f"the map's {expected} in the centre")
        self.assertEqual(program.state_images(), states)  # a drag is not a click

        program.keys(*["ctrl+minus"] * 25)
        self.wait_for_face(fitted, "the fitted photo")
        program.keys("ctrl+plus", "ctrl+plus")
        self.wait_for_another_face(fitted)
        program.press("Reset zoom")
        self.wait_for_face(fitted, "the fitted photo")

    def test_reloading_asks_and_keeps_the_zoom(self):
        photo = self.photos / "map.png"
        paint_map(photo)
        program = self.program
        program.start(photo)
        program.retouch(300, 400, *SIZE)
        fitted = self.face()
        program.press("Zoom in")
        zoomed = self.wait_for_another_face(fitted)
        states = program.state_images()
        paint_map(photo, mirrored=True)

        program.keys("ctrl+r")
        program.answer(RELOAD_QUESTION, "No")
        self.wait_for_face(zoomed, "the photo as it was")
        self.assertEqual(program.state_images(), states)
        self.assertTrue(program.is_enabled("Undo"))

        program.press("Reload image")
        program.answer(RELOAD_QUESTION, "Yes")
        wait_until(lambda: not program.is_enabled("Undo"), "the photo's new content")
        self.assertEqual(len(program.state_images()), 1)
        reloaded = self.wait_for_another_face(zoomed)
        program.press("Reset zoom")
        self.wait_for_another_face(zoomed, reloaded)

    def test_quitting_asks_once_and_leaves_nothing_behind(self):
        program = self.program
        program.start(self.file("face.png", self.painted.read_bytes()))
        program.retouch(*BLEMISHES[0], *SIZE)
        states = program.state_images()
        for keys in ("ctrl+q", "alt+F4"):
            program.keys(keys)
            program.answer(EXIT_QUESTION, "No")
            self.assertEqual(program.state_images(), states)
            self.assertTrue(program.is_enabled("Undo"))
        program.keys("ctrl+q")
        program.answer_to_end(EXIT_QUESTION, "Yes")
        self.assertEqual(list(program.temporary.iterdir()), [])

    def test_closing_with_alt_held_asks_once(self):
        self.program.start(self.file("face.png", self.painted.read_bytes()))
        self.program.keys("alt+F4")
        self.program.answer_to_end(EXIT_QUESTION, "Yes")
        self.assertEqual(list(self.program.temporary.iterdir()), [])

    def test_without_a_photo_closing_the_window_ends_the_program(self):
        self.program.start()
        self.program.ask_to_close()
        self.assertEqual(self.program.process.wait(20), 0)
        self.assertEqual(list(self.program.temporary.iterdir()), [])

    def test_a_drop_behind_a_question_changes_nothing(self):
        program = self.program
        program.start(self.file("face.png", self.painted.read_bytes()))
        program.retouch(*BLEMISHES[0], *SIZE)
        states = program.state_images()
        program.keys("ctrl+q")
        program.wait_for(EXIT_QUESTION)
        x, y, width, height = program.screen_area("Photo")
        Drag(self.painted.as_uri()).to_without_offer(x + width // 5, y + height // 2)  # beside the question
        self.assertFalse(program.is_showing(DROP_QUESTION))
        program.answer(EXIT_QUESTION, "No")
        self.assertEqual(program.state_images(), states)
        self.assertTrue(program.is_enabled("Undo"))

    def test_without_a_photo_quitting_asks_nothing(self):
        self.program.start()
        self.program.keys("ctrl+q")
        self.assertEqual(self.program.process.wait(20), 0)
        self.assertEqual(list(self.program.temporary.iterdir()), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)

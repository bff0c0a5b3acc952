"""Still clips on the test desktop: `capstan --clip` reaches the running program over the
session bus; a click takes a window alone though another covers it; a dragged region takes
what it shows; the picture is saved, listed and copied; Escape ends a clip on every screen."""
import subprocess
import time

import capstan_e2e as e2e


class ClipTest(e2e.CapstanTestCase):
    def setUp(self):
        mx, my, _, _ = e2e.monitors()[0]
        # Left of and above the main window, which sits in the middle of the first monitor.
        self.x, self.y = mx + 100, my + 80

    def clip_from_the_command_line(self, app):
        """A second `capstan --clip` hands the request over and ends at once."""
        other = subprocess.run([app.binary, "--clip"], env=app.environment(), timeout=30,
                               capture_output=True, text=True)
        self.assertEqual(other.returncode, 0, other.stdout + other.stderr)
        self.wait_for_overlays()

    def wait_for_overlays(self):
        shown = e2e.wait_until(
            lambda: (lambda ids: ids if len(ids) == len(e2e.monitors()) else None)(
                e2e.overlays()), 10, "an overlay a screen")
        time.sleep(0.5)
        return shown

    def the_clip(self, app):
        """The one picture in ~/Videos/Capstan, once listed with "isImage"; its path."""
        shots = app.wait(app.recordings, 10, "the clip in ~/Videos/Capstan")
        self.assertEqual(len(shots), 1, shots)
        records = app.wait(app.recording_list, 5, "the clip in filelist.plist")
        self.assertEqual([(r.get("path"), r.get("isImage")) for r in records], [(shots[0], 1)])
        self.assertTrue(shots[0].endswith(".png"), shots[0])
        return shots[0]

    def test_a_click_takes_a_covered_window_alone_and_the_picture_is_kept_and_copied(self):
        x, y = self.x, self.y
        with e2e.PatternWindow(x, y), e2e.PatternWindow(x + 200, y + 150, (300, 220), "black"):
            app = self.launch()
            app.main_window()
            self.clip_from_the_command_line(app)
            # Hover finds the pattern under the pointer; one click takes it.
            e2e.xdotool("mousemove", x + 50, y + 50)
            time.sleep(0.3)
            e2e.xdotool("mousemove", x + 60, y + 60)
            time.sleep(0.5)
            e2e.click(x + 60, y + 60)
            shot = self.the_clip(app)
            e2e.wait_until(lambda: not e2e.overlays(), 5, "the overlays to go")

            # The window inside the border's margin of 5, free of the black window over it.
            w, h = e2e.PATTERN[0] - 10, e2e.PATTERN[1] - 10
            self.assertEqual(e2e.png_size(shot), (w, h))
            points = [(w // 4, h // 4), (3 * w // 4, h // 4), (w // 4, 3 * h // 4),
                      (3 * w // 4, 3 * h // 4)]
            colours = e2e.frame_pixels(shot, 0, points)
            for colour, wanted in zip(colours, e2e.QUADRANTS):
                self.assertTrue(e2e.near(colour, wanted), f"{colours}, wanted {e2e.QUADRANTS}")
            # The clipboard holds it while the program runs: the middle is white, not black.
            copied = e2e.wait_until(e2e.clipboard_picture, 5, "a picture on the clipboard")
            self.assertEqual(copied[:2], (w, h))
            self.assertTrue(e2e.near(copied[2], (255, 255, 255)), copied)

    def test_a_dragged_region_takes_what_it_shows(self):
        x, y = self.x, self.y
        with e2e.PatternWindow(x, y), e2e.PatternWindow(x + 200, y + 150, (300, 220), "black"):
            app = self.launch()
            app.main_window()
            self.clip_from_the_command_line(app)
            e2e.drag((x + 20, y + 20), (x + 380, y + 280))
            app.press("OK", timeout=10)
            shot = self.the_clip(app)

            w, h = e2e.png_size(shot)
            self.assertLessEqual(abs(w - 350), 8, (w, h))
            self.assertLessEqual(abs(h - 250), 8, (w, h))
            # Upper left the pattern's red; lower right the black window that lies over it.
            (upper_left, lower_right) = e2e.frame_pixels(shot, 0, [(20, 20), (w - 20, h - 20)])
            self.assertTrue(e2e.near(upper_left, (255, 0, 0)), upper_left)
            self.assertTrue(e2e.near(lower_right, (0, 0, 0)), lower_right)

    def test_the_screenshot_buttons_clip_ends_on_every_screen_with_escape(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        with e2e.PopupWatch() as watch:
            app.press("screenShortBtn")
            menu = app.wait(lambda: next(iter(watch.menus()), None), 5,
                            "the screenshot button's menu")
        self.assertEqual(e2e.menu_items(menu),
                         [("Clip Full Screen", True), ("Clip Screen Area", True)])
        item = next(c for c in menu if c is not None and c.name == "Clip Screen Area")
        e2e.click(*e2e.centre(item))
        shown = self.wait_for_overlays()
        # On the second monitor.
        mx, my, mw, mh = e2e.monitors()[1]
        e2e.xdotool("mousemove", mx + mw // 2, my + mh // 2)
        time.sleep(0.3)
        e2e.key("Escape")
        e2e.wait_until(lambda: not set(shown) & set(e2e.overlays()), 5, "the overlays to go")
        time.sleep(0.5)
        self.assertEqual(app.recordings(), [])
        # A clip can start again.
        self.clip_from_the_command_line(app)
        e2e.key("Escape")
        e2e.wait_until(lambda: not e2e.overlays(), 5, "the overlays to go")


if __name__ == "__main__":
    e2e.main()

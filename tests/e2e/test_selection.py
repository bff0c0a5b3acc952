"""Pointing out what to record on the test desktop: a region dragged with the pointer over a
test pattern, accepted with Return and recorded; Escape before acceptance. The files are read
back with ffprobe and ffmpeg."""
import os
import subprocess
import time

import capstan_e2e as e2e

QUADRANTS, PATTERN = e2e.QUADRANTS, e2e.PATTERN
PatternWindow, frame_pixels, overlays, near = (e2e.PatternWindow, e2e.frame_pixels, e2e.overlays,
                                               e2e.near)


class SelectionTest(e2e.CapstanTestCase):
    def drag(self, start, end):
        e2e.drag(start, end)

    def arm(self, mode):
        """A program on the source screen of mode, its record button pressed: the overlays
        are up."""
        app = self.launch()
        app.main_window()
        app.enter_source(mode)
        app.press("btnStartRecrord")
        e2e.wait_until(overlays, 10, "the overlays")
        time.sleep(0.5)
        return app

    def record_region(self, monitor):
        """Drags a region over the pattern on a monitor, accepts it with Return, records 3 s;
        the file's size and the colours of its quadrants."""
        mx, my, mw, mh = e2e.monitors()[monitor]
        # Above the main window, which sits in the middle of the first monitor.
        x, y = mx + 100, my + 80
        with PatternWindow(x, y):
            app = self.arm("Main_Custom_Area")
            self.drag((x, y), (x + PATTERN[0], y + PATTERN[1]))
            e2e.key("Return")
            app.widget("btnStopRecord", role="push button", timeout=10)
            app.hold(time.monotonic() + 3.0)
            app.stop_recording()

        files = app.recordings()
        self.assertEqual(len(files), 1, files)
        media = e2e.probe(files[0])
        # 400 x 300 made even and 2 smaller by the overlay, and 2 more by the capture.
        self.assertEqual((media["width"], media["height"]), (396, 296))
        self.assertAlmostEqual(media["duration"], 3.0, delta=1.0)
        w, h = media["width"], media["height"]
        points = [(w // 4, h // 4), (3 * w // 4, h // 4), (w // 4, 3 * h // 4),
                  (3 * w // 4, 3 * h // 4)]
        colours = frame_pixels(files[0], 1.0, points)
        if os.environ.get("CAPSTAN_E2E_KEEP"):
            subprocess.run(["ffmpeg", "-v", "error", "-y", "-ss", "1", "-i", files[0], "-frames:v",
                            "1", os.environ["CAPSTAN_E2E_KEEP"]])
        for colour, wanted, where in zip(colours, QUADRANTS, ("upper left", "upper right",
                                                              "lower left", "lower right")):
            self.assertTrue(near(colour, wanted), f"{where}: {colour}, wanted {wanted}")

    def test_a_region_on_the_left_monitor_is_recorded_upright_and_even_sided(self):
        self.record_region(0)

    def test_a_region_on_the_right_monitor_is_recorded_upright_and_even_sided(self):
        self.record_region(1)

    def test_a_window_is_taken_with_one_click_and_recorded_while_another_covers_it(self):
        mx, my, mw, mh = e2e.monitors()[0]
        x, y = mx + 100, my + 80
        with PatternWindow(x, y):
            app = self.arm("Main_App_Window")
            # Hover finds the window under the pointer; one click takes it.
            e2e.xdotool("mousemove", x + 50, y + 50)
            time.sleep(0.3)
            e2e.xdotool("mousemove", x + 60, y + 60)
            time.sleep(0.5)
            e2e.click(x + 60, y + 60)
            app.widget("btnStopRecord", role="push button", timeout=10)
            with PatternWindow(x + 50, y + 40, (300, 220), "black"):
                app.hold(time.monotonic() + 3.0)
            app.stop_recording()

        files = app.recordings()
        self.assertEqual(len(files), 1, files)
        media = e2e.probe(files[0])
        w, h = media["width"], media["height"]
        self.assertLessEqual(abs(w - PATTERN[0]), 4, (w, h))
        self.assertLessEqual(abs(h - PATTERN[1]), 4, (w, h))
        # Late in the file, while the black window lay over the middle of the pattern.
        points = [(w // 4, h // 4), (3 * w // 4, h // 4), (w // 4, 3 * h // 4),
                  (3 * w // 4, 3 * h // 4)]
        colours = frame_pixels(files[0], media["duration"] - 1.0, points)
        for colour, wanted in zip(colours, QUADRANTS):
            self.assertTrue(near(colour, wanted), f"{colours}, wanted {QUADRANTS}")

    def test_escape_before_acceptance_ends_the_selection_on_every_screen(self):
        app = self.arm("Main_Custom_Area")
        shown = e2e.wait_until(
            lambda: (lambda ids: ids if len(ids) == len(e2e.monitors()) else None)(overlays()),
            10, "an overlay a screen")
        e2e.xdotool("mousemove", 300, 300)
        time.sleep(0.3)
        e2e.key("Escape")
        e2e.wait_until(lambda: not set(shown) & set(overlays()), 5, "the overlays to go")
        app.widget("btnStartRecrord", role="push button")
        self.assertEqual(app.recordings(), [])


if __name__ == "__main__":
    e2e.main()

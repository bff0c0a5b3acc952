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


class OffsetLayout:
    """The desk's monitors laid out as a laptop panel left of a shorter primary monitor, so the
    primary does not sit at the root's origin: LEFT 800 x 1080 at (0, 0), MAIN 1120 x 900 at
    (800, 0). The desk's own monitors come back afterwards."""

    LAYOUT = (("LEFT", "800/212x1080/286+0+0", "screen"),
              ("*MAIN", "1120/296x900/238+800+0", "none"))

    def __enter__(self):
        out = subprocess.run(["xrandr", "--listmonitors"], capture_output=True, text=True,
                             check=True).stdout
        self.saved = []
        for line in out.splitlines()[1:]:
            fields = line.split()
            name, geometry = fields[1].lstrip("+"), fields[2]
            self.saved.append((name, geometry, fields[3] if len(fields) > 3 else "none"))
        self.apply([name.lstrip("*") for name, _, _ in self.saved], self.LAYOUT)
        return self

    def __exit__(self, *exc):
        self.apply([name.lstrip("*") for name, _, _ in self.LAYOUT], self.saved)

    @staticmethod
    def apply(old_names, monitors):
        for name in old_names:
            subprocess.run(["xrandr", "--delmonitor", name], check=True)
        for name, geometry, output in monitors:
            subprocess.run(["xrandr", "--setmonitor", name, geometry, output], check=True)
        time.sleep(1.0)  # the window manager and the X clients follow


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

    def record_region(self, monitor, how="drag"):
        """Marks the pattern on a monitor as the region (drag: from its upper left to its lower
        right; reversed: the other way; click: a click on it, hover having proposed it),
        accepts it with Return, records 3 s; checks the file's size and its quadrants."""
        mx, my, mw, mh = e2e.monitors()[monitor]
        # Above the main window, which sits in the middle of the main monitor.
        x, y = mx + 100, my + 40
        with PatternWindow(x, y):
            app = self.arm("Main_Custom_Area")
            corners = ((x, y), (x + PATTERN[0], y + PATTERN[1]))
            if how == "click":
                e2e.xdotool("mousemove", x + 50, y + 50)
                time.sleep(0.3)
                e2e.click(x + 60, y + 60)
                time.sleep(0.6)  # longer than a slip of the hand
            else:
                self.drag(*(corners if how == "drag" else corners[::-1]))
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
        app.stop()

    def test_a_region_on_the_left_monitor_is_recorded_upright_and_even_sided(self):
        self.record_region(0)

    def test_a_region_on_the_right_monitor_is_recorded_upright_and_even_sided(self):
        self.record_region(1)

    def test_regions_on_both_monitors_of_an_offset_layout_are_recorded_upright(self):
        with OffsetLayout():
            self.assertEqual(e2e.main_monitor(), (800, 0, 1120, 900))
            for monitor in (1, 0):
                with self.subTest(monitor=e2e.monitors()[monitor]):
                    self.record_region(monitor)

    def test_a_click_keeps_the_proposed_window_and_a_reversed_drag_equals_the_drag(self):
        for how in ("click", "reversed"):
            with self.subTest(how=how):
                self.record_region(0, how)

    def test_a_thin_band_is_widened_and_the_label_shows_the_content_less_four(self):
        app = self.arm("Main_Custom_Area")
        mx, my, _, _ = e2e.monitors()[0]
        x, y = mx + 200, my + 100
        self.drag((x, y), (x + 10, y + 300))
        # 10 x 300 grows to the least side, 64; the label tells 4 less than the content.
        label = app.widget("frameTextField", timeout=5)
        app.wait(lambda: label.name == "60x296", 5, f"the size label (it reads {label.name!r})")
        e2e.key("Return")
        app.widget("btnStopRecord", role="push button", timeout=10)
        app.hold(time.monotonic() + 2.0)
        app.stop_recording()
        files = app.recordings()
        media = e2e.probe(files[0])
        self.assertEqual((media["width"], media["height"]), (60, 296))

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

    def test_a_countdown_of_three_shows_three_two_one_and_records_after_it(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        with e2e.PopupWatch() as watch:
            app.press("startSetsBtn")
            menu = app.wait(lambda: next(iter(watch.menus()), None), 5, "the timing menu")
            countdown = next(c for c in menu if c is not None and c.name == "Record After Countdown")
            e2e.click(*e2e.centre(countdown))
            item = app.wait(lambda: next((c for m in watch.menus() for c in m
                                          if c is not None and c.name == "3 Seconds"), None),
                            5, "the countdown's submenu")
            with ScreenFilm(self.band()) as film:
                e2e.click(*e2e.centre(item))
                chosen = time.monotonic()
                app.widget("btnStopRecord", role="push button", timeout=10)
                began = time.monotonic()
                time.sleep(0.5)
        # A silent second, three of numbers, then the recording (the encoder's start included).
        self.assertGreater(began - chosen, 3.5)
        self.assertLess(began - chosen, 5.5)
        app.hold(began + 3.0)
        app.stop_recording()
        files = app.recordings()
        self.assertEqual(len(files), 1, files)
        self.assertAlmostEqual(e2e.probe(files[0])["duration"], 3.0, delta=1.0)

        # The counter stands in the middle of the recorded screen: three numbers a second each
        # (3, 2, 1, each another shape), then nothing.
        numbers = film.numbers()
        self.assertEqual(len(numbers), 3, numbers)
        for shown, seconds in numbers:
            self.assertAlmostEqual(seconds, 1.0, delta=0.35, msg=numbers)
        self.assertEqual(len({shown for shown, _ in numbers}), 3, numbers)

    def band(self):
        """The 200 px high band across the monitors' middles, where the counter stands."""
        monitors = e2e.monitors()
        middle = monitors[0][1] + monitors[0][3] // 2
        right = max(x + w for x, y, w, h in monitors)
        return (0, middle - 100, right, 200)


class ScreenFilm:
    """Films a band of the screen at 10 frames a second while in the with block."""

    RATE = 10

    def __init__(self, band):
        self.x, self.y, self.w, self.h = band
        import tempfile
        self.path = os.path.join(tempfile.mkdtemp(prefix="capstan-e2e-film-"), "band.nut")

    def __enter__(self):
        self.process = subprocess.Popen(
            ["ffmpeg", "-v", "error", "-y", "-f", "x11grab", "-framerate", str(self.RATE),
             "-video_size", f"{self.w}x{self.h}", "-i",
             f"{os.environ['DISPLAY']}+{self.x},{self.y}", "-c:v", "ffv1", self.path],
            stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(0.5)
        return self

    def __exit__(self, *exc):
        self.process.communicate(b"q", timeout=30)

    def frames(self):
        raw = subprocess.run(["ffmpeg", "-v", "error", "-i", self.path, "-f", "rawvideo",
                              "-pix_fmt", "rgb24", "-"], capture_output=True, check=True,
                             timeout=120).stdout
        size = self.w * self.h * 3
        return [raw[i:i + size] for i in range(0, len(raw) - size + 1, size)]

    def numbers(self):
        """[(the number's shape, seconds shown)] in order: runs of frames with a white number
        in a monitor's middle, told apart by the white of the middle 80 x 80."""
        centres = [x + w // 2 - self.x for x, y, w, h in e2e.monitors()]
        runs = []
        for frame in self.frames():
            def white(x, y):
                i = (y * self.w + x) * 3
                return all(c > 200 for c in frame[i:i + 3])

            shape = None
            for cx in centres:
                middle = tuple(white(cx + dx, self.h // 2 + dy) for dy in range(-40, 41, 8)
                               for dx in range(-40, 41, 8))
                if sum(middle) > 5:
                    shape = middle
            # A frame caught while the screen was being drawn differs in a few points only.
            if runs and (shape is None) == (runs[-1][0] is None) and (
                    shape is None or sum(a != b for a, b in zip(shape, runs[-1][0])) <= 8):
                runs[-1][1] += 1
            else:
                runs.append([shape, 1])
        return [(shape, count / self.RATE) for shape, count in runs
                if shape is not None and count > 1]

if __name__ == "__main__":
    e2e.main()

"""Recording from the main window on the test desktop, checked in the files a user gets: the
movie or sound file (read back with ffprobe and ffmpeg), the list of recordings window and the
list's property list."""
import datetime
import os
import re
import time

import capstan_e2e as e2e
from capstan_e2e import english_text

TIME_TEXT = re.compile(r"\d\d:\d\d:\d\d")


class RecordFlowTest(e2e.CapstanTestCase):
    def assertCountedUp(self, seen, last_second, what):
        """The time label showed every second from 1 to last_second, in order."""
        for text in seen:
            self.assertRegex(text, TIME_TEXT, f"{what}: {seen}")
        self.assertEqual(seen, sorted(seen), f"{what}: the label went back: {seen}")
        wanted = [e2e.duration_text(s) for s in range(1, last_second + 1)]
        self.assertTrue(set(wanted) <= set(seen), f"{what}: the label read {seen}")

    def only_recording(self, app, extension, pressed_at):
        """The one file in ~/Videos/Capstan: named yyyyMMdd_HHmmss.EXT for the time recording
        began."""
        files = app.recordings()
        self.assertEqual(len(files), 1, f"files in {app.videos}: {files}")
        named = e2e.recording_name_time(files[0], extension)
        self.assertIsNotNone(named, f"{files[0]} is not named yyyyMMdd_HHmmss{extension}")
        begun = pressed_at.replace(microsecond=0)
        self.assertTrue(begun - datetime.timedelta(seconds=1) <= named
                        <= datetime.datetime.now(), f"{files[0]}: pressed at {pressed_at}")
        return files[0]

    def assertSizeText(self, text, size, what):
        # Megabytes, as the program counts them elsewhere (1024 * 1024); 10^6 accepted too.
        self.assertIn(text, ("%.2f M" % (size / 1048576), "%.2f M" % (size / 1e6)),
                      f"{what}: size {size}")

    def test_full_screen_recording_of_five_seconds(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        mx, my, mw, mh = e2e.monitors()[0]

        start, pressed_at, seen = app.start_recording()
        app.hold(start + 5.0, "recordCurrentTimelabel", seen)
        app.stop_recording()
        self.assertCountedUp(seen, 4, "recordCurrentTimelabel")

        path = self.only_recording(app, ".mp4", pressed_at)
        media = e2e.probe(path)
        self.assertEqual(len(media["video"]), 1, media["streams"])
        self.assertAlmostEqual(media["duration"], 5.0, delta=1.0)

        # The list of recordings opens, the new one on top.
        files = app.window(desc="FileListWindowController")
        self.assertEqual(files.name, english_text("FileList", "Recordings"))
        rows = self.rows(app, files)
        self.assertGreaterEqual(len(rows), 1)
        self.assertEqual(rows[0].name, os.path.basename(path))

        records = app.wait(app.recording_list, 5, "filelist.plist")
        self.assertEqual(len(records), 1, records)
        record = records[0]
        self.assertEqual(record.get("path"), path)
        self.assertEqual(record.get("name"), os.path.basename(path))
        self.assertEqual(record.get("isVideo"), 1)
        self.assertAlmostEqual(record.get("duration"), media["duration"], delta=1.0)
        self.assertGreater(record.get("size", 0), 0)
        self.assertLessEqual(record["size"], os.path.getsize(path))
        self.assertRegex(record.get("date", ""), r"^\d{4}/\d\d/\d\d \d\d:\d\d:\d\d$")

        self.assertEqual(app.text("durationLabel", root=rows[0]),
                         e2e.duration_text(record["duration"]))
        self.assertSizeText(app.text("sizeLabel", root=rows[0]), record["size"], "sizeLabel")

        # The overlay holds the screen's sides to multiples of 4, makes them even and 2 smaller
        # for the encoder, and the capture takes 2 more.
        expected = tuple(2 * ((side // 4 * 4) // 2) - 2 - 2 for side in (mw, mh))
        self.assertEqual((media["width"], media["height"]), expected,
                         f"the first monitor {(mw, mh)} as the overlay hands it on")

    def test_without_a_sound_server_the_windows_work_and_the_recording_is_silent(self):
        app = self.launch(start=False)
        app.extra_environment["PULSE_SERVER"] = os.path.join(app.home, "no-sound-server")
        app.start()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        # No microphone to be had: the choice is refused with the alert and goes back.
        app.choose("audioItemBox", english_text("Main_Audio_Micphone", "Microphone"))
        app.dismiss(app.alert(text=english_text("Alert_Mic_Message", None), key="Alert_Mic_Message"))
        app.choose("audioItemBox", english_text("Main_Audio_System", "System Audio"))

        start, pressed_at, seen = app.start_recording()
        app.hold(start + 3.0, "recordCurrentTimelabel", seen)
        app.stop_recording()
        path = self.only_recording(app, ".mp4", pressed_at)
        media = e2e.probe(path)
        self.assertEqual(len(media["video"]), 1, media["streams"])
        self.assertAlmostEqual(media["duration"], 3.0, delta=1.0)
        if media["audio"]:
            self.assertLess(e2e.mean_volume(path), -80.0, "a sound stream holds sound")

    def rows(self, app, files):
        app.widget("tableView", root=files)
        rows = e2e.find_all(files, desc="VideoCell")
        return sorted(rows, key=lambda r: e2e.extents(r)[1])

    def test_paused_time_is_left_out(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        start, pressed_at, _ = app.start_recording()

        app.hold(start + 2.5)
        app.press("btnPauseRecord")
        paused = time.monotonic()
        app.widget("btnContinueRecord", role="push button")
        app.hold(paused + 3.0)
        app.press("btnContinueRecord")
        resumed = time.monotonic()
        app.widget("btnPauseRecord", role="push button")
        app.hold(resumed + 2.5)
        app.press("btnPauseRecord")
        paused_again = time.monotonic()
        app.widget("btnContinueRecord", role="push button")
        app.hold(paused_again + 1.5)
        app.stop_recording()  # while paused

        running = (paused - start) + (paused_again - resumed)
        path = self.only_recording(app, ".mp4", pressed_at)
        self.assertAlmostEqual(e2e.probe(path)["duration"], running, delta=1.0,
                               msg=f"recorded {running:.1f} s, paused 4.5 s")

    def record_sound_only(self, extension):
        app = self.launch(loopback=True)
        app.main_window()
        app.enter_source("Main_Audio_Only")
        app.choose("onlyAudio_AudioTypePopBtn", english_text("Main_Audio_System", "System Audio"))
        app.choose("audioExtensionBox", extension)

        start, pressed_at, seen = app.start_recording(label="audioprogressLabel")
        tone_seconds = 4
        tone = e2e.play_tone(tone_seconds)
        try:
            app.hold(time.monotonic() + tone_seconds, "audioprogressLabel", seen)
            app.wait(lambda: tone.poll() is not None, 10, "the tone to end")
        finally:
            if tone.poll() is None:
                tone.kill()
            tone.wait()
        self.assertEqual(tone.returncode, 0, "the tone did not play")
        app.hold(time.monotonic() + 0.5, "audioprogressLabel", seen)
        stopped = app.stop_recording()
        self.assertCountedUp(seen, 4, "audioprogressLabel")

        path = self.only_recording(app, extension, pressed_at)
        media = e2e.probe(path)
        self.assertEqual(media["video"], [], media["streams"])
        self.assertEqual(len(media["audio"]), 1, media["streams"])
        self.assertAlmostEqual(media["duration"], stopped - start, delta=1.0)
        self.assertAlmostEqual(e2e.sounding_seconds(path, duration=media["duration"]),
                               tone_seconds, delta=1.0, msg="the tone's length in the file")
        self.assertGreater(e2e.mean_volume(path), -40.0)

        records = app.wait(app.recording_list, 5, "filelist.plist")
        self.assertEqual([r.get("path") for r in records], [path])

    def test_sound_only_mp3(self):
        self.record_sound_only(".mp3")

    def test_sound_only_wav(self):
        self.record_sound_only(".wav")

    def test_sound_only_m4a(self):
        self.record_sound_only(".m4a")


if __name__ == "__main__":
    e2e.main()

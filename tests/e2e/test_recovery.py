"""A recording cut short by SIGKILL on the test desktop: the next start finds its files, lists
them with the lengths the files themselves give, tells the user once, and gives the sound server
back the default devices it had before the program rerouted the sound."""
import os
import time

import capstan_e2e as e2e


def recovery_alert(app, names, timeout=10):
    """The message box that names every one of names; its dialog."""

    def naming_all(w):
        texts = " ".join(label.name or "" for label in e2e.find_all(w, role="label"))
        return all(name in texts for name in names)

    return app.wait(lambda: next((w for w in app.windows()
                                  if w.getRoleName() in ("alert", "dialog") and naming_all(w)),
                                 None), timeout, f"a message naming {names}")


def no_dialog_for(app, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        shown = [w for w in app.windows() if w.getRoleName() in ("alert", "dialog")]
        if shown:
            return shown
        time.sleep(0.2)
    return []


class RecoveryTest(e2e.CapstanTestCase):
    def record_and_kill(self, app, seconds):
        app.main_window()
        app.enter_source("Main_Full_Screen")
        begun, _, _ = app.start_recording()
        app.hold(begun + seconds)
        app.process.kill()
        app.process.wait(10)

    def restart(self, app):
        app.start()
        app.main_window()

    def test_a_killed_recording_is_listed_at_the_next_start_and_told_once(self):
        app = self.launch(loopback=True)
        desk_sink, desk_source = e2e.pactl("get-default-sink"), e2e.pactl("get-default-source")
        self.record_and_kill(app, 5.0)
        self.assertNotEqual(e2e.pactl("get-default-sink"), desk_sink,
                            "the recording rerouted the sound")
        files = app.recordings()
        self.assertEqual(len(files), 1, files)
        self.assertFalse(os.path.getsize(app.plist_path) and app.recording_list(),
                         "nothing listed before the next start")

        self.restart(app)
        # The defaults come back before anything else is done.
        app.wait(lambda: e2e.pactl("get-default-sink") == desk_sink, 10, "the default sink back")
        self.assertEqual(e2e.pactl("get-default-source"), desk_source)
        name = os.path.basename(files[0])
        app.dismiss(recovery_alert(app, [name]))
        records = app.recording_list()
        self.assertEqual([r["path"] for r in records], files)
        self.assertAlmostEqual(records[0]["duration"], 5.0, delta=1.5)
        self.assertEqual(records[0]["size"], os.path.getsize(files[0]))

        self.assertEqual(app.stop(), 0)
        self.restart(app)
        self.assertEqual(no_dialog_for(app, 3.0), [], "told once only")
        self.assertEqual(len(app.recording_list()), 1)

    def test_every_part_of_a_killed_split_recording_is_listed(self):
        app = self.launch(start=False)
        os.makedirs(os.path.dirname(app.settings_path), exist_ok=True)
        with open(app.settings_path, "w") as f:
            f.write("[General]\nSplitType=1\nSplitTime=2\nSplitAlway=true\n")
        app.start()
        self.record_and_kill(app, 5.0)
        files = app.recordings()
        self.assertGreaterEqual(len(files), 3, files)

        self.restart(app)
        app.dismiss(recovery_alert(app, [os.path.basename(f) for f in files]))
        records = app.recording_list()
        self.assertEqual(sorted(r["path"] for r in records), sorted(files))
        self.assertAlmostEqual(sum(r["duration"] for r in records), 5.0, delta=1.5)


if __name__ == "__main__":
    e2e.main()

"""Recordings that stop or split by themselves, set through the rule windows as a user sets
them, checked in the files and the settings they leave: a stop after five recorded seconds for
this recording only, a split every three seconds for every recording, and the end action that
quits the program once the list is written."""
import os
import re
import time

import capstan_e2e as e2e
from capstan_e2e import english_text


def setting(app, key):
    """A value of the settings file as written (QSettings' INI), or None."""
    try:
        with open(app.settings_path, encoding="utf-8") as f:
            for line in f:
                name, _, value = line.rstrip("\n").partition("=")
                if name == key:
                    return value
    except OSError:
        pass
    return None


class TimedRecordingTest(e2e.CapstanTestCase):
    def choose_from_timing_menu(self, app, submenu_key, item_key):
        with e2e.PopupWatch() as watch:
            app.click(app.widget("startSetsBtn"))
            menu = app.wait(lambda: next(iter(watch.menus()), None), 5, "the timing menu")
            title = english_text(submenu_key, submenu_key)
            submenu = next(c for c in menu if c is not None and c.name == title)
            e2e.click(*e2e.centre(submenu))
            text = english_text(item_key, item_key)
            item = app.wait(lambda: next((c for m in watch.menus() for c in m
                                          if c is not None and c.name == text), None),
                            5, f"the item {text!r}")
            e2e.click(*e2e.centre(item))

    def rule_window(self, app, desc):
        """A rule window once it stands still: it is placed after it is made."""
        window = app.window(desc=desc)
        last = None
        for _ in range(30):
            now = e2e.extents(window)
            if now == last:
                break
            last = now
            time.sleep(0.1)
        return window

    def click_control(self, app, window, desc):
        # A framed dialog's controls are reported where they are on the screen (its own corner
        # is its frame's), so the click goes to their reported middle.
        control = app.widget(desc, root=window)
        app.wait(lambda: e2e.is_enabled(control), 5, f"{desc} to be enabled")
        e2e.click(*e2e.centre(control))

    def type_number(self, app, window, desc, number):
        field = app.widget(desc, root=window)
        app.wait(lambda: e2e.is_enabled(field), 5, f"the field {desc} to be enabled")
        field.queryEditableText().setTextContents(str(number))
        app.wait(lambda: field.queryText().getText(0, -1) == str(number), 5,
                 f"the field {desc} to read {number}")

    def confirm(self, app, window, desc):
        self.click_control(app, window, "btnOK")
        e2e.wait_until(lambda: app.find(desc=desc) is None, 5, f"{desc} to close")

    def set_stop_rule(self, app, seconds, once=True, quit_after=False):
        self.choose_from_timing_menu(app, "ID_MAINPOPMENU_AUTOSTOP", "ID_MAINPOPMENU_AUTOSTOP_2")
        window = self.rule_window(app, "AutoTimeSetWindow")
        self.click_control(app, window, "lblEnabledAutoStop")
        self.click_control(app, window, "lblFileSizeSetTime")
        self.type_number(app, window, "1000", seconds)
        self.click_control(app, window, "lblStopSettingOnce" if once else "lblStopSettingEveryTime")
        if quit_after:
            app.choose(app.widget("finshpopBtn", root=window), english_text("chCtrl4", "Quit"))
        self.confirm(app, window, "AutoTimeSetWindow")

    def test_a_stop_after_five_seconds_for_this_recording_only(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        self.set_stop_rule(app, 5)
        app.wait(lambda: setting(app, "IsAutoStop") == "1", 5, "the rule to be stored")

        begun, _, _ = app.start_recording()
        app.widget("btnStartRecrord", role="push button", timeout=15)
        self.assertAlmostEqual(time.monotonic() - begun, 5.0, delta=1.5)
        files = app.recordings()
        self.assertEqual(len(files), 1, files)
        self.assertAlmostEqual(e2e.probe(files[0])["duration"], 5.0, delta=0.6)
        # For this recording only: the rule is cleared, the next recording runs on.
        app.wait(lambda: setting(app, "IsAutoStop") == "0", 5, "the rule to be cleared")
        begun, _, _ = app.start_recording()
        app.hold(begun + 7.0)
        app.widget("btnStopRecord", role="push button")
        app.stop_recording()

    def test_a_split_every_three_seconds_gives_numbered_parts_and_stays(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        app.click(app.widget("splitSetsBtn"))
        window = self.rule_window(app, "AutoSplitSetsWindow")
        self.click_control(app, window, "lblEnabledAutoSplit")
        self.click_control(app, window, "lblSplitByTime")
        self.type_number(app, window, "1000", 3)
        self.click_control(app, window, "Auto_lblStopSettingEveryTime")
        self.confirm(app, window, "AutoSplitSetsWindow")

        begun, _, _ = app.start_recording()
        app.hold(begun + 10.0)
        app.stop_recording()
        files = app.recordings()
        self.assertEqual(len(files), 4, files)
        first = os.path.basename(files[0])
        stem, ext = os.path.splitext(first)
        self.assertEqual([os.path.basename(f) for f in sorted(files, key=len)],
                         [first] + [f"{stem}_{n}{ext}" for n in (2, 3, 4)])
        durations = [e2e.probe(f)["duration"] for f in sorted(files, key=len)]
        for part in durations[:3]:
            self.assertAlmostEqual(part, 3.0, delta=0.7, msg=durations)
        self.assertAlmostEqual(sum(durations), 10.0, delta=1.5, msg=durations)
        # Every recording: the rule stays for the next one.
        self.assertEqual(setting(app, "SplitType"), "1")
        self.assertEqual(setting(app, "SplitAlway"), "true")

    def test_the_quit_action_ends_the_program_after_the_list_is_written(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        self.set_stop_rule(app, 3, quit_after=True)
        app.start_recording()
        self.assertEqual(app.wait_exit(15), 0)
        files = app.recordings()
        self.assertEqual(len(files), 1, files)
        records = app.recording_list()
        self.assertEqual([r.get("path") for r in records], files)
        self.assertEqual(setting(app, "AutoStop_FinshIndex"), "2")
        self.assertTrue(re.fullmatch(r"\d+", setting(app, "AutoStop_Time") or ""))


if __name__ == "__main__":
    e2e.main()

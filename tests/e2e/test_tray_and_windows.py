"""The program away from its main window: the tray icon's menu (pause, resume and stop, the
screenshot and camera entries), its middle-click menu and left click that hide and show the
main window, what closing the main window does, and the list of recordings handing files and
folders to the desktop's applications."""
import datetime
import glob
import os
import pathlib
import subprocess
import time

import capstan_e2e as e2e
from capstan_e2e import english_text


class TrayMenuTest(e2e.CapstanTestCase):
    def test_pause_resume_and_stop_from_the_tray(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        start, _, _ = app.start_recording()
        app.hold(start + 2.0)

        paused = app.choose_tray_item("Menu_Edit_Pause", "Pause/Resume")
        app.widget("btnContinueRecord", role="push button")
        # A paused recording gains no time, and its time label says so.
        app.hold(paused + 0.7)
        shown = app.text("recordCurrentTimelabel")
        app.hold(paused + 3.0)
        self.assertEqual(app.text("recordCurrentTimelabel"), shown, "the label counted the pause")

        resumed = app.choose_tray_item("Menu_Edit_Pause", "Pause/Resume")
        app.widget("btnPauseRecord", role="push button")
        app.hold(resumed + 2.0)
        paused_again = app.choose_tray_item("Menu_Edit_Pause", "Pause/Resume")
        app.widget("btnContinueRecord", role="push button")
        app.hold(paused_again + 1.0)
        app.choose_tray_item("Menu_Edit_Start", "Start/Stop Recording")  # while paused
        app.widget("btnStartRecrord", role="push button", timeout=30)

        running = (paused - start) + (paused_again - resumed)
        files = app.recordings()
        self.assertEqual(len(files), 1, files)
        self.assertAlmostEqual(e2e.probe(files[0])["duration"], running, delta=1.0,
                               msg=f"recorded {running:.1f} s, paused {resumed - paused:.1f} s")

    def test_the_camera_entry_takes_the_screenshot_and_the_screenshot_entry_the_camera(self):
        # The two entries act the other way round from their titles, on purpose.
        if glob.glob("/dev/video*"):
            self.skipTest("this desk has a camera: the alert for a missing one cannot show")
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        camera_off = english_text("Main_Off", "Off")
        self.assertEqual(app.widget("captrueItemBox").name, camera_off)

        taken = datetime.datetime.now().replace(microsecond=0)
        app.choose_tray_item("Menu_Edit_Captrue", "Camera On/Off")
        shots = app.wait(lambda: app.recordings(), 10, "a screenshot in ~/Videos/Capstan")
        self.assertEqual(len(shots), 1, shots)
        shot = shots[0]
        named = e2e.recording_name_time(shot, ".png")
        self.assertIsNotNone(named, f"{shot} is not named yyyyMMdd_HHmmss.png")
        self.assertTrue(taken - datetime.timedelta(seconds=1) <= named <= datetime.datetime.now(),
                        f"{shot}: taken at {taken}")
        self.assertEqual(e2e.png_size(shot), e2e.main_monitor()[2:], "the main display's size")

        records = app.wait(app.recording_list, 5, "the screenshot in filelist.plist")
        self.assertEqual(len(records), 1, records)
        record = records[0]
        self.assertEqual(record.get("path"), shot)
        self.assertEqual(record.get("name"), os.path.basename(shot))
        self.assertEqual(record.get("isImage"), 1)
        self.assertNotIn("isVideo", record)
        self.assertEqual(record.get("duration"), 0)
        self.assertEqual(record.get("size"), os.path.getsize(shot))
        self.assertRegex(record.get("date", ""), r"^\d{4}/\d\d/\d\d \d\d:\d\d:\d\d$")

        app.choose_tray_item("Menu_Edit_ScreenShort", "Screenshot")
        alert = app.alert(text=english_text("Alert_Camera_Message", None),
                          key="Alert_Camera_Message")
        app.dismiss(alert)
        self.assertEqual(app.widget("captrueItemBox").name, camera_off)
        self.assertEqual(app.recordings(), shots, "the camera entry took a screenshot")


def overlap_centre(a, b):
    """The centre of where two rectangles (x, y, width, height) overlap."""
    left, top = max(a[0], b[0]), max(a[1], b[1])
    right, bottom = min(a[0] + a[2], b[0] + b[2]), min(a[1] + a[3], b[1] + b[3])
    if right <= left or bottom <= top:
        raise AssertionError(f"{a} and {b} do not overlap")
    return ((left + right) // 2, (top + bottom) // 2)


class WindowMenuTest(e2e.CapstanTestCase):
    def window_menu(self, app):
        """The middle-click menu's items as (text, enabled); the menu is closed again."""
        menu = app.open_tray_menu(button=2)
        try:
            return e2e.menu_items(menu)
        finally:
            app.close_menu(menu)

    def test_hide_from_the_window_menu_and_show_by_a_left_click(self):
        hide = english_text("hideMain", "Hide Capstan")
        show = english_text("showMain", "Show Capstan")
        app = self.launch()
        window = app.main_window()
        place = app.geometry(window)
        self.assertEqual(app.opacity(), 1.0)
        # A left click on the icon shows a hidden window and leaves a shown one be: the menu,
        # which names what it would do, still offers to hide it.
        app.click_tray_icon()
        self.assertEqual(self.window_menu(app), [(hide, True)])
        self.assertEqual(app.opacity(), 1.0)

        # A window of someone else's under the main window catches the clicks that go through.
        with e2e.PointerCatcher(place) as below:
            app.choose_tray_item("hideMain", "Hide Capstan", button=2)
            app.wait(lambda: app.opacity() == 0.0, 5, "the main window to turn transparent")

            def main_window_over_catcher():
                order = e2e.stacking_order()
                main = app.x_window(app.main_window())[0]
                if order.index(main) > order.index(below.window_id):
                    return True
                e2e.xdotool("windowraise", main)
                return False

            app.wait(main_window_over_catcher, 5, "the hidden main window to lie over the catcher")
            x, y = overlap_centre(place, e2e.x_geometry(below.window_id))
            e2e.click(x, y)
            app.wait(lambda: below.presses() == 1, 5,
                     f"the click at {(x, y)} on the hidden window to reach the window below")
        self.assertEqual(app.opacity(), 0.0)
        self.assertEqual(self.window_menu(app), [(show, True)])

        app.click_tray_icon()
        app.wait(lambda: app.opacity() == 1.0, 5, "a left click on the tray icon to show it")
        self.assertEqual(app.geometry(app.main_window()), place)
        # It takes clicks again.
        app.click(app.widget("Main_Full_Screen"))
        app.view(220)
        self.assertEqual(self.window_menu(app), [(hide, True)])


class CloseTest(e2e.CapstanTestCase):
    def close_main_window(self, app):
        # Pressed through the accessibility bus: the list window may lie over the main window.
        app.press(app.widget("closeButton", root=app.main_window()))

    def test_closing_with_the_list_open_hides_the_window(self):
        app = self.launch()
        files = app.open_file_list()
        self.close_main_window(app)
        app.wait(lambda: app.opacity() == 0.0, 5, "the main window to hide")
        self.assertTrue(app.running())
        # The program goes on: its list window still shows and answers.
        self.assertEqual(app.window(desc="FileListWindowController"), files)
        app.widget("tableView", root=files)
        app.widget("openDirBtn", root=files)
        self.assertTrue(app.running())

    def test_closing_during_a_recording_hides_the_window_and_records_on(self):
        app = self.launch()
        app.main_window()
        app.enter_source("Main_Full_Screen")
        start, _, seen = app.start_recording()
        self.close_main_window(app)
        closed = app.wait(lambda: app.opacity() == 0.0 and time.monotonic(), 5,
                          "the main window to hide")
        files = app.recordings()
        self.assertEqual(len(files), 1, files)
        size = os.path.getsize(files[0])
        app.hold(closed + 2.0, "recordCurrentTimelabel", seen)
        app.wait(lambda: os.path.getsize(files[0]) > size, 5, "the recording's file to grow")
        # The hidden window's time label went on counting.
        self.assertGreaterEqual(e2e.seconds_of(seen[-1]), int(closed - start) + 1, seen)

        stopped = app.choose_tray_item("Menu_Edit_Start", "Start/Stop Recording")
        app.widget("btnStartRecrord", role="push button", timeout=30)
        self.assertAlmostEqual(e2e.probe(files[0])["duration"], stopped - start, delta=1.0)

    def test_closing_otherwise_ends_the_program_and_its_aggregate_devices(self):
        app = self.launch(loopback=True)
        app.main_window()
        app.enter_source("Main_Full_Screen")
        both = {"MR-OutputDevice", "MR-InputDevice"}
        app.wait(lambda: e2e.aggregate_devices() == both, 10,
                 "the aggregate devices on the sound server")
        self.close_main_window(app)
        try:
            status = app.wait_exit(10)
        except e2e.WaitTimeout:
            self.fail(f"capstan still runs 10 s after its only window was closed; the window's "
                      f"opacity is {app.opacity():g}")
        self.assertEqual(status, 0, app.read_log())
        self.assertEqual(e2e.aggregate_devices(), set())


class ListWindowHandsOnTest(e2e.CapstanTestCase):
    def prepare(self, app, records):
        """Starts app with records [(path, isImage)] in its list, their files made where their
        folder is, and a default application for movies, pictures and folders that notes what
        it opens."""
        os.makedirs(app.videos)
        listed = []
        for minute, (path, image) in enumerate(records):
            if os.path.isdir(os.path.dirname(path)):
                if image:
                    subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i",
                                    "testsrc=size=64x48", "-frames:v", "1", path],
                                   check=True, timeout=60)
                else:
                    e2e.make_movie(path, 1)
            record = {"path": path, "name": os.path.basename(path), "duration": 0.0 if image
                      else 1.0, "size": 1000.0, "date": f"2024/01/05 10:{minute:02d}:00"}
            record["isImage" if image else "isVideo"] = 1
            listed.append(record)
        e2e.write_plist(app.plist_path, listed)
        self.opener = e2e.DefaultApplication(app, ["video/mp4", "image/png", "inode/directory"])
        app.start()

    def expect_opened(self, app, expected):
        """Waits for the default application to have been started with expected, in order."""
        try:
            app.wait(lambda: self.opener.opened() == expected, 10, f"{expected} to be opened")
        except e2e.WaitTimeout:
            self.fail(f"the default application opened {self.opener.opened()}, not {expected}")

    def select(self, app, files, row):
        app.click(row)
        app.wait(lambda: e2e.selected_rows(files) == [row.name], 5, f"{row.name} selected")

    def test_a_double_click_opens_the_file_with_the_default_application(self):
        app = self.launch(start=False)
        picture = os.path.join(app.videos, "20240105_101600.png")
        movie = os.path.join(app.videos, "20240105_101500.mp4")
        self.prepare(app, [(picture, True), (movie, False)])
        files = app.open_file_list()
        app.row_names(files, 2)
        top, second = e2e.list_rows(files)

        app.click(second, repeat=2)
        self.expect_opened(app, [movie])
        app.click(top, repeat=2)
        self.expect_opened(app, [movie, picture])

    def test_show_in_folder_asks_the_file_manager_or_opens_the_folder(self):
        app = self.launch(start=False)
        movie = os.path.join(app.videos, "20240105_101500.mp4")
        gone = os.path.join(app.home, "Gone", "20240105_101400.mp4")
        self.prepare(app, [(movie, False), (gone, False)])
        files = app.open_file_list()
        app.row_names(files, 2)
        present, away = e2e.list_rows(files)
        show = app.widget("openDirBtn", root=files)

        with e2e.FakeFileManager() as manager:
            # A recording whose folder is gone asks for nothing; the next one is shown selected
            # in its parent folder.
            self.select(app, files, away)
            app.press(show)
            self.select(app, files, present)
            app.press(show)
            asked = [("ShowItems", [pathlib.Path(app.videos).as_uri()], "")]
            app.wait(lambda: manager.calls() == asked, 5,
                     f"the file manager to be asked to show {app.videos}")
        self.assertEqual(self.opener.opened(), [])

        # Without a file manager the folder that holds it opens.
        app.press(show)
        self.expect_opened(app, [app.movies])


if __name__ == "__main__":
    e2e.main()

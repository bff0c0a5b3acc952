"""The main window on the test desktop: the home view, the five sources and the way back, and
the tray menu that follows what the window shows."""
import capstan_e2e as e2e
from capstan_e2e import english_text

HOME = (628, 197)
# Home button, the mode's text in the source pop-up, the window's height on its source screen,
# a control that only that kind of source screen shows.
MODES = [
    ("Main_Full_Screen", "Full Screen", 220, "chooseViewItemBox"),
    ("Main_Custom_Area", "Custom Area", 220, "chooseViewItemBox"),
    ("Main_App_Window", "App Window", 220, "chooseViewItemBox"),
    ("Main_Camera", "Camera", 490, "captruesBox"),
    ("Main_Audio_Only", "Audio Only", 220, "onlyAudio_AudioTypePopBtn"),
]
TRAY_ITEMS = [
    ("Menu_Edit_Start", "Start/Stop Recording"),
    ("Menu_Edit_Pause", "Pause/Resume"),
    ("Menu_Edit_Captrue", "Camera On/Off"),
    ("Menu_Edit_ScreenShort", "Screenshot"),
    ("Menu_Edit_DooleTool", "Drawing Tools"),
]


def centre_of(rect):
    x, y, w, h = rect
    return (x + w / 2, y + h / 2)


class MainWindowTest(e2e.CapstanTestCase):
    def assertSameCentre(self, before, after, what):
        (bx, by), (ax, ay) = centre_of(before), centre_of(after)
        self.assertLessEqual(abs(ax - bx), 1, f"{what}: the centre moved from {before} to {after}")
        self.assertLessEqual(abs(ay - by), 1, f"{what}: the centre moved from {before} to {after}")

    def test_home_view(self):
        app = self.launch()
        window = app.main_window()
        self.assertEqual(window.name, "Capstan")
        self.assertEqual(app.geometry(window)[2:], HOME)
        for key, text, _, _ in MODES:
            button = app.widget(key, role="push button")
            self.assertTrue(e2e.is_enabled(button), key)
            self.assertEqual(button.name, english_text(key, text))
        # The frameless window's own title strip.
        app.widget("closeButton", root=window)
        app.widget("miniaturizeButton", root=window)

    def test_each_home_button_opens_its_source_and_back_home_keeps_the_centre(self):
        app = None
        for key, text, height, control in MODES:
            if app is None:
                app = self.launch()
                home = app.view(HOME[1])
            with self.subTest(key):
                try:
                    source = app.enter_source(key, height)
                    self.assertEqual(source[2], HOME[0], f"{key}: width")
                    self.assertSameCentre(home, source, key)
                    app.widget(control)
                    # The screen sources name themselves in the source pop-up.
                    mode = app.find("chooseViewItemBox")
                    if control == "chooseViewItemBox" or mode is not None:
                        self.assertIsNotNone(mode, f"{key}: no source pop-up")
                        self.assertEqual(mode.name, english_text(key, text), key)
                    app.press("backhomeBtn")
                    back = app.view(HOME[1])
                    self.assertEqual(back[2], HOME[0])
                    self.assertSameCentre(source, back, f"{key}, back home")
                    app.widget("Main_Full_Screen", role="push button")
                    home = back
                finally:
                    # The next source starts from the home view whatever happened here: a
                    # program that cannot go back is left for a new one.
                    if app.find("Main_Full_Screen") is None:
                        if app.find("backhomeBtn") is not None:
                            app.press("backhomeBtn")
                            home = app.view(HOME[1])
                        else:
                            app.stop()
                            app = None

    def tray_menu(self, app):
        """The tray menu's items as (text, enabled); the menu is closed again."""
        menu = app.open_tray_menu()
        try:
            return e2e.menu_items(menu)
        finally:
            app.close_menu(menu)

    def test_tray_menu_follows_the_view_and_the_recording(self):
        app = self.launch()
        app.main_window()
        names = [english_text(key, text) for key, text in TRAY_ITEMS]

        items = self.tray_menu(app)
        self.assertEqual([n for n, _ in items], names)
        self.assertEqual([e for _, e in items], [False] * 5, f"home view: {items}")

        app.enter_source("Main_Full_Screen")
        items = self.tray_menu(app)
        self.assertEqual([e for _, e in items], [True, False, True, True, True],
                         f"source screen, idle: {items}")

        app.start_recording()
        try:
            items = self.tray_menu(app)
            self.assertEqual([e for _, e in items], [True] * 5, f"recording: {items}")
        finally:
            app.stop_recording()
        items = self.tray_menu(app)
        self.assertEqual([e for _, e in items], [True, False, True, True, True],
                         f"source screen after the recording: {items}")

        app.press("backhomeBtn")
        app.view(HOME[1])
        items = self.tray_menu(app)
        self.assertEqual([e for _, e in items], [False] * 5, f"home view again: {items}")


if __name__ == "__main__":
    e2e.main()

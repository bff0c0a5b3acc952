"""Capstan in three languages on the test desktop: a first start speaks the desktop's language,
and a language chosen from the menu bar reaches the open windows at once and is kept for the
next start."""
import os
import xml.etree.ElementTree as ET

import capstan_e2e as e2e

HOME_KEYS = ["Main_Full_Screen", "Main_Custom_Area", "Main_App_Window", "Main_Camera",
             "Main_Audio_Only"]
_tables = {}


def table_text(code, key):
    """The text of a key in the program's table for a language ("en", "zh-Hans", "zh-Hant")."""
    if code not in _tables:
        path = os.path.join(e2e.SOURCE_DIR, "resources", "translations", f"capstan_{code}.ts")
        _tables[code] = {m.get("id"): m.find("translation").text
                         for m in ET.parse(path).getroot().iter("message")}
    return _tables[code][key]


class LanguageTest(e2e.CapstanTestCase):
    def home_titles(self, app):
        return [app.widget(key, role="push button").name for key in HOME_KEYS]

    def assertHomeIn(self, app, code):
        wanted = [table_text(code, key) for key in HOME_KEYS]
        app.wait(lambda: self.home_titles(app) == wanted, 5,
                 f"the home buttons in {code}: {wanted} (they read {self.home_titles(app)})")

    def choose_from_menu_bar(self, app, menu_key, item_key, code):
        """Opens a menu of the main window's menu bar and clicks one of its items, by the
        texts they show in the language code."""
        # The list window may stand over the main window: bring the main window up first.
        main, _ = app.x_window(app.main_window())
        e2e.xdotool("windowactivate", "--sync", main)
        bar = app.widget("mainMenu")
        title = table_text(code, menu_key)
        top = app.wait(lambda: next((c for c in bar if c is not None and c.name == title), None),
                       5, f"the menu {title!r} in the menu bar")
        with e2e.PopupWatch() as watch:
            app.click(top)
            text = table_text(code, item_key)
            item = app.wait(lambda: next((c for m in watch.menus() for c in m
                                          if c is not None and c.name == text), None),
                            5, f"the item {text!r} of the menu {title!r}")
            e2e.click(*e2e.centre(item))

    def test_a_first_start_on_a_traditional_chinese_desktop_is_in_traditional_chinese(self):
        app = self.launch(start=False)
        app.extra_environment.update(LANGUAGE="zh_TW", LANG="zh_TW.UTF-8", LC_ALL="zh_TW.UTF-8")
        app.start()
        app.main_window()
        self.assertHomeIn(app, "zh-Hant")
        self.assertNotEqual(table_text("zh-Hant", "Main_Full_Screen"),
                            table_text("zh-Hans", "Main_Full_Screen"))

    def test_a_language_chosen_in_the_menu_bar_changes_the_open_windows_and_stays(self):
        app = self.launch()
        files = app.open_file_list()
        self.assertEqual(files.name, table_text("en", "FileList"))

        self.choose_from_menu_bar(app, "Menu_Language", "Menu_Language_Chinese", "en")
        app.wait(lambda: files.name == table_text("zh-Hans", "FileList"), 5,
                 f"the list window in Simplified Chinese (it reads {files.name!r})")
        mode = app.widget("chooseViewItemBox")
        app.wait(lambda: mode.name == table_text("zh-Hans", "Main_Full_Screen"), 5,
                 f"the source pop-up in Simplified Chinese (it reads {mode.name!r})")
        app.press("backhomeBtn")
        self.assertHomeIn(app, "zh-Hans")

        self.choose_from_menu_bar(app, "Menu_Language", "Menu_Language_English", "zh-Hans")
        self.assertHomeIn(app, "en")
        app.wait(lambda: files.name == table_text("en", "FileList"), 5,
                 f"the list window in English (it reads {files.name!r})")

        # The choice outlives the run, whatever the desktop's language.
        self.choose_from_menu_bar(app, "Menu_Language", "Menu_Language_Chinese", "en")
        self.assertHomeIn(app, "zh-Hans")
        self.assertEqual(app.stop(), 0)
        app.start()
        app.main_window()
        self.assertHomeIn(app, "zh-Hans")


if __name__ == "__main__":
    e2e.main()

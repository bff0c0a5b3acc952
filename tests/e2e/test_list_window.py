"""The list of recordings window over a list prepared before the program starts: the rows as
the list file orders them, selecting, deleting, a recording whose file is gone, and a list file
that cannot be read."""
import os

import capstan_e2e as e2e
from capstan_e2e import english_text

# The list file's order is neither by name nor by date, so a window that sorts shows it.
FIRST = ("20240105_101500.mp4", 2, "2024/01/05 10:15:00")
MISSING = ("20240220_093000.mp4", 3, "2024/02/20 09:30:00")
LAST = ("20240110_174500.mp4", 1, "2024/01/10 17:45:00")
# The missing file's size stands out: the window shows what the list says.
MISSING_SIZE = 5.0 * 1048576


class ListWindowTest(e2e.CapstanTestCase):
    def prepare(self):
        """A program with three recordings in its list (the middle one's file gone), started."""
        app = self.launch(start=False)
        self.records = []
        for name, seconds, date in (FIRST, MISSING, LAST):
            path = os.path.join(app.videos, name)
            if name == MISSING[0]:
                size = MISSING_SIZE
            else:
                e2e.make_movie(path, seconds)
                size = float(os.path.getsize(path))
            self.records.append({"path": path, "name": name, "duration": float(seconds),
                                 "size": size, "date": date, "isVideo": 1})
        e2e.write_plist(app.plist_path, self.records)
        app.start()
        return app

    def test_rows_follow_the_list_file(self):
        app = self.prepare()
        files = app.open_file_list()
        self.assertEqual(files.name, english_text("FileList", "Recordings"))
        self.assertEqual(app.row_names(files, 3), [FIRST[0], MISSING[0], LAST[0]])
        for row, record in zip(e2e.list_rows(files), self.records):
            with self.subTest(record["name"]):
                self.assertEqual(app.text("durationLabel", root=row),
                                 e2e.duration_text(record["duration"]))
                self.assertIn(app.text("sizeLabel", root=row),
                              ("%.2f M" % (record["size"] / 1048576),
                               "%.2f M" % (record["size"] / 1e6)))
                self.assertIn(os.path.splitext(record["name"])[0],
                              app.text("nameLabel", root=row))
                self.assertTrue(app.text("dateLabel", root=row))

    def test_select_and_delete_the_last_row(self):
        app = self.prepare()
        files = app.open_file_list()
        app.row_names(files, 3)
        play = app.widget("playBtn", root=files)
        delete = app.widget("deletedBtn", root=files)
        self.assertFalse(e2e.is_enabled(play), "play without a selection")
        self.assertFalse(e2e.is_enabled(delete), "delete without a selection")
        # Whether a row shows as selected is checked at the end, so that the deleting is
        # checked even where the selection cannot be seen.
        unseen = []

        def expect_selected(name, when):
            try:
                app.wait(lambda: e2e.selected_rows(files) == [name], 3, when)
            except e2e.WaitTimeout:
                unseen.append(f"{when}: selected rows {e2e.selected_rows(files)}, not [{name!r}]")

        _, middle, last = e2e.list_rows(files)
        app.click(middle)
        app.wait(lambda: e2e.is_enabled(play) and e2e.is_enabled(delete), 5,
                 "a pressed row to enable play and delete")
        expect_selected(MISSING[0], "after pressing the middle row")
        app.click(last)
        expect_selected(LAST[0], "after pressing the last row")

        app.press(delete)
        last_path = self.records[2]["path"]
        app.wait(lambda: not os.path.exists(last_path), 5, f"{last_path} to be deleted")
        self.assertEqual(app.row_names(files, 2), [FIRST[0], MISSING[0]])
        app.wait(lambda: [r["path"] for r in app.recording_list()] ==
                 [self.records[0]["path"], self.records[1]["path"]], 5,
                 "the record to leave filelist.plist")
        self.assertEqual(app.recording_list(), self.records[:2])
        self.assertTrue(os.path.exists(self.records[0]["path"]))
        expect_selected(MISSING[0], "after deleting the last row")
        self.assertEqual(unseen, [], "the selection as the accessibility bus shows it")

    def test_a_missing_file_is_not_opened(self):
        app = self.prepare()
        files = app.open_file_list()
        app.row_names(files, 3)
        missing = e2e.list_rows(files)[1]
        app.click(missing, repeat=2)
        alert = app.alert(text=english_text("Alert_DisableOpenFile_Message", None),
                          key="Alert_DisableOpenFile_Message")
        app.dismiss(alert)
        self.assertEqual(app.recording_list(), self.records)
        self.assertEqual(app.row_names(files, 3), [FIRST[0], MISSING[0], LAST[0]])

    def test_a_corrupt_list_reads_empty_and_is_written_afresh(self):
        app = self.launch(start=False)
        os.makedirs(os.path.dirname(app.plist_path))
        with open(app.plist_path, "wb") as f:  # cut off mid-write
            f.write(b'<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0">\n<array>\n'
                    b"\t<dict>\n\t\t<key>path</key>\n\t\t<string>/home/someone/Vid")
        app.start()
        files = app.open_file_list()
        self.assertEqual(e2e.list_rows(files), [])

        start, _, _ = app.start_recording()
        app.hold(start + 2.0)
        app.stop_recording()
        recorded = app.recordings()
        self.assertEqual(len(recorded), 1, recorded)
        records = app.wait(app.recording_list, 5, "a readable filelist.plist")
        self.assertEqual([r.get("path") for r in records], recorded)
        self.assertEqual(app.row_names(files, 1), [os.path.basename(recorded[0])])


if __name__ == "__main__":
    e2e.main()

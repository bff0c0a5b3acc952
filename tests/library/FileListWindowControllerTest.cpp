#include "FileListWindowController.h"
#include "FakePorts.h"
#include "FakeWorkspace.h"
#include "FileTableView.h"
#include "Localization.h"
#include "TNButton.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class FileListWindowControllerTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        folder = dir.filePath("Videos/Capstan");
        plist = dir.filePath("cache/org.capstan.Capstan/filelist.plist");
        ASSERT_TRUE(QDir().mkpath(QFileInfo(plist).absolutePath()));
        ASSERT_TRUE(QDir().mkpath(folder));
        // Oldest first: the list shows them the other way round.
        movie = addFile("20260301_100000.mp4", 3000);
        shot = addFile("20260301_100100.png", 2000, true);
        gone = folder + "/20260301_100200.mov";
        ASSERT_TRUE(addRecordToList(
            plist, RecordingRecord::movie(gone, 5, 1000, "2026/03/01 10:02:00", false)));
        window.tableView()->setNowFunction([this] { return now; });
    }
    QString addFile(const QString &name, int bytes, bool image = false)
    {
        const QString path = folder + "/" + name;
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(bytes, 'x'));
        const QString date = "2026/03/01 " + name.mid(9, 2) + ":" + name.mid(11, 2) + ":00";
        EXPECT_TRUE(addRecordToList(
            plist, image ? RecordingRecord::screenshot(path, quint64(bytes), date)
                         : RecordingRecord::movie(path, 61.5f, float(bytes), date, false)));
        return path;
    }
    void load()
    {
        window.setUPData(plist, folder);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    VideoCell *row(qsizetype index) const { return window.tableView()->cells().at(index); }
    QStringList rowNames() const
    {
        QStringList names;
        for (const VideoCell *cell : window.tableView()->cells())
            names.append(cell->accessibleName());
        return names;
    }
    void press(qsizetype index, double after = 1.0)
    {
        now += after;
        QTest::mouseClick(row(index), Qt::LeftButton);
    }
    void doubleClick(qsizetype index)
    {
        press(index);
        press(index, 0.1);
    }
    void select(qsizetype index)
    {
        press(index);
        QCoreApplication::processEvents(); // the buttons follow one turn later
    }
    QList<bool> enabledButtons() const
    {
        return {window.playBtn()->isEnabled(), window.editBtn()->isEnabled(),
                window.openDirBtn()->isEnabled(), window.deletedBtn()->isEnabled()};
    }
    QStringList storedPaths() const
    {
        const RecordingList list = RecordingList::read(plist);
        QStringList paths;
        for (qsizetype i = 0; i < list.count(); ++i)
            paths.append(list.pathAt(i));
        return paths;
    }

    QTemporaryDir dir;
    QString folder, plist, movie, shot, gone;
    FakeWorkspace workspace;
    FakeAlerts alerts;
    FileListWindowController window{workspace, alerts};
    double now = 1000.0;
};

TEST_F(FileListWindowControllerTest, ShowsTheStoredListNewestOnTop)
{
    QDir(folder).removeRecursively(); // the folder is made again
    load();
    EXPECT_TRUE(QFileInfo(folder).isDir());
    EXPECT_EQ(window.deskPath(), folder);
    EXPECT_EQ(rowNames(),
              (QStringList{"20260301_100200.mov", "20260301_100100.png", "20260301_100000.mp4"}));
    EXPECT_EQ(row(2)->sizeLabel()->text(), "0.00 M");
    EXPECT_EQ(row(2)->durationLabel()->text(), "00:01:01");
    EXPECT_TRUE(row(1)->durationLabel()->isHidden());
    EXPECT_EQ(row(1)->dateLabel()->text(), "2026/03/01 10:01:00");

    const QString title = Localization::localizedStringForKey("FileList");
    EXPECT_EQ(window.windowTitle(), title);
    EXPECT_EQ(window.titleLabel()->text(), title);
    EXPECT_EQ(window.accessibleDescription(), "FileListWindowController");
    EXPECT_EQ(window.tableView()->accessibleDescription(), "tableView");
    EXPECT_EQ(window.playBtn()->accessibleDescription(), "playBtn");
    EXPECT_EQ(window.deletedBtn()->text(), Localization::localizedStringForKey("FileList_Delete"));
    EXPECT_TRUE(window.isWindow());
    EXPECT_FALSE(window.isModal());

    // The first row shows selected, yet the buttons wait for a press.
    EXPECT_TRUE(row(0)->selected());
    EXPECT_EQ(enabledButtons(), (QList<bool>{false, false, true, false}));

    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_EQ(window.pos(),
              screen.topLeft() +
                  QPoint((screen.width() - FileListWindowController::kWindowWidth) / 2,
                         (screen.height() - FileListWindowController::kWindowHeight) / 2));
}

TEST_F(FileListWindowControllerTest, ADoubleClickOpensTheFileWithTheApplicationOfItsKind)
{
    load();
    doubleClick(1);
    doubleClick(2);
    ASSERT_EQ(workspace.opened.size(), 2);
    EXPECT_EQ(workspace.opened.at(0).path, shot);
    EXPECT_TRUE(workspace.opened.at(0).isImage);
    EXPECT_EQ(workspace.opened.at(1).path, movie);
    EXPECT_FALSE(workspace.opened.at(1).isImage);
    EXPECT_TRUE(alerts.messages.isEmpty());
}

TEST_F(FileListWindowControllerTest, AMissingFileIsToldAndKeepsItsRecord)
{
    load();
    doubleClick(0);
    EXPECT_TRUE(workspace.opened.isEmpty());
    EXPECT_EQ(alerts.messages,
              QStringList{Localization::localizedStringForKey("Alert_DisableOpenFile_Message")});

    // A file deleted behind the list's back: the same, from the play button.
    ASSERT_TRUE(QFile::remove(movie));
    select(2);
    QTest::mouseClick(window.playBtn(), Qt::LeftButton);
    EXPECT_EQ(alerts.messages.size(), 2);
    EXPECT_TRUE(workspace.opened.isEmpty());
    EXPECT_EQ(window.tableView()->cells().size(), 3);
    EXPECT_EQ(storedPaths(), (QStringList{gone, shot, movie}));
}

TEST_F(FileListWindowControllerTest, APressEnablesTheButtonsOneTurnLater)
{
    load();
    press(1);
    EXPECT_EQ(enabledButtons(), (QList<bool>{false, false, true, false}));
    QCoreApplication::processEvents();
    EXPECT_EQ(enabledButtons(), (QList<bool>{true, true, true, true}));
}

TEST_F(FileListWindowControllerTest, TheButtonsActOnTheSelectedRow)
{
    load();
    select(1);
    QTest::mouseClick(window.playBtn(), Qt::LeftButton);
    QTest::mouseClick(window.editBtn(), Qt::LeftButton);
    ASSERT_EQ(workspace.opened.size(), 2);
    for (const FakeWorkspace::Opened &opened : workspace.opened) {
        EXPECT_EQ(opened.path, shot);
        EXPECT_TRUE(opened.isImage);
    }

    // The folder is shown, selected in its parent.
    QTest::mouseClick(window.openDirBtn(), Qt::LeftButton);
    EXPECT_EQ(workspace.selected, QStringList{folder});
    // A folder that has gone shows nothing.
    QDir(folder).removeRecursively();
    QTest::mouseClick(window.openDirBtn(), Qt::LeftButton);
    EXPECT_EQ(workspace.selected.size(), 1);
    EXPECT_TRUE(alerts.messages.isEmpty());
}

TEST_F(FileListWindowControllerTest, DeleteRemovesTheFileAndItsRecords)
{
    // A second record of the same file goes with the first.
    ASSERT_TRUE(addRecordToList(
        plist, RecordingRecord::movie(movie, 61.5f, 3000, "2026/03/01 10:03:00", false)));
    load();
    ASSERT_EQ(rowNames().size(), 4);
    select(3); // the oldest, the movie
    QTest::mouseClick(window.deletedBtn(), Qt::LeftButton);

    EXPECT_FALSE(QFileInfo::exists(movie));
    EXPECT_TRUE(QFileInfo::exists(shot));
    EXPECT_EQ(storedPaths(), (QStringList{gone, shot}));
    EXPECT_EQ(rowNames(), (QStringList{"20260301_100200.mov", "20260301_100100.png"}));
    // The selection moves to the new last row; the buttons wait for the next press.
    EXPECT_EQ(window.tableView()->selectedRow(), 1);
    EXPECT_FALSE(row(0)->selected());
    EXPECT_TRUE(row(1)->selected());
    EXPECT_EQ(enabledButtons(), (QList<bool>{false, false, true, false}));
    EXPECT_TRUE(alerts.messages.isEmpty());

    // The first row deleted: the selection stays at the top.
    select(0);
    QTest::mouseClick(window.deletedBtn(), Qt::LeftButton);
    EXPECT_EQ(rowNames(), QStringList{"20260301_100100.png"});
    EXPECT_EQ(window.tableView()->selectedRow(), 0);
    EXPECT_TRUE(row(0)->selected());

    // The only row shows selected, so a press on it does nothing and the buttons stay off;
    // deleting it empties the list, in the window and in the file.
    select(0);
    EXPECT_EQ(enabledButtons(), (QList<bool>{false, false, true, false}));
    window.deletedBtnAction();
    EXPECT_TRUE(rowNames().isEmpty());
    EXPECT_TRUE(storedPaths().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(shot));
}

TEST_F(FileListWindowControllerTest, AFileThatCannotBeDeletedStaysWhileItsRecordGoes)
{
    // Permissions do not hold back the superuser tests may run as; a folder that is not empty
    // cannot be deleted by anyone.
    const QString held = folder + "/20260301_100300.mp4";
    ASSERT_TRUE(QDir().mkpath(held + "/inside"));
    ASSERT_TRUE(addRecordToList(
        plist, RecordingRecord::movie(held, 1, 1000, "2026/03/01 10:03:00", false)));
    load();
    select(1);
    select(0);
    QTest::mouseClick(window.deletedBtn(), Qt::LeftButton);
    EXPECT_TRUE(QFileInfo(held).isDir());
    EXPECT_EQ(storedPaths(), (QStringList{gone, shot, movie}));
    EXPECT_EQ(rowNames().size(), 3);
    EXPECT_TRUE(alerts.messages.isEmpty());
}

TEST_F(FileListWindowControllerTest, AnUnreadableListShowsNothing)
{
    for (const QByteArray &junk :
         {QByteArray(), QByteArray("<?xml version=\"1.0\"?><plist><array><dict><key>pa"),
          QByteArray("\x00\x01\x02 not a list", 14)}) {
        QFile file(plist);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(junk);
        file.close();
        load();
        EXPECT_TRUE(window.tableView()->cells().isEmpty());
        EXPECT_EQ(window.tableContents().count(), 0);
        // With no row the buttons do nothing, and say nothing.
        window.playBtnAction();
        window.editBtnAction();
        window.openDirBtnAction();
        window.deletedBtnAction();
        EXPECT_TRUE(workspace.opened.isEmpty());
        EXPECT_TRUE(workspace.selected.isEmpty());
        EXPECT_TRUE(alerts.messages.isEmpty());
        EXPECT_TRUE(QFileInfo::exists(movie));
        EXPECT_EQ(enabledButtons(), (QList<bool>{false, false, true, false}));
    }
}

} // namespace

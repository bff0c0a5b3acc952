#include "FileTableView.h"

#include <QLabel>
#include <QScrollArea>
#include <QTest>
#include <gtest/gtest.h>

namespace {

QVariantMap record(const QString &name, bool image = false)
{
    QVariantMap r{{"path", "/v/" + name},
                  {"name", name},
                  {"duration", 12.0},
                  {"size", 1.5e6},
                  {"date", "2026/03/01 10:00:00"}};
    if (image)
        r.insert("isImage", qulonglong(1));
    else
        r.insert("isVideo", qulonglong(1));
    return r;
}

class FileTableViewTest : public testing::Test {
protected:
    void SetUp() override
    {
        table.resize(572 + FileTableView::kScrollBarWidth, 308);
        table.setNowFunction([this] { return now; });
        table.setSelectItemBlock([this](const QVariantMap &item) { selected.append(item); });
        table.setSelectItemDoubleClickBlock(
            [this](const QVariantMap &item) { doubleClicked.append(item); });
        load({record("c.mp4"), record("b.png", true), record("a.mp4")});
        table.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&table));
    }
    void load(const QList<QVariantMap> &items)
    {
        table.setItems(items);
        table.reloadData();
    }
    // A press on a row, some time after the previous one.
    void press(qsizetype row, double after = 1.0)
    {
        now += after;
        QTest::mousePress(table.cells().at(row), Qt::LeftButton);
        QTest::mouseRelease(table.cells().at(row), Qt::LeftButton);
    }
    QList<bool> selection() const
    {
        QList<bool> flags;
        for (const VideoCell *cell : table.cells())
            flags.append(cell->selected());
        return flags;
    }

    FileTableView table;
    double now = 5000.0;
    QList<QVariantMap> selected;
    QList<QVariantMap> doubleClicked;
};

TEST_F(FileTableViewTest, RowsTopDownInTheOrderOfTheRecords)
{
    ASSERT_EQ(table.cells().size(), 3);
    const QStringList names{"c.mp4", "b.png", "a.mp4"};
    for (int i = 0; i < 3; ++i) {
        const VideoCell *cell = table.cells().at(i);
        EXPECT_EQ(cell->index(), i);
        EXPECT_EQ(cell->accessibleName(), names.at(i));
        EXPECT_EQ(cell->accessibleDescription(), "VideoCell");
        EXPECT_EQ(cell->nameLabel()->text(), names.at(i));
        EXPECT_EQ(cell->geometry(), QRect(0, 44 * i, 580, 44));
        EXPECT_EQ(cell->parentWidget(), table.scrollContentView());
    }
    // The screenshot's duration is hidden, the movies' shown.
    EXPECT_TRUE(table.cells().at(1)->durationLabel()->isHidden());
    EXPECT_FALSE(table.cells().at(0)->durationLabel()->isHidden());
    // Rows alternate from the window's colour; a selected row takes the selection colour.
    EXPECT_EQ(table.cells().at(0)->nBackGroundColor(), FileTableView::windowColor());
    EXPECT_EQ(table.cells().at(1)->nBackGroundColor(), FileTableView::documentColor());
    EXPECT_EQ(table.cells().at(2)->nBackGroundColor(), FileTableView::windowColor());
    EXPECT_EQ(table.cells().at(1)->sBackGroundColor(), FileTableView::selectedColor());
}

TEST_F(FileTableViewTest, ReloadSelectsTheFirstRowWithoutTellingTheOwner)
{
    EXPECT_EQ(selection(), (QList<bool>{true, false, false}));
    EXPECT_EQ(table.selectedRow(), 0);
    EXPECT_EQ(table.oldSelectedRow(), 0);
    EXPECT_EQ(table.selectedItem().value("name"), "c.mp4");
    EXPECT_TRUE(selected.isEmpty());
    EXPECT_TRUE(doubleClicked.isEmpty());
}

TEST_F(FileTableViewTest, APressSelectsItsRowAndTellsTheOwnerOnce)
{
    press(2);
    EXPECT_EQ(selection(), (QList<bool>{false, false, true}));
    EXPECT_EQ(table.selectedRow(), 2);
    EXPECT_EQ(table.oldSelectedRow(), 2);
    EXPECT_EQ(table.selectedItem().value("name"), "a.mp4");
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected.first().value("name"), "a.mp4");
    EXPECT_FALSE(table.disabelSelectBlock());

    press(1);
    EXPECT_EQ(selection(), (QList<bool>{false, true, false}));
    ASSERT_EQ(selected.size(), 2);
    EXPECT_EQ(selected.last().value("name"), "b.png");
    EXPECT_TRUE(doubleClicked.isEmpty());
}

TEST_F(FileTableViewTest, APressOnTheSelectedRowDoesNothing)
{
    press(0); // selected by the reload
    EXPECT_TRUE(selected.isEmpty());
    press(1);
    press(1);
    EXPECT_EQ(selected.size(), 1);
    EXPECT_EQ(selection(), (QList<bool>{false, true, false}));
    EXPECT_EQ(table.selectedRow(), 1);
    EXPECT_TRUE(doubleClicked.isEmpty());
}

TEST_F(FileTableViewTest, TwoPressesWithinAFifthOfASecondAreADoubleClick)
{
    // On a row that was not selected: the first press selects it, the second opens it.
    press(2);
    press(2, 0.19);
    ASSERT_EQ(doubleClicked.size(), 1);
    EXPECT_EQ(doubleClicked.first().value("name"), "a.mp4");
    EXPECT_EQ(selected.size(), 1);

    // On the selected row just the same.
    press(0);
    press(0, 0.1);
    ASSERT_EQ(doubleClicked.size(), 2);
    EXPECT_EQ(doubleClicked.last().value("name"), "c.mp4");

    // Presses further apart are single presses.
    press(1, 0.3);
    press(1, 0.21);
    EXPECT_EQ(doubleClicked.size(), 2);

    // Each row times its own presses: a quick press on another row is a plain press.
    press(2, 0.05);
    EXPECT_EQ(doubleClicked.size(), 2);
}

TEST_F(FileTableViewTest, ADisabledTableIgnoresPressesButNotDoubleClicks)
{
    table.setEnabele(false);
    press(2);
    EXPECT_TRUE(selected.isEmpty());
    EXPECT_EQ(table.selectedRow(), 0);
    press(2, 0.1);
    ASSERT_EQ(doubleClicked.size(), 1);
    EXPECT_EQ(doubleClicked.first().value("name"), "a.mp4");

    table.reloadData(); // enables the table again
    press(2);
    EXPECT_EQ(selected.size(), 1);
}

// The window system's double-click: Qt hands its second press over as a double-click event
// only, and the file must open, once.
TEST_F(FileTableViewTest, ADoubleClickOfTheWindowSystemOpensOnce)
{
    table.setNowFunction(nullptr); // the wall clock
    VideoCell *cell = table.cells().at(1);
    const QPoint inWindow = cell->mapTo(&table, cell->rect().center());
    QTest::mouseDClick(table.windowHandle(), Qt::LeftButton, {}, inWindow);
    EXPECT_EQ(selected.size(), 1);
    ASSERT_EQ(doubleClicked.size(), 1);
    EXPECT_EQ(doubleClicked.first().value("name"), "b.png");
}

TEST_F(FileTableViewTest, ReloadPutsTheSelectionWhereTheOwnerSaid)
{
    // As after deleting the last of three rows: two are left, the selection is the new last.
    load({record("c.mp4"), record("b.png", true)});
    table.setSelectedRow(1);
    table.reloadData();
    EXPECT_EQ(selection(), (QList<bool>{false, true}));
    EXPECT_EQ(table.selectedItem().value("name"), "b.png");
    EXPECT_EQ(table.oldSelectedRow(), 1);
    EXPECT_TRUE(selected.isEmpty());

    // The only row deleted: nothing is left and nothing is selected.
    load({});
    table.setSelectedRow(-1);
    table.reloadData();
    EXPECT_TRUE(table.cells().isEmpty());
    EXPECT_TRUE(table.selectedItem().isEmpty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(table.scrollContentView()->findChildren<VideoCell *>().isEmpty());
}

TEST_F(FileTableViewTest, ALongListScrollsAndKeepsARestBelowItsLastRow)
{
    QList<QVariantMap> many;
    for (int i = 0; i < 20; ++i)
        many.append(record(QString("r%1.mp4").arg(i)));
    load(many);
    EXPECT_EQ(table.scrollContentView()->height(), 47 * 20);
    EXPECT_EQ(table.cells().last()->geometry().bottom() + 1, 44 * 20);
    // The rows follow the viewport, narrowed by the scroll bar once it is laid out, and keep
    // their columns whole.
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return table.itemScrollview()->viewport()->width() == 572; }));
    EXPECT_EQ(table.cells().last()->width(), table.itemScrollview()->viewport()->width());
    // A short one fills the view.
    load({record("a.mp4")});
    EXPECT_EQ(table.scrollContentView()->height(), 308);
}

} // namespace

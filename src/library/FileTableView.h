#pragma once
// The list of recordings: a scroll view whose document holds one VideoCell per record, top
// down in the order of the records (the list file keeps the newest first). Rows are built
// anew at every reloadData. A press selects a row and tells selectItemBlock; two presses
// within 0.2 s tell selectItemDoubleClickBlock, whatever was selected. GUI thread only.
#include "VideoCell.h"

#include <QList>
#include <QVariantMap>
#include <QWidget>
#include <functional>

class QScrollArea;

class FileTableView : public QWidget {
    Q_OBJECT
public:
    using ItemBlock = std::function<void(const QVariantMap &item)>;
    // The vertical scroll bar narrows the rows by this much while it shows; a table as wide as
    // its columns and this keeps every column whole.
    static constexpr int kScrollBarWidth = 8;

    explicit FileTableView(QWidget *parent = nullptr);

    // Takes the records; the selection goes to row 0 and no row counts as selected before.
    void setItems(const QList<QVariantMap> &items);
    const QList<QVariantMap> &items() const { return items_; }

    qint64 selectedRow() const { return selectedRow_; }
    // Only the number: the row shows as selected at the next reloadData.
    void setSelectedRow(qint64 row) { selectedRow_ = row; }
    QVariantMap selectedItem() const { return selectedItem_; }
    // The row of the last cell that turned selected, -1 for none.
    qint64 oldSelectedRow() const { return oldSelectedRow_; }
    // Set while a reload selects its row, so the owner is not told; a press clears it.
    bool disabelSelectBlock() const { return disabelSelectBlock_; }

    // Builds the rows anew and selects the one at selectedRow without telling the owner, so
    // the first row shows selected after a reload while the owner's buttons stay as they were.
    void reloadData();

    bool enabele() const { return enabele_; }
    // Passed on to every row; a disabled row ignores presses but still takes double-clicks.
    void setEnabele(bool enabele);

    int rowHeight() const { return rowHeight_; }
    void setRowHeight(int height) { rowHeight_ = height; }

    void setSelectItemDoubleClickBlock(ItemBlock block)
    {
        selectItemDoubleClickBlock_ = std::move(block);
    }
    void setSelectItemBlock(ItemBlock block) { selectItemBlock_ = std::move(block); }
    // Kept for the owner; the table never runs them.
    void setSelectDefaultOutputFormatBlock(ItemBlock block)
    {
        selectDefaultOutputFormatBlock_ = std::move(block);
    }
    void setSelectTranstionEffectBlock(ItemBlock block)
    {
        selectTranstionEffectBlock_ = std::move(block);
    }

    // The clock the rows time presses by; the wall clock unless set.
    void setNowFunction(VideoCell::NowFunction now);

    // The rows in row order, top down.
    const QList<VideoCell *> &cells() const { return cells_; }
    QScrollArea *itemScrollview() const { return itemScrollview_; }
    QWidget *scrollContentView() const { return scrollContentView_; }

    static QColor windowColor();
    static QColor documentColor();
    static QColor selectedColor();

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isValidRow(qint64 row) const { return row >= 0 && row < cells_.size(); }
    void attach(VideoCell *cell);
    void layoutDocument();

    QScrollArea *itemScrollview_;
    QWidget *scrollContentView_;
    QList<VideoCell *> cells_;
    QList<QVariantMap> items_;
    qint64 selectedRow_ = 0;
    qint64 oldSelectedRow_ = -1;
    QVariantMap selectedItem_;
    bool enabele_ = true;
    bool disabelSelectBlock_ = false;
    int rowHeight_ = 44;
    VideoCell::NowFunction now_;
    ItemBlock selectItemDoubleClickBlock_;
    ItemBlock selectItemBlock_;
    ItemBlock selectDefaultOutputFormatBlock_;
    ItemBlock selectTranstionEffectBlock_;
};

#include "FileTableView.h"

#include <QEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

QColor FileTableView::windowColor()
{
    return QColor::fromRgbF(0.1843137254901961f, 0.21568627450980393f, 0.2549019607843137f);
}

QColor FileTableView::documentColor()
{
    return QColor::fromRgbF(0.10588235294117647f, 0.09803921568627451f, 0.13333333333333333f);
}

QColor FileTableView::selectedColor()
{
    return QColor::fromRgbF(0.2196078431372549f, 0.4549019607843137f, 0.6862745098039216f);
}

FileTableView::FileTableView(QWidget *parent)
    : QWidget(parent), itemScrollview_(new QScrollArea(this)), scrollContentView_(new QWidget),
      now_(wallClockNow)
{
    setAccessibleDescription(QStringLiteral("tableView"));
    itemScrollview_->setFrameShape(QFrame::NoFrame);
    itemScrollview_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // A thin bar on the dark rows; the widget style's own is wider and light.
    itemScrollview_->verticalScrollBar()->setStyleSheet(
        QStringLiteral(
            "QScrollBar:vertical { background: transparent; width: %1px; margin: 0; }"
            "QScrollBar::handle:vertical { background: rgba(255, 255, 255, 90); border-radius: 4px;"
            " min-height: 24px; }"
            "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
            "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }")
            .arg(kScrollBarWidth));
    // The document is sized here, at the viewport's width and the rows' height.
    itemScrollview_->setWidgetResizable(false);
    scrollContentView_->setAutoFillBackground(true);
    QPalette palette = scrollContentView_->palette();
    palette.setColor(QPalette::Window, documentColor());
    scrollContentView_->setPalette(palette);
    itemScrollview_->viewport()->setPalette(palette);
    itemScrollview_->viewport()->setAutoFillBackground(true);
    itemScrollview_->setWidget(scrollContentView_);
    itemScrollview_->viewport()->installEventFilter(this);
}

void FileTableView::setItems(const QList<QVariantMap> &items)
{
    items_ = items;
    selectedRow_ = 0;
    oldSelectedRow_ = -1;
    selectedItem_ = items_.isEmpty() ? QVariantMap() : items_.first();
}

void FileTableView::setEnabele(bool enabele)
{
    enabele_ = enabele;
    for (VideoCell *cell : std::as_const(cells_))
        cell->setEnabele(enabele);
}

void FileTableView::setNowFunction(VideoCell::NowFunction now)
{
    now_ = now ? std::move(now) : VideoCell::NowFunction(wallClockNow);
    for (VideoCell *cell : std::as_const(cells_))
        cell->setNowFunction(now_);
}

void FileTableView::reloadData()
{
    setEnabele(true);
    // The old rows go once control is back in the event loop, as this may run from a callback
    // of one of them; until then they stay hidden children, deleted with the table at the latest.
    for (VideoCell *cell : std::as_const(cells_)) {
        cell->hide();
        cell->deleteLater();
    }
    cells_.clear();

    for (qsizetype i = 0; i < items_.size(); ++i) {
        auto *cell = new VideoCell(scrollContentView_);
        // Odd rows take the document's colour, even rows the window's.
        cell->setNBackGroundColor(i % 2 == 1 ? documentColor() : windowColor());
        cell->setSBackGroundColor(selectedColor());
        cell->setIndex(i);
        cell->setFileData(items_.at(i));
        cell->setEnabele(enabele_);
        cell->setNowFunction(now_);
        cells_.append(cell);
    }
    for (VideoCell *cell : std::as_const(cells_))
        attach(cell);

    disabelSelectBlock_ = true;
    for (VideoCell *cell : std::as_const(cells_))
        cell->setSelected(cell->index() == selectedRow_);

    layoutDocument();
    for (VideoCell *cell : std::as_const(cells_))
        cell->show();
    scrollContentView_->update();
}

void FileTableView::attach(VideoCell *cell)
{
    cell->setMouseDoubleClickDownBlock([this](VideoCell *pressed) {
        if (selectItemDoubleClickBlock_)
            selectItemDoubleClickBlock_(pressed->fileData());
    });
    cell->setMouseDownBlock([this](VideoCell *pressed) {
        disabelSelectBlock_ = false;
        if (pressed->index() != selectedRow_) {
            if (isValidRow(oldSelectedRow_))
                cells_.at(oldSelectedRow_)->setSelected(false);
            pressed->setSelected(true);
        } else {
            pressed->setSelected(false);
        }
    });
    cell->setSelectedBlock([this](VideoCell *changed, bool selected) {
        if (!selected)
            return;
        // A reload without new items keeps oldSelectedRow at this very row: leave it selected.
        if (isValidRow(oldSelectedRow_) && oldSelectedRow_ != changed->index())
            cells_.at(oldSelectedRow_)->setSelected(false);
        selectedRow_ = oldSelectedRow_ = changed->index();
        selectedItem_ = changed->fileData();
        if (!disabelSelectBlock_ && selectItemBlock_)
            selectItemBlock_(selectedItem_);
    });
}

// Rows from the top at the row height; the document is (row height + 3) for each row, and
// at least the viewport's height, so a long list keeps a rest below its last row.
void FileTableView::layoutDocument()
{
    QWidget *viewport = itemScrollview_->viewport();
    const int height = std::max(viewport->height(), (rowHeight_ + 3) * int(cells_.size()));
    scrollContentView_->resize(viewport->width(), height);
    for (VideoCell *cell : std::as_const(cells_))
        cell->setGeometry(0, int(cell->index()) * rowHeight_, viewport->width(), rowHeight_);
}

void FileTableView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    itemScrollview_->setGeometry(rect());
}

bool FileTableView::eventFilter(QObject *watched, QEvent *event)
{
    // The viewport narrows when the vertical scroll bar comes: the rows follow its width.
    if (watched == itemScrollview_->viewport() && event->type() == QEvent::Resize)
        layoutDocument();
    return QWidget::eventFilter(watched, event);
}

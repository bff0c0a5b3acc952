#include "FileListWindowController.h"

#include "Alerts.h"
#include "FileTableView.h"
#include "Localization.h"
#include "Log.h"
#include "TNButton.h"
#include "TNButtonCell.h"
#include "VideoCell.h"
#include "VideoCellText.h"
#include "Workspace.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <initializer_list>

namespace {

constexpr int kMargin = 24;
constexpr int kTitleBottom = 30; // the title's lower edge, from the top of the window
constexpr int kTitleHeight = 20;
constexpr int kHeaderTop = 44;
constexpr int kHeaderHeight = 30;
constexpr int kTableTop = kHeaderTop + kHeaderHeight;
constexpr int kTableHeight = 308; // seven rows
constexpr int kButtonTop = kTableTop + kTableHeight + 16;
constexpr int kButtonWidth = 120;
constexpr int kButtonHeight = 32;
constexpr int kButtonGap = 30;

const char *const kHeaderKeys[] = {"FileName", "FileDuration", "FileSize", "FileDate"};
constexpr int kColumnWidths[] = {VideoCell::kNameWidth, VideoCell::kDurationWidth,
                                 VideoCell::kSizeWidth, VideoCell::kDateWidth};
// The rows keep their columns whole while the scroll bar shows.
constexpr int kTableWidth = VideoCell::kNameWidth + VideoCell::kDurationWidth +
                            VideoCell::kSizeWidth + VideoCell::kDateWidth +
                            FileTableView::kScrollBarWidth;
static_assert(kMargin * 2 + kTableWidth == FileListWindowController::kWindowWidth);

void fill(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, color);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

QLabel *whiteLabel(QWidget *parent, const QString &description, int pixelSize)
{
    auto *label = new QLabel(parent);
    label->setAccessibleDescription(description);
    label->setAlignment(Qt::AlignCenter);
    QFont font = label->font();
    font.setPixelSize(pixelSize);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    label->setPalette(palette);
    return label;
}

TNButton *actionButton(QWidget *parent, const char *description, int column)
{
    const int firstX = kMargin + (kTableWidth - 4 * kButtonWidth - 3 * kButtonGap) / 2;
    auto *button = new TNButton(QRect(firstX + column * (kButtonWidth + kButtonGap), kButtonTop,
                                      kButtonWidth, kButtonHeight),
                                parent);
    button->setAccessibleDescription(QString::fromLatin1(description));
    // Rests on the window colour, and fills with the blue gradient under the pointer.
    button->setCanMouseCustomColor(true);
    button->setTracksMouse(true);
    button->setTextColor(Qt::white);
    QFont font = button->font();
    font.setPixelSize(13);
    button->setFont(font);
    return button;
}

} // namespace

QColor FileListWindowController::windowColor()
{
    return FileTableView::windowColor();
}

QColor FileListWindowController::contentColor()
{
    return FileTableView::documentColor();
}

FileListWindowController::FileListWindowController(Workspace &workspace, Alerts &alerts,
                                                   QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowCloseButtonHint),
      workspace_(workspace), alerts_(alerts), contentView_(new QWidget(this)),
      titleLabel_(whiteLabel(contentView_, QStringLiteral("FileList"), 14)),
      tableViewHeader_(new QWidget(contentView_)), tableView_(new FileTableView(contentView_)),
      playBtn_(actionButton(contentView_, "playBtn", 0)),
      editBtn_(actionButton(contentView_, "editBtn", 1)),
      openDirBtn_(actionButton(contentView_, "openDirBtn", 2)),
      deletedBtn_(actionButton(contentView_, "deletedBtn", 3))
{
    setAccessibleDescription(QStringLiteral("FileListWindowController"));
    setFixedSize(kWindowWidth, kWindowHeight);
    fill(this, windowColor());
    contentView_->setGeometry(rect());
    fill(contentView_, contentColor());

    titleLabel_->setGeometry(0, kTitleBottom - kTitleHeight, kWindowWidth, kTitleHeight);

    tableViewHeader_->setGeometry(kMargin, kHeaderTop, kTableWidth, kHeaderHeight);
    fill(tableViewHeader_, windowColor());
    int x = 0;
    for (std::size_t i = 0; i < headerLabels_.size(); ++i) {
        headerLabels_[i] = whiteLabel(tableViewHeader_, QString::fromLatin1(kHeaderKeys[i]), 13);
        headerLabels_[i]->setGeometry(x, 0, kColumnWidths[i], kHeaderHeight);
        x += kColumnWidths[i];
    }

    tableView_->setGeometry(kMargin, kTableTop, kTableWidth, kTableHeight);
    tableView_->setRowHeight(44);

    setButtonsEnabled({editBtn_, playBtn_, deletedBtn_}, false);
    connect(playBtn_, &TNButton::clicked, this, &FileListWindowController::playBtnAction);
    connect(editBtn_, &TNButton::clicked, this, &FileListWindowController::editBtnAction);
    connect(openDirBtn_, &TNButton::clicked, this, &FileListWindowController::openDirBtnAction);
    connect(deletedBtn_, &TNButton::clicked, this, &FileListWindowController::deletedBtnAction);

    ChangeLoanguage();

    // The window is made once: placing it here centres it at its first showing, and a place
    // the user moves it to later is kept.
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->geometry();
        move(area.x() + (area.width() - kWindowWidth) / 2,
             area.y() + (area.height() - kWindowHeight) / 2);
    }
}

void FileListWindowController::ChangeLoanguage()
{
    const QString title = Localization::localizedStringForKey(QStringLiteral("FileList"));
    setWindowTitle(title);
    setAccessibleName(title);
    titleLabel_->setText(title);
    for (std::size_t i = 0; i < headerLabels_.size(); ++i)
        headerLabels_[i]->setText(
            Localization::localizedStringForKey(QString::fromLatin1(kHeaderKeys[i])));
    playBtn_->setText(Localization::localizedStringForKey(QStringLiteral("FileList_Play")));
    editBtn_->setText(Localization::localizedStringForKey(QStringLiteral("FileList_Edit")));
    openDirBtn_->setText(Localization::localizedStringForKey(QStringLiteral("FileList_OpenDir")));
    deletedBtn_->setText(Localization::localizedStringForKey(QStringLiteral("FileList_Delete")));
}

void FileListWindowController::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        ChangeLoanguage();
}

void FileListWindowController::setUPData(const QString &plistPath, const QString &recordingFolder)
{
    deskPath_ = recordingFolder;
    if (!QDir().mkpath(deskPath_))
        capstan::NSLog(lcLibrary, "cannot make the folder %s", qUtf8Printable(deskPath_));
    plistPath_ = plistPath;
    tableContents_ = RecordingList::read(plistPath);
    tableView_->setItems(records());
    tableView_->setRowHeight(44);
    tableView_->setSelectItemDoubleClickBlock(
        [this](const QVariantMap &record) { openRecord(record); });
    tableView_->setSelectItemBlock([this](const QVariantMap &) {
        // One turn later, as the selection's callback came from the row's own press.
        QMetaObject::invokeMethod(
            this,
            [this] {
                setButtonsEnabled({editBtn_, playBtn_, deletedBtn_, openDirBtn_}, true);
            },
            Qt::QueuedConnection);
    });
    tableView_->reloadData();
    tableView_->itemScrollview()->verticalScrollBar()->setValue(0);
}

QList<QVariantMap> FileListWindowController::records() const
{
    QList<QVariantMap> list;
    list.reserve(tableContents_.count());
    for (qsizetype i = 0; i < tableContents_.count(); ++i)
        list.append(tableContents_.recordAt(i));
    return list;
}

void FileListWindowController::openRecord(const QVariantMap &record)
{
    const QString path = record.value(QStringLiteral("path")).toString();
    if (!path.isEmpty() && QFileInfo::exists(path)) {
        workspace_.openFile(path, VideoCellText::isImage(record));
        return;
    }
    alerts_.showModleMessage(
        Localization::localizedStringForKey(QStringLiteral("Alert_DisableOpenFile_Message")),
        Localization::localizedStringForKey(QStringLiteral("Alert_Title")));
}

bool FileListWindowController::selectedRecord(const char *operation, QVariantMap *record) const
{
    const qint64 row = tableView_->selectedRow();
    if (row < 0 || row >= tableContents_.count()) {
        capstan::NSLog(lcLibrary, "%s: no record at row %lld", operation, qlonglong(row));
        return false;
    }
    *record = tableContents_.recordAt(row);
    return true;
}

void FileListWindowController::playBtnAction()
{
    QVariantMap record;
    if (selectedRecord(__func__, &record))
        openRecord(record);
}

// There is no editor of our own: the file opens where play would open it.
void FileListWindowController::editBtnAction()
{
    QVariantMap record;
    if (selectedRecord(__func__, &record))
        openRecord(record);
}

// Shows the recording's folder, selected in its parent; a folder that has gone says nothing.
void FileListWindowController::openDirBtnAction()
{
    QVariantMap record;
    if (!selectedRecord(__func__, &record))
        return;
    const QString folder =
        QFileInfo(record.value(QStringLiteral("path")).toString()).absolutePath();
    if (QFileInfo(folder).isDir())
        workspace_.selectFile(folder);
}

void FileListWindowController::deletedBtnAction()
{
    const qint64 row = tableView_->selectedRow();
    if (row < 0 || row >= tableContents_.count()) {
        capstan::NSLog(lcLibrary, "%s: no record at row %lld", __func__, qlonglong(row));
        return;
    }
    removeRecordingFromList(tableContents_, plistPath_, tableContents_.pathAt(row));
    tableView_->setItems(records());
    tableView_->setSelectedRow(std::min<qint64>(row, tableContents_.count() - 1));
    tableView_->reloadData();
    setButtonsEnabled({editBtn_, playBtn_, deletedBtn_}, false);
}

void FileListWindowController::setButtonsEnabled(std::initializer_list<TNButton *> buttons,
                                                 bool enabled)
{
    for (TNButton *button : buttons) {
        button->setEnabled(enabled);
        // The button draws its own title: a disabled one shows in the cell's plain grey.
        button->setTextColor(enabled ? QColor(Qt::white) : TNButtonCell::defaultTitleColor());
    }
}

#include "TNClipView.h"

#include "GKCropBorderGeometry.h"
#include "GKCropBorderPainter.h"
#include "Localization.h"
#include "Log.h"
#include "SelectionLog.h"
#include "TNButton.h"

#include <QElapsedTimer>
#include <QFontMetrics>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

using capstan::NSLog;
using Localization::localizedStringForKey;

namespace {

constexpr QSize kIndicatorSize(144, 30);
constexpr int kHintFontSize = 12;

qint64 nowMs()
{
    static QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return clock.elapsed();
}

Qt::CursorShape cursorShape(GKCropBorderGeometry::Cursor cursor)
{
    using Cursor = GKCropBorderGeometry::Cursor;
    switch (cursor) {
    case Cursor::ResizeNorthEastSouthWest:
        return Qt::SizeBDiagCursor;
    case Cursor::ResizeUpDown:
        return Qt::SizeVerCursor;
    case Cursor::ResizeNorthWestSouthEast:
        return Qt::SizeFDiagCursor;
    case Cursor::ResizeLeftRight:
        return Qt::SizeHorCursor;
    case Cursor::OpenHand:
        return Qt::OpenHandCursor;
    case Cursor::ClosedHand:
        return Qt::ClosedHandCursor;
    case Cursor::Arrow:
        break;
    }
    return Qt::ArrowCursor;
}

TNButton *barButton(QWidget *bar, const QRect &frame, const QString &title,
                    const QString &description)
{
    auto *button = new TNButton(frame, bar);
    button->setText(title);
    button->setTextColor(Qt::white);
    button->setAccessibleName(title);
    button->setAccessibleDescription(description);
    return button;
}

} // namespace

TNClipView::TNClipView(const QRect &frame, const Kind &kind, QWidget *parent)
    : QWidget(parent), kind_(kind),
      selection_({frame.size(), kind.type, kind.wholeScreen, kind.appWindow, std::nullopt, false}),
      borderColor_(GKCropBorderPainter::defaultBorderColor())
{
    setGeometry(frame);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_TranslucentBackground);
    setAccessibleDescription(QStringLiteral("recordScreenView"));
    // The frame shows for a region only; for a whole screen or a window it stays hidden.
    borderAlpha_ = (!kind.wholeScreen && !kind.appWindow) ? 1.0 : 0.0;
}

QPointF TNClipView::viewPoint(const QPointF &widgetPoint) const
{
    return QPointF(widgetPoint.x(), height() - widgetPoint.y());
}

QRectF TNClipView::widgetRect(const QRectF &viewRect) const
{
    return QRectF(viewRect.x(), height() - viewRect.y() - viewRect.height(), viewRect.width(),
                  viewRect.height());
}

void TNClipView::showClipViewWithFrame(const QRectF &rect, QWidget *toolbar)
{
    toolbar_ = toolbar;
    selection_ = TNClipSelection(
        {size(), kind_.type, kind_.wholeScreen, kind_.appWindow, std::nullopt, toolbar != nullptr});
    selection_.showWithFrame(rect);
    if (!kind_.wholeScreen && kind_.type == 1 && !indicatorView_)
        buildIndicatorView();
    resetIndicatorField();
    update();
}

void TNClipView::setFrameForContentView(const QRectF &rect)
{
    const QRectF before = selection_.contentFrame();
    selection_.setFrameForContentView(rect);
    // Hover proposes the same window move after move: nothing to draw then.
    if (selection_.contentFrame() == before)
        return;
    resetIndicatorField();
    updateAround(before);
}

void TNClipView::updateAround(const QRectF &borderBefore)
{
    // Only the frame's old and new places change: the dim moves with the hole, the frame and
    // its handles with the border. A whole-screen repaint costs milliseconds.
    constexpr int kMargin = 4;
    const auto dirty = [this](const QRectF &border) {
        return widgetRect(border).toAlignedRect().adjusted(-kMargin, -kMargin, kMargin, kMargin);
    };
    update(QRegion(dirty(borderBefore)).united(dirty(selection_.contentFrame())));
}

void TNClipView::setOverlayAlpha(double alpha)
{
    overlayAlpha_ = alpha;
    update();
}

void TNClipView::setHaveSetClearColor(bool clear)
{
    haveSetClearColor_ = clear;
    update();
}

void TNClipView::setBorderColor(const QColor &color)
{
    borderColor_ = color;
    update();
}

void TNClipView::setHideHandleRect(bool hide)
{
    hideHandleRect_ = hide;
    if (hide)
        unsetCursor();
    update();
}

void TNClipView::removeIndicatorView()
{
    delete indicatorView_;
    indicatorView_ = nullptr;
    frameTextField_ = okBtn_ = cancelBtn_ = nullptr;
    delete indicatorField_;
    indicatorField_ = nullptr;
}

QString TNClipView::frameText() const
{
    return TNClipGeometry::sizeText(contentViewFrame().size());
}

void TNClipView::startNoteButtonClick()
{
    if (delegate_)
        delegate_->recordStartNote();
}

void TNClipView::cancelBtnAction()
{
    if (delegate_)
        delegate_->cancelClip();
}

void TNClipView::buildIndicatorView()
{
    indicatorField_ =
        new QLabel(localizedStringForKey(QStringLiteral("Press ESC key to exit")), this);
    QFont font = indicatorField_->font();
    font.setPixelSize(kHintFontSize);
    indicatorField_->setFont(font);
    indicatorField_->setStyleSheet(QStringLiteral("color: rgba(255, 255, 255, 204);"));
    indicatorField_->setAccessibleDescription(QStringLiteral("indicatorField"));

    indicatorView_ = new QWidget(this);
    indicatorView_->resize(kIndicatorSize);
    indicatorView_->setAccessibleDescription(QStringLiteral("indicatorView"));
    indicatorView_->setAutoFillBackground(true);
    QPalette palette = indicatorView_->palette();
    palette.setColor(QPalette::Window, QColor(136, 136, 136, 204));
    indicatorView_->setPalette(palette);
    const int barWidth = kIndicatorSize.width();
    // A tick and a cross, as the desktop draws them in text.
    okBtn_ = barButton(indicatorView_, QRect(barWidth - 30, 5, 24, 20), QStringLiteral("✓"),
                       QStringLiteral("okBtn"));
    cancelBtn_ = barButton(indicatorView_, QRect(barWidth - 54, 3, 24, 24), QStringLiteral("✕"),
                           QStringLiteral("cancelBtn"));
    frameTextField_ = barButton(indicatorView_, QRect(10, 3, cancelBtn_->x() - 10, 24), QString(),
                                QStringLiteral("frameTextField"));
    connect(okBtn_, &QAbstractButton::clicked, this, [this] { startNoteButtonClick(); });
    connect(cancelBtn_, &QAbstractButton::clicked, this, [this] { cancelBtnAction(); });
}

void TNClipView::resetIndicatorField()
{
    if (!indicatorField_ || !indicatorView_)
        return;
    const QRectF border = selection_.contentFrame();
    const QFontMetrics metrics(indicatorField_->font());
    const int textWidth = metrics.horizontalAdvance(indicatorField_->text());
    if (border.width() < textWidth + 10) {
        indicatorField_->hide();
        return;
    }
    const int hintHeight = metrics.height();
    indicatorField_->setGeometry(widgetRect(QRectF(border.x() + 10, border.y() - hintHeight + 30,
                                                   textWidth + 10, hintHeight))
                                     .toRect());
    indicatorField_->show();
    indicatorView_->setGeometry(widgetRect(QRectF(border.right() - 150, border.y() + 5,
                                                  kIndicatorSize.width(), kIndicatorSize.height()))
                                    .toRect());
    indicatorView_->show();
    indicatorView_->raise();
}

void TNClipView::resizeEvent(QResizeEvent *event)
{
    selection_.setBounds(size());
    QWidget::resizeEvent(event);
}

void TNClipView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // The grey until the pointer first moves lies under everything, the hole too.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (paintsScreenImage_) {
        painter.drawImage(rect(), screenImage_);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        if (!haveSetClearColor_)
            painter.fillRect(rect(), QColor(0, 0, 0, 102));
    } else {
        painter.fillRect(rect(),
                         haveSetClearColor_ ? QColor(Qt::transparent) : QColor(0, 0, 0, 102));
    }
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QRect hole = widgetRect(contentViewFrame()).toAlignedRect();
    painter.setClipRegion(QRegion(rect()).subtracted(QRegion(hole)));
    painter.fillRect(rect(), QColor::fromRgbF(0, 0, 0, float(overlayAlpha_)));
    painter.setClipping(false);

    if (frameTextField_)
        frameTextField_->setText(frameText());
    if (borderAlpha_ > 0) {
        const QRectF border = widgetRect(selection_.contentFrame());
        painter.translate(border.topLeft());
        QColor color = borderColor_;
        color.setAlphaF(float(color.alphaF() * borderAlpha_));
        GKCropBorderPainter::paint(painter, border.size(), color, hideHandleRect_);
        painter.resetTransform();
    }
    if (showsLoupe())
        paintLoupe(painter);
}

void TNClipView::press(const QPointF &widgetPoint, int clickCount)
{
    const QPointF p = viewPoint(widgetPoint);
    const TNClipSelection::Press result =
        selection_.mouseDown(p, rect().contains(widgetPoint.toPoint()), clickCount, nowMs());
    if (result.doubleClick) {
        if (delegate_)
            delegate_->clipViewMouseDoubleClick(this);
        return;
    }
    pressed_ = true;
    resetIndicatorField();
    updateCursor(p);
    update();
    if (result.releaseNow)
        release();
}

void TNClipView::release()
{
    pressed_ = false;
    const TNClipSelection::Release result = selection_.mouseUp(nowMs(), mainScreenFrame_);
    resetIndicatorField();
    update();
    if (!delegate_)
        return;
    if (result.clipCurrentWindow)
        delegate_->clipViewClipCurrentWindow(this);
    if (result.toolbarShown)
        delegate_->recordViewDidShowToolBar(this);
    if (result.clipFullScreen)
        delegate_->clipViewClipFullScreen(this);
    if (result.startRecording && startRegisteredRecording)
        startRegisteredRecording();
}

void TNClipView::updateCursor(const QPointF &p)
{
    if (borderAlpha_ <= 0 || hideHandleRect_)
        return;
    const QRectF border = selection_.contentFrame();
    setCursor(cursorShape(GKCropBorderGeometry::cursorAt(p - border.topLeft(), border.size(),
                                                         hideHandleRect_, pressed_)));
}

void TNClipView::mousePressEvent(QMouseEvent *event)
{
    // A click makes the overlay the one that takes the keys, as the window manager would
    // for a window it managed.
    if (!window()->isActiveWindow())
        window()->activateWindow();
    if (event->button() == Qt::LeftButton)
        press(event->position(), 1);
}

void TNClipView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        press(event->position(), 2);
}

void TNClipView::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF p = viewPoint(event->position());
    if (event->buttons() & Qt::LeftButton) {
        const QRectF before = selection_.contentFrame();
        if (selection_.mouseDragged(p)) {
            resetIndicatorField();
            updateAround(before);
        }
        return;
    }
    NSLog(lcSelection, "鼠标移动");
    moveLoupe();
    if (selection_.mouseMoved()) {
        if (delegate_)
            delegate_->clipViewMouseMoved(this);
        selection_.hoverProposed();
    }
    updateCursor(p);
    // A whole screen needs no more than a move to be selected and accepted.
    if (kind_.wholeScreen)
        press(event->position(), 1);
}

void TNClipView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        release();
}

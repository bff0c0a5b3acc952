// The overlay's window on its screen, the keys while a region is chosen, and hover over the
// windows of the desktop.
#include "TNRecordScreenWindowController.h"

#include "NSScreenPointConversion.h"
#include "OverlayWindow.h"
#include "Platform.h"
#include "Pointer.h"
#include "RecordTypes.h"
#include "SnipUtil.h"
#include "TNRecordManager.h"
#include "WindowServer.h"

#include <QWidget>
#include <QWindow>
#include <cmath>

TNRecordScreenWindowController::~TNRecordScreenWindowController()
{
    cleanup();
}

void TNRecordScreenWindowController::makeWindow(bool show)
{
    auto window = makeOverlayWindow(*platform_.screens, screen_);
    const QSize size = window->size();
    const quint64 type = delegate_ ? delegate_->recordVideoType() : VideoTypeCustomArea;
    recordScreenView_ =
        new TNClipView(QRect(QPoint(), size),
                       {1, type == VideoTypeFullScreen, type == VideoTypeAppWindow}, window.get());
    recordScreenView_->setDelegate(this);
    if (const std::optional<ScreenInfo> main = platform_.screens->mainScreen())
        recordScreenView_->setMainScreenFrame(main->frame);
    // One click on a window takes it, on the overlay it was made on.
    recordScreenView_->startRegisteredRecording = [this] { startNoteButtonClick(); };
    // The screen as it is before the overlay covers it: for the loupe, and to stand in for the
    // desktop where translucent windows show only their own pixels.
    recordScreenView_->setScreenImage(SnipUtil::imageRectangleScreen(
        *platform_.windows, SnipUtil::cgWindowRectToScreenRect(*platform_.screens, screen_.frame),
        {}));
    recordScreenView_->setPaintsScreenImage(!platform_.windows->isCompositing());
    const CursorImage arrow = platform_.pointer->arrowCursor();
    recordScreenView_->setLoupeSource([this, arrow]() -> std::optional<LoupeGeometry::Input> {
        const std::optional<ScreenInfo> under =
            NSScreenPointConversion::currentScreenForMouseLocation(*platform_.screens,
                                                                   *platform_.pointer);
        if (!under || !(*under == screen_))
            return std::nullopt;
        return LoupeGeometry::Input{platform_.pointer->mouseLocation(), arrow.image.size(),
                                    arrow.hotSpot, under->frame};
    });
    window_ = std::move(window);
    if (show)
        makeKeyAndOrderFront();
}

void TNRecordScreenWindowController::makeKeyAndOrderFront()
{
    orderFrontAndFocus(window_.get(), recordScreenView_);
}

void TNRecordScreenWindowController::orderOut()
{
    if (window_)
        window_->hide();
}

void TNRecordScreenWindowController::removeRecordScreenView()
{
    if (recordScreenView_) {
        recordScreenView_->setDelegate(nullptr);
        recordScreenView_->hide();
        recordScreenView_->deleteLater();
        recordScreenView_ = nullptr;
    }
}

void TNRecordScreenWindowController::cleanup()
{
    delegate_ = nullptr;
    orderOut();
    removeEventMonitor();
    removeRecordScreenView();
    // The window may be handling the event that ended it.
    if (window_)
        window_.release()->deleteLater();
}

void TNRecordScreenWindowController::addEventMonitor()
{
    eventMonitor_ = std::make_unique<KeyMonitor>(window_.get(), [this](int key) {
        if (key == Qt::Key_Escape) {
            cancelSelection();
        } else if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (TNClipView *view = actingView())
                view->startNoteButtonClick();
        }
    });
}

void TNRecordScreenWindowController::removeEventMonitor()
{
    if (eventMonitor_)
        eventMonitor_.release()->deleteLater();
}

void TNRecordScreenWindowController::cancelSelection()
{
    TNRecordManager *manager = delegate_;
    cleanup();
    host_.enableSourceChoice();
    // Every screen's overlay goes, this one's among them.
    if (manager)
        manager->recordScreenWindowControllerDidCancel();
}

QRectF TNRecordScreenWindowController::viewRect(const QRectF &screenRect) const
{
    return screenRect.translated(-screen_.frame.topLeft());
}

void TNRecordScreenWindowController::ChooseWindowRectInScreen(const QVariantList &arrayRect)
{
    if (!delegate_ || delegate_->isDisableChangeScreen())
        return;
    const QPointF m = platform_.pointer->mouseLocation();
    for (const QVariant &item : arrayRect) {
        const QVariantMap info = item.toMap();
        const QRectF rect = SnipUtil::cgWindowRectToScreenRect(
            *platform_.screens,
            rectFromBounds(info.value(QString::fromLatin1(kCGWindowBounds)).toMap()));
        const auto take = [&] {
            const std::optional<ScreenInfo> target = targetScreen();
            if (target && *target == screen_) {
                if (window_ && !window_->isActiveWindow())
                    makeKeyAndOrderFront();
            } else if (target) {
                delegate_->changeKeyWindowWithScreen(*target);
            }
            const QRectF local = viewRect(rect);
            if (!delegate_->isDisableChangeScreen())
                lastWindowRect_ =
                    QRectF(local.topLeft(), QSizeF(std::floor(local.width() / 4) * 4,
                                                   std::floor(local.height() / 4) * 4));
        };
        const bool under = SnipUtil::isPoint(m, rect);
        if (under)
            take();
        // The window-following capture reads these after the walk, hit or not.
        host_.setSelectedWindowNumber(info.value(QString::fromLatin1(kCGWindowNumber)).toUInt());
        host_.setSelectedWindowName(info.value(QString::fromLatin1(kCGWindowName)).toString());
        // Menus and panels may set the rectangle; the front-most normal window decides.
        if (info.value(QString::fromLatin1(kCGWindowLayer)).toInt() == 0 && under) {
            take();
            return;
        }
    }
}

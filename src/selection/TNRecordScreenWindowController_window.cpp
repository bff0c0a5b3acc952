// The overlay's window on its screen, the keys while a region is chosen, and hover over the
// windows of the desktop.
#include "TNRecordScreenWindowController.h"

#include "Localization.h"
#include "Platform.h"
#include "Pointer.h"
#include "RecordTypes.h"
#include "SnipUtil.h"
#include "TNRecordManager.h"
#include "WindowServer.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <cmath>
#include <functional>

namespace {

// Sees the key presses of one window before its widgets do and lets them pass on.
class KeyMonitor : public QObject {
public:
    KeyMonitor(QWidget *window, std::function<void(int key)> onKey)
        : window_(window), onKey_(std::move(onKey))
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // A key reaches the native window first: only that delivery counts.
        if (event->type() == QEvent::KeyPress && window_ && watched == window_->windowHandle())
            onKey_(static_cast<QKeyEvent *>(event)->key());
        return false;
    }

private:
    QPointer<QWidget> window_;
    std::function<void(int)> onKey_;
};

QRectF rectFromBounds(const QVariantMap &bounds)
{
    return QRectF(bounds.value(QStringLiteral("X")).toDouble(),
                  bounds.value(QStringLiteral("Y")).toDouble(),
                  bounds.value(QStringLiteral("Width")).toDouble(),
                  bounds.value(QStringLiteral("Height")).toDouble());
}

} // namespace

TNRecordScreenWindowController::~TNRecordScreenWindowController()
{
    cleanup();
}

void TNRecordScreenWindowController::makeWindow()
{
    // Above every window, unmoved by the window manager, see-through where nothing is drawn.
    auto window = std::make_unique<QWidget>(nullptr, Qt::Window | Qt::FramelessWindowHint |
                                                         Qt::WindowStaysOnTopHint |
                                                         Qt::X11BypassWindowManagerHint);
    window->setAttribute(Qt::WA_TranslucentBackground);
    // The program's name: the screenshot of a still clip leaves out windows so named.
    window->setWindowTitle(Localization::localizedStringForKey(QStringLiteral("Meun_App")));
    window->setAccessibleDescription(QStringLiteral("TNClipWindow"));
    const QRect frame =
        SnipUtil::cgWindowRectToScreenRect(*platform_.screens, screen_.frame).toAlignedRect();
    window->setGeometry(frame);
    const quint64 type = delegate_ ? delegate_->recordVideoType() : VideoTypeCustomArea;
    recordScreenView_ =
        new TNClipView(QRect(QPoint(), frame.size()),
                       {1, type == VideoTypeFullScreen, type == VideoTypeAppWindow}, window.get());
    recordScreenView_->setDelegate(this);
    if (const std::optional<ScreenInfo> main = platform_.screens->mainScreen())
        recordScreenView_->setMainScreenFrame(main->frame);
    // One click on a window takes it, on the overlay it was made on.
    recordScreenView_->startRegisteredRecording = [this] { startNoteButtonClick(); };
    window_ = std::move(window);
    makeKeyAndOrderFront();
}

void TNRecordScreenWindowController::makeKeyAndOrderFront()
{
    if (!window_)
        return;
    window_->show();
    window_->raise();
    window_->activateWindow();
    if (recordScreenView_)
        recordScreenView_->setFocus();
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

#include "TNClipWindowController.h"

#include "NSScreenPointConversion.h"
#include "Platform.h"
#include "Pointer.h"
#include "SnipUtil.h"

#include <QEvent>
#include <QMetaObject>
#include <QVariantAnimation>
#include <cmath>

namespace {

// The border flies out to the whole window before the picture is handed on.
constexpr int kFlyOutMs = 250;
// The picture is taken inside the border's margin.
constexpr double kBorderMargin = 5;

QRectF flooredToFours(const QRectF &rect)
{
    return QRectF(rect.topLeft(),
                  QSizeF(std::floor(rect.width() / 4) * 4, std::floor(rect.height() / 4) * 4));
}

// Moves the tool bar with the region as it is dragged and resized.
class ToolbarFollower : public QObject {
public:
    ToolbarFollower(QObject *parent, std::function<void()> follow)
        : QObject(parent), follow_(std::move(follow))
    {}

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::MouseMove || event->type() == QEvent::MouseButtonRelease)
            QMetaObject::invokeMethod(this, follow_, Qt::QueuedConnection); // after the view
        return false;
    }

private:
    std::function<void()> follow_;
};

} // namespace

TNClipWindowController::TNClipWindowController(TNClipWindowControllerDelegate *delegate,
                                               const Platform &platform)
    : delegate_(delegate), platform_(platform)
{}

TNClipWindowController::~TNClipWindowController()
{
    delegate_ = nullptr;
    endCapture();
    // The window may be handling the event that ended the clip.
    if (window_)
        window_.release()->deleteLater();
}

void TNClipWindowController::startCaptureWithScreen(const ScreenInfo &screen)
{
    screen_ = screen;
    window_ = makeOverlayWindow(*platform_.screens, screen);
    const QSize size = window_->size();
    clipView_ = new TNClipView(QRect(QPoint(), size), {0, false, false}, window_.get());
    clipView_->setDelegate(this);
    if (const std::optional<ScreenInfo> main = platform_.screens->mainScreen())
        clipView_->setMainScreenFrame(main->frame.translated(-screen.frame.topLeft()));
    clipView_->installEventFilter(new ToolbarFollower(clipView_, [this] { resetToolBarFrame(); }));
    // Where translucent windows show only their own pixels, the screen as it was stands in.
    if (!platform_.windows->isCompositing()) {
        clipView_->setScreenImage(SnipUtil::imageRectangleScreen(
            *platform_.windows,
            SnipUtil::cgWindowRectToScreenRect(*platform_.screens, screen.frame), {}));
        clipView_->setPaintsScreenImage(true);
    }
    makeKeyAndOrderFront();

    toolbarViewController_ = new TNClipToolbarViewController(clipView_);
    toolbarViewController_->setDelegate(this);
    toolbarViewController_->hide(); // until a region stands
    const QRectF whole = flooredToFours(QRectF(QPointF(), QSizeF(size)));
    clipView_->showClipViewWithFrame(whole, toolbarViewController_);
    lastWindowRect_ = whole;
    eventMonitor_ = std::make_unique<KeyMonitor>(window_.get(), [this](int key) {
        if (key == Qt::Key_Escape)
            cancelClip();
    });
}

void TNClipWindowController::makeKeyAndOrderFront()
{
    orderFrontAndFocus(window_.get(), clipView_);
}

void TNClipWindowController::orderOut()
{
    if (window_)
        window_->hide();
}

bool TNClipWindowController::isVisible() const
{
    return window_ && window_->isVisible();
}

void TNClipWindowController::removeEventMonitor()
{
    if (eventMonitor_)
        eventMonitor_.release()->deleteLater();
}

void TNClipWindowController::endCapture()
{
    if (flyOut_)
        flyOut_->stop();
    orderOut();
    removeEventMonitor();
    if (clipView_) {
        clipView_->setDelegate(nullptr);
        clipView_->deleteLater();
        clipView_ = nullptr;
    }
}

void TNClipWindowController::cancelClip()
{
    endCapture();
    if (delegate_)
        delegate_->clipWindowControllerDidCancel(this);
}

void TNClipWindowController::clipViewMouseMoved(TNClipView *view)
{
    if (!view->haveSetClearColor())
        view->setHaveSetClearColor(true);
    // The keys follow the pointer to whichever screen it is on.
    const std::optional<ScreenInfo> under = NSScreenPointConversion::currentScreenForMouseLocation(
        *platform_.screens, *platform_.pointer);
    if (under && !(*under == screen_) && delegate_)
        delegate_->changeKeyWindowWithScreen(*under);
    if (delegate_) {
        const QPointF m = platform_.pointer->mouseLocation();
        for (const QVariant &item : delegate_->arrayRect()) {
            const QVariantMap info = item.toMap();
            const QRectF rect = SnipUtil::cgWindowRectToScreenRect(
                *platform_.screens,
                rectFromBounds(info.value(QString::fromLatin1(kCGWindowBounds)).toMap()));
            if (!SnipUtil::isPoint(m, rect))
                continue;
            lastWindowRect_ = flooredToFours(rect.translated(-screen_.frame.topLeft()));
            lastWindowNumber_ = info.value(QString::fromLatin1(kCGWindowNumber)).toLongLong();
            // Menus and panels may set the rectangle; the front-most normal window decides.
            if (info.value(QString::fromLatin1(kCGWindowLayer)).toInt() == 0)
                break;
        }
    }
    view->setFrameForContentView(lastWindowRect_);
}

void TNClipWindowController::clipViewClipCurrentWindow(TNClipView *)
{
    clipScreen();
}

void TNClipWindowController::clipViewMouseDoubleClick(TNClipView *)
{
    clipScreen();
}

void TNClipWindowController::clipToolbarViewControllerCliped(TNClipToolbarViewController *)
{
    clipScreen();
}

void TNClipWindowController::clipToolbarViewControllerCancel(TNClipToolbarViewController *)
{
    endCapture();
    if (delegate_)
        delegate_->clipWindowControllerDidCancel(this);
}

void TNClipWindowController::recordViewDidShowToolBar(TNClipView *)
{
    if (!toolbarViewController_)
        return;
    resetToolBarFrame();
    toolbarViewController_->show();
    toolbarViewController_->raise();
}

void TNClipWindowController::resetToolBarFrame()
{
    if (!clipView_ || !toolbarViewController_)
        return;
    // Centred on the region, 10 above its lower edge.
    const QRectF border = clipView_->selection().contentFrame();
    const QSizeF size = toolbarViewController_->size();
    const QRectF frame(border.x() + border.width() / 2 - size.width() / 2, border.y() + 10,
                       size.width(), size.height());
    toolbarViewController_->move(clipView_->widgetRect(frame).topLeft().toPoint());
}

QRectF TNClipWindowController::clipRectInServerSpace() const
{
    const QRectF hole = clipView_->contentViewFrame().translated(screen_.frame.topLeft());
    return SnipUtil::cgWindowRectToScreenRect(*platform_.screens, hole);
}

void TNClipWindowController::clipScreen()
{
    if (!clipView_ || flyOut_)
        return;
    removeEventMonitor();
    QList<CGWindowID> except;
    if (window_)
        except.append(CGWindowID(window_->winId()));
    // A window taken by a click comes alone: whatever lies over it stays out.
    const bool wholeScreen = lastWindowRect_.size() == screen_.frame.size();
    if (clipView_->selection().onlyClipCurrentWindow() && !wholeScreen && delegate_) {
        for (const QVariant &item : delegate_->arrayRect()) {
            const qint64 number =
                item.toMap().value(QString::fromLatin1(kCGWindowNumber)).toLongLong();
            if (number != lastWindowNumber_)
                except.append(CGWindowID(number));
        }
    }
    const QRectF rect = clipRectInServerSpace().adjusted(kBorderMargin, kBorderMargin,
                                                         -kBorderMargin, -kBorderMargin);
    const QImage image = SnipUtil::imageRectangleScreen(*platform_.windows, rect, except);

    if (toolbarViewController_)
        toolbarViewController_->hide();
    auto *animation = new QVariantAnimation(this);
    animation->setDuration(kFlyOutMs);
    animation->setStartValue(clipView_->contentViewFrame());
    animation->setEndValue(QRectF(QPointF(), QSizeF(clipView_->size())));
    connect(animation, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        if (clipView_) {
            clipView_->setFrameForContentView(value.toRectF());
            clipView_->update();
        }
    });
    connect(animation, &QVariantAnimation::finished, this, [this, image] {
        endCapture();
        if (delegate_)
            delegate_->clipWindowControllerDidClipedWithImage(this, image);
    });
    flyOut_ = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

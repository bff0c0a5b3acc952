#include "OverlayWindow.h"

#include "Localization.h"
#include "ScreenGeometry.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>

std::unique_ptr<QWidget> makeOverlayWindow(const ScreenCatalog &screens, const ScreenInfo &screen)
{
    auto window = std::make_unique<QWidget>(nullptr, Qt::Window | Qt::FramelessWindowHint |
                                                         Qt::WindowStaysOnTopHint |
                                                         Qt::X11BypassWindowManagerHint);
    window->setAttribute(Qt::WA_TranslucentBackground);
    window->setWindowTitle(Localization::localizedStringForKey(QStringLiteral("Meun_App")));
    window->setAccessibleDescription(QStringLiteral("TNClipWindow"));
    // Windows stand in the root window's coordinates, where the primary monitor need not be
    // at the origin.
    window->setGeometry(
        ScreenGeometry::screenToRoot(screen.frame, screens.primaryRootFrame()).toAlignedRect());
    return window;
}

void orderFrontAndFocus(QWidget *window, QWidget *focus)
{
    if (!window)
        return;
    window->show();
    window->raise();
    window->activateWindow();
    if (focus)
        focus->setFocus();
}

QRectF rectFromBounds(const QVariantMap &bounds)
{
    return QRectF(bounds.value(QStringLiteral("X")).toDouble(),
                  bounds.value(QStringLiteral("Y")).toDouble(),
                  bounds.value(QStringLiteral("Width")).toDouble(),
                  bounds.value(QStringLiteral("Height")).toDouble());
}

KeyMonitor::KeyMonitor(QWidget *window, std::function<void(int key)> onKey)
    : window_(window), onKey_(std::move(onKey))
{
    qApp->installEventFilter(this);
}

bool KeyMonitor::eventFilter(QObject *watched, QEvent *event)
{
    // A key reaches the native window first: only that delivery counts.
    if (event->type() == QEvent::KeyPress && window_ && watched == window_->windowHandle())
        onKey_(static_cast<QKeyEvent *>(event)->key());
    return false;
}

#include "CustomPopover.h"

#include "PopViewController.h"

#include <QVBoxLayout>

QPoint popoverPosition(const QRect &anchor, const QSize &popupSize, NSRectEdge edge)
{
    const int centredX = anchor.x() + (anchor.width() - popupSize.width()) / 2;
    const int centredY = anchor.y() + (anchor.height() - popupSize.height()) / 2;
    switch (edge) {
    case NSRectEdge::MinX:
        return QPoint(anchor.left() - popupSize.width(), centredY);
    case NSRectEdge::MaxX:
        return QPoint(anchor.right() + 1, centredY);
    case NSRectEdge::MinY:
        return QPoint(centredX, anchor.bottom() + 1);
    case NSRectEdge::MaxY:
        break;
    }
    return QPoint(centredX, anchor.top() - popupSize.height());
}

CustomPopover::CustomPopover(PopViewController *controller, QWidget *parent)
    : QWidget(parent, Qt::Popup), controller_(controller)
{
    setAccessibleName(tr("Popover"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(controller_);
    controller_->viewDidLoad();
}

CustomPopover::CustomPopover(const QRect &frame, PopViewController *controller, QWidget *parent)
    : CustomPopover(controller, parent)
{
    controller_->setFixedSize(frame.size());
}

void CustomPopover::showRelativeToRect(const QRect &rect, QWidget *view, NSRectEdge preferredEdge)
{
    adjustSize();
    const QRect anchor(view->mapToGlobal(rect.topLeft()), rect.size());
    move(popoverPosition(anchor, size(), preferredEdge));
    show();
    // The frame is the controller's superview: this popup.
    PopViewController::paintFrame(this);
}

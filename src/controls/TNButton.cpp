#include "TNButton.h"

#include "ControlsLog.h"
#include "Log.h"
#include "TNButtonFill.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QPainter>

TNButton::TNButton(QWidget *parent, TNButtonOrigin origin) : QAbstractButton(parent)
{
    // A form's button comes with its tracking area (entered, exited, moved, always active).
    setTracksMouse(origin == TNButtonOrigin::Form);
}

TNButton::TNButton(const QRect &frame, QWidget *parent) : TNButton(parent, TNButtonOrigin::Code)
{
    setGeometry(frame);
}

void TNButton::setTracksMouse(bool tracks)
{
    tracksMouse_ = tracks;
    setMouseTracking(tracks);
}

void TNButton::setIsMouseColor(bool on)
{
    isMouseColor_ = on;
    update();
}

void TNButton::setCanMouseCustomColor(bool on)
{
    canMouseCustomColor_ = on;
    update();
}

void TNButton::setTextColor(const QColor &color)
{
    cell_.setTextColor(color);
    update();
}

void TNButton::setTexteEdgeInsets(const NSEdgeInsets &insets)
{
    cell_.setTexteEdgeInsets(insets);
    update();
}

void TNButton::setImageEdgeInsets(const NSEdgeInsets &insets)
{
    cell_.setImageEdgeInsets(insets);
    update();
}

void TNButton::setImage(const QPixmap &image)
{
    image_ = image;
    updateGeometry();
    update();
}

QSize TNButton::sizeHint() const
{
    const QSize text = fontMetrics().size(Qt::TextSingleLine, this->text()) + QSize(12, 6);
    return text.expandedTo(image_.deviceIndependentSize().toSize());
}

void TNButton::setEntered(bool entered, QEvent *event, const Block &block, const char *operation)
{
    if (canMouseCustomColor_ || isMouseColor_) {
        capstan::NSLog(lcControls, "%s", operation);
        isEntered_ = entered;
        update();
    }
    if (block)
        block(this, event);
}

void TNButton::mouseEntered(QEvent *event)
{
    setEntered(true, event, mouseEnteredBlock_, __func__);
}

void TNButton::mouseExited(QEvent *event)
{
    setEntered(false, event, mouseExitedBlock_, __func__);
}

void TNButton::mouseDown(QMouseEvent *event)
{
    if (mouseDownBlock_)
        mouseDownBlock_(this, event);
}

void TNButton::mouseUp(QMouseEvent *)
{
    capstan::NSLog(lcControls, "%s", __func__);
}

void TNButton::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    if (tracksMouse_)
        mouseEntered(event);
}

void TNButton::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    if (tracksMouse_)
        mouseExited(event);
}

void TNButton::mousePressEvent(QMouseEvent *event)
{
    QAbstractButton::mousePressEvent(event);
    pressTracked_ = event->button() == Qt::LeftButton;
}

// A press is tracked until the button goes up, and only then is it over: the release that
// ends it belongs to the press, so mouseUp is left for a release without one.
void TNButton::mouseReleaseEvent(QMouseEvent *event)
{
    QAbstractButton::mouseReleaseEvent(event);
    if (pressTracked_ && event->button() == Qt::LeftButton) {
        pressTracked_ = false;
        mouseDown(event);
        return;
    }
    mouseUp(event);
}

void TNButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const TNButtonFill fill = tnButtonFill(
        {QSizeF(size()), canMouseCustomColor_, isMouseColor_, isEntered_, state() == 1});
    if (fill.setsLightGrayBackground)
        lightGrayBackground_ = true;
    if (lightGrayBackground_)
        painter.fillRect(rect(), TNButtonColors::lightGray());
    if (fill.kind != TNButtonFill::Kind::None)
        painter.fillRect(fill.rect, fill.brush());
    const QRectF frame(rect());
    cell_.drawImage(painter, image_, frame);
    cell_.drawTitle(painter, text(), font(), frame);
}

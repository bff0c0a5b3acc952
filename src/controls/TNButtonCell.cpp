#include "TNButtonCell.h"

#include <QPainter>

QRectF frameByInsets(const QRectF &frame, const NSEdgeInsets &insets)
{
    return QRectF(frame.x() + insets.left, frame.y() + insets.top,
                  frame.width() - (insets.right - insets.left),
                  frame.height() - (insets.bottom - insets.top));
}

QColor TNButtonCell::defaultTitleColor()
{
    return QColor::fromRgbF(0.5333333333333333f, 0.5333333333333333f, 0.5333333333333333f);
}

QColor TNButtonCell::titleColor() const
{
    return textColor_.isValid() ? textColor_ : defaultTitleColor();
}

QRectF TNButtonCell::drawTitle(QPainter &painter, const QString &title, const QFont &font,
                               const QRectF &frame) const
{
    const QRectF titleFrame = frameByInsets(frame, texteEdgeInsets_);
    if (title.isEmpty())
        return titleFrame;
    painter.save();
    painter.setFont(font);
    painter.setPen(titleColor());
    painter.drawText(titleFrame, Qt::AlignCenter | Qt::TextSingleLine, title);
    painter.restore();
    return titleFrame;
}

QRectF TNButtonCell::drawImage(QPainter &painter, const QPixmap &image, const QRectF &frame) const
{
    const QRectF imageFrame = frameByInsets(frame, imageEdgeInsets_);
    if (image.isNull())
        return imageFrame;
    // At its own size, centred in the frame.
    const QSizeF size = image.deviceIndependentSize();
    QRectF target(QPointF(), size);
    target.moveCenter(imageFrame.center());
    painter.drawPixmap(target, image, QRectF(image.rect()));
    return imageFrame;
}

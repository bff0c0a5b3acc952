#include "LoupeGeometry.h"

#include <QPainter>

namespace LoupeGeometry {

Loupe loupeAt(const Input &input)
{
    const int mx = int(input.mouse.x());
    const int my = int(input.mouse.y());
    const int cw = input.cursorSize.width();
    const int ch = input.cursorSize.height();
    const double hx = input.cursorHotSpot.x();
    const double hy = input.cursorHotSpot.y();
    Loupe loupe;
    loupe.shownX = int(mx + cw - input.screen.x() - hx);
    loupe.shownY = int(my - (hy + ch / 2));
    loupe.panelOrigin = QPointF(loupe.shownX + 20, input.mouse.y() - 40);
    const int height = int(input.screen.height());
    loupe.colourPixel = QPoint(mx, height - my);
    loupe.sample =
        QRect(mx - kSampleSide / 2, height - my - kSampleSide / 2, kSampleSide, kSampleSide);
    const QPointF m = input.mouse;
    loupe.circle = QRectF(m.x() - 12, m.y() - 12, 24, 24);
    loupe.verticalBar = QRectF(m.x() - 0.5, m.y() - 17, 1, 34);
    loupe.horizontalBar = QRectF(m.x() - 17, m.y() - 0.5, 34, 1);
    return loupe;
}

QString text(const Loupe &loupe, const QColor &colour)
{
    return QString::asprintf("%d,%d\n%.f,%.f,%.f", loupe.shownX, loupe.shownY,
                             colour.redF() * 255.0, colour.greenF() * 255.0,
                             colour.blueF() * 255.0);
}

QColor colourAt(const QImage &picture, QPoint pixel)
{
    if (!picture.valid(pixel))
        return Qt::black;
    return picture.pixelColor(pixel);
}

QImage samplePiece(const QImage &picture, const QRect &sample)
{
    QImage piece(sample.size(), QImage::Format_ARGB32_Premultiplied);
    piece.fill(Qt::transparent);
    if (picture.isNull())
        return piece;
    QPainter painter(&piece);
    painter.drawImage(QPoint(), picture, sample);
    return piece;
}

} // namespace LoupeGeometry

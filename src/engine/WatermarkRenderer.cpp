#include "WatermarkRenderer.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace WatermarkRenderer {

QFont fontFor(const TextWatermarkStyle &style)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (!style.fontName.isEmpty())
        font.setFamily(style.fontName);
    // The chosen size is pixels of the frame, a point per pixel as at 72 dpi. A point size
    // would be scaled by the screen's resolution: a third larger at 96 dpi.
    const double size = style.pointSize > 0 ? style.pointSize : 20.0;
    font.setPixelSize(int(std::lround(std::clamp(size, 1.0, 4096.0))));
    return font;
}

QSizeF measure(const QString &text, const TextWatermarkStyle &style, const QSizeF &limit)
{
    if (text.isNull())
        return {0, 0};
    const QFontMetricsF metrics(fontFor(style));
    return metrics
        .boundingRect(QRectF(QPointF(0, 0), limit), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                      text)
        .size();
}

QImage imageWithText(const QString &text, const TextWatermarkStyle &style)
{
    const QSizeF size = measure(text, style, QSizeF(1080.0, 1080.0));
    const int width = int(std::ceil(size.width()));
    const int height = int(std::ceil(size.height()));
    if (width <= 0 || height <= 0)
        return {};
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QColor colour = style.color;
    colour.setAlphaF(style.alpha);
    painter.setPen(colour);
    painter.setFont(fontFor(style));
    // 40 pixels of slack keep the last word from wrapping inside the measured width.
    painter.drawText(QRectF(0, 0, size.width() + 40.0, size.height()),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text);
    return image;
}

QImage logoPlate(const QSizeF &size, const QImage &logo)
{
    const int width = int(size.width());
    const int height = int(size.height());
    if (width <= 0 || height <= 0)
        return {};
    const QSizeF box = size * 4.0 / 5.0;
    const QPointF origin((size.width() - box.width()) / 2, (size.height() - box.height()) / 2);
    QRectF target(origin, QSizeF(0, 0));
    if (logo.width() >= 1 && logo.height() >= 1 && box.width() >= 1 && box.height() >= 1) {
        const QSizeF l = logo.size();
        const double f = std::max(l.width() / box.width(), l.height() / box.height());
        const QSizeF fitted = l / f;
        target = QRectF(origin + QPointF((box.width() - fitted.width()) / 2,
                                         (box.height() - fitted.height()) / 2),
                        fitted);
    }
    QImage plate(width, height, QImage::Format_ARGB32_Premultiplied);
    plate.fill(QColor::fromRgbF(33 / 255.0f, 33 / 255.0f, 33 / 255.0f, 0.75f));
    if (!target.isEmpty()) {
        QPainter painter(&plate);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        // Bottom-left origin as the plate's geometry is given: flip the target once here.
        const QRectF flipped(target.x(), height - target.y() - target.height(), target.width(),
                             target.height());
        painter.drawImage(flipped, logo);
    }
    return plate;
}

QString qtDateFormat(const QString &pattern)
{
    // The styles use date-pattern letters; Qt's differ only in the year.
    QString format = pattern;
    format.replace(QLatin1String("YYYY"), QLatin1String("yyyy"));
    return format;
}

} // namespace WatermarkRenderer

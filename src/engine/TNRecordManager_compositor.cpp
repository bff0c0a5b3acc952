// The compositor: every screen frame redrawn at captureRect's size with the cursor
// highlight, the click ring, the arrow and the watermark burnt in.
//
// Geometry is worked out with the origin at the canvas's lower left, y up, as the
// cursor position and the watermark keys are given; QImage rows run top down, so each
// rectangle is flipped once, in toCanvas(), as it is drawn.
#include "TNRecordManager.h"

#include "Log.h"
#include "Pointer.h"
#include "WatermarkRenderer.h"

#include <QDateTime>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

using capstan::NSLog;

namespace {

constexpr float kHighlightSize = 40.0f;
constexpr float kRingBitmapSize = 60.0f;
constexpr float kRingStartWidth = 30.0f;
constexpr float kRingGrowth = 2.0f;
constexpr float kRingEndWidth = 60.0f;
constexpr float kWatermarkReferenceWidth = 594.0f;
constexpr float kWatermarkLargestWidth = 560.0f;

QRectF toCanvas(double x, double y, double width, double height, int canvasHeight)
{
    return {x, canvasHeight - y - height, width, height};
}

// The picture of the source scaled to width x height, in memory from the pool; a plain
// copy when it already has that size, which is the common case and keeps the frame path
// cheap.
QImage scaledCanvas(PixelBufferPool &pool, const QImage &source, int width, int height)
{
    QImage canvas = retainedWritableImage(pool.take(width, height));
    if (canvas.isNull())
        return canvas;
    if (source.size() == canvas.size() && source.format() == canvas.format()) {
        copyPixelRows(source, canvas);
        return canvas;
    }
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QRectF(0, 0, width, height), source);
    return canvas;
}

} // namespace

QPointF TNRecordManager::cursorCenter() const
{
    std::lock_guard lock(cursorCenterMutex_);
    return cursorCenter_;
}

QImage TNRecordManager::appendMouseCursor(const QImage &source)
{
    if (source.isNull())
        return {};
    const QRectF rect = captureRect();
    // The whole display has no rectangle: the frame keeps the source's size.
    const int width = rect.isEmpty() ? source.width() : int(rect.width());
    const int height = rect.isEmpty() ? source.height() : int(rect.height());
    if (width <= 0 || height <= 0)
        return {};

    const QPointF mouse = platform_.pointer->mouseLocation();
    const CursorImage arrow = platform_.pointer->arrowCursor();
    const int cw = arrow.image.width();
    const int ch = arrow.image.height();
    // The half-height term has always been part of the cursor's placement.
    const float px = std::trunc(std::trunc(mouse.x()) - rect.x() - arrow.hotSpot.x());
    const float py = std::trunc(std::trunc(mouse.y()) - rect.y() - (ch / 2 + arrow.hotSpot.y()));

    QImage canvas = scaledCanvas(canvasPool_, source, width, height);
    if (canvas.isNull())
        return {};
    const FrameDecorations decorations = host_.frameDecorations();
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);

    if (decorations.isMouseHight) {
        const float cx = px + cw * 0.5f;
        const float cy = py + ch * 0.5f;
        // A ring that starts at this very spot stands alone.
        const bool ringHere = cursorCenter() == QPointF(cx - 30, cy - 30) && isCursorClick_;
        if (!ringHere) {
            QColor cyan(Qt::cyan);
            cyan.setAlphaF(0.6f);
            painter.setPen(Qt::NoPen);
            painter.setBrush(cyan);
            const float half = kHighlightSize / 2;
            painter.drawEllipse(
                toCanvas(cx - half, cy - half, kHighlightSize, kHighlightSize, height));
        }
    }
    if (decorations.isMouseClickEffect && isCursorClick_ && cursorEffectWidth_ > 0)
        drawClickRing(painter, height, px, py, float(cw), float(ch));
    if (decorations.isShowMouse && !arrow.image.isNull())
        painter.drawImage(toCanvas(px, py, cw, ch, height), arrow.image);
    painter.end();
    drawWatermark(canvas, decorations);
    return canvas;
}

void TNRecordManager::drawClickRing(QPainter &painter, int canvasHeight, float px, float py,
                                    float cw, float ch)
{
    // The click's first frame anchors the ring; it stays there as the pointer moves on.
    if (cursorEffectWidth_ == kRingStartWidth) {
        std::lock_guard lock(cursorCenterMutex_);
        cursorCenter_ = QPointF(px + cw * 0.5f - 30, py + ch * 0.5f - 30);
    }
    const float width = cursorEffectWidth_ + kRingGrowth;
    cursorEffectWidth_ = width;
    if (width >= kRingEndWidth) {
        isCursorClick_ = false;
        cursorEffectWidth_ = 0;
        return;
    }
    NSLog(lcEngine, "self.cursorEffectWidth:%f", double(width));
    const QPointF anchor = cursorCenter();
    const double radius = width * 0.5 - 6.0;
    const QRectF bitmap =
        toCanvas(anchor.x(), anchor.y(), kRingBitmapSize, kRingBitmapSize, canvasHeight);
    painter.save();
    painter.setClipRect(bitmap);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor::fromRgbF(56 / 255.0f, 116 / 255.0f, 175 / 255.0f, 1.0f), 3.0));
    painter.drawEllipse(bitmap.center(), radius, radius);
    painter.restore();
}

void TNRecordManager::drawWatermark(QImage &canvas, const FrameDecorations &decorations)
{
    QImage image;
    bool isText = false;
    if (decorations.isTimeTextWatermark) {
        const QStringList &styles = decorations.timeFramStyles;
        if (styles.isEmpty())
            return;
        const qint64 index = decorations.timeFramStyleIndex;
        const QString style = index >= 0 && index < styles.size() ? styles[index] : styles.first();
        const QString now =
            QDateTime::currentDateTime().toString(WatermarkRenderer::qtDateFormat(style));
        image = WatermarkRenderer::imageWithText(now, decorations.textStyle);
        isText = true;
    } else if (decorations.watermarkType == 0 || decorations.watermarkType == 1) {
        image = decorations.watermarkImage;
    }
    if (image.isNull())
        return;

    const WatermarkPlacement &placement = decorations.placement;
    const float frameWidth = float(canvas.width());
    const float frameHeight = float(canvas.height());
    const float s = placement.scale * (frameWidth / kWatermarkReferenceWidth);
    float x = placement.centerX * frameWidth;
    float y = placement.centerY * frameHeight;
    float iw = float(image.width());
    float ih = float(image.height());
    if (iw > kWatermarkLargestWidth) {
        ih = ih / iw * kWatermarkLargestWidth;
        iw = kWatermarkLargestWidth;
    }
    const double fw = double(iw) * s;
    const double fh = double(ih) * s;
    // A text without a stored position sits in the lower left corner.
    if (isText && !(x > 0))
        x = float(fw / 2);
    if (isText && !(y > 0))
        y = float(fh / 2);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(toCanvas(x - fw / 2, y - fh / 2, fw, fh, canvas.height()), image);
}

QImage TNRecordManager::getCapturedImage()
{
    followSelectedWindow();
    const QRectF rect = captureRect();
    QImage image;
    if (const QList<CGWindowID> except = exceptWinodwArray(); !except.isEmpty()) {
        // The overlay's frame stays out of the picture: drawn over the region it would hide
        // it wherever the composition does not honour its transparency.
        QList<CGWindowID> windows = desktopElements();
        windows.removeIf([&except](CGWindowID id) { return except.contains(id); });
        image = platform_.windows->CGWindowListCreateImageFromArray(
            rect, windows, kCGWindowImageNominalResolution);
    } else {
        image = platform_.windows->CGWindowListCreateImage(rect, kCGWindowListOptionOnScreenOnly,
                                                           kCGNullWindowID);
    }
    const QImage composite = appendMouseCursor(image);
    if (composite.isNull() || composite.size() == rect.size().toSize())
        return composite;
    return composite.copy(0, 0, int(rect.width()), int(rect.height()));
}

QImage TNRecordManager::imageFromPixelBuffer(const PixelBufferRef &buffer)
{
    return retainedImage(buffer);
}

PixelBufferRef TNRecordManager::pixelBufferFromCGImage(const QImage &image, const QSizeF &size)
{
    // A composed frame is already laid out as a buffer: hand on its memory, no copy.
    if (image.size() == size.toSize() && image.format() == QImage::Format_ARGB32_Premultiplied)
        return PixelBuffer::wrap(image);
    PixelBufferRef buffer = PixelBuffer::create(int(size.width()), int(size.height()));
    if (!buffer)
        return nullptr;
    QImage target = buffer->image();
    const QImage source = image.format() == QImage::Format_ARGB32_Premultiplied
                              ? image
                              : image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (source.size() == target.size()) {
        copyPixelRows(source, target);
        return buffer;
    }
    // Drawn at its own size from the lower left; the rest stays transparent.
    target.fill(Qt::transparent);
    if (!source.isNull()) {
        QPainter painter(&target);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(QPointF(0, target.height() - source.height()), source);
    }
    return buffer;
}

QSizeF TNRecordManager::getTextWidth(const QString &text) const
{
    return WatermarkRenderer::measure(text, host_.frameDecorations().textStyle,
                                      captureRect().size());
}

QImage TNRecordManager::getTarnelLogoImageForRecording() const
{
    return WatermarkRenderer::logoPlate(captureRect().size(),
                                        QImage(QStringLiteral(":/preferencesRemoteAgent.png")));
}

QImage TNRecordManager::getWaterMarkerImageRef() const
{
    return getTarnelLogoImageForRecording().copy();
}

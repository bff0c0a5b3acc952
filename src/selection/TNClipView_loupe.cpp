// The loupe beside the pointer while a region is chosen for a recording, and the screen's
// picture under the dim where no compositing manager shows the desktop through.
#include "TNClipView.h"

#include <QPainter>
#include <QPainterPath>
#include <QRegion>

using namespace LoupeGeometry;

void TNClipView::setPaintsScreenImage(bool paints)
{
    paintsScreenImage_ = paints && !screenImage_.isNull();
    update();
}

void TNClipView::setLoupeSource(std::function<std::optional<Input>()> source)
{
    loupeSource_ = std::move(source);
    moveLoupe();
}

bool TNClipView::showsLoupe() const
{
    return loupeSource_ && kind_.type == 1 && !kind_.wholeScreen && !kind_.appWindow &&
           selection_.clipState() != ClipStateSelected;
}

QRegion TNClipView::loupeRegion() const
{
    if (!loupe_)
        return {};
    const QRect panel = widgetRect(QRectF(loupe_->panelOrigin, QSizeF(kPanelSize))).toAlignedRect();
    // The marks' circle and bars reach 17 from the pointer; a little more for the pen.
    const QRect marks = widgetRect(loupe_->circle).toAlignedRect().adjusted(-7, -7, 7, 7);
    return QRegion(panel.adjusted(-1, -1, 1, 1)).united(marks);
}

void TNClipView::moveLoupe()
{
    const QRegion before = loupeRegion();
    loupe_.reset();
    if (showsLoupe()) {
        if (const std::optional<Input> input = loupeSource_())
            loupe_ = loupeAt(*input);
    }
    update(before.united(loupeRegion()));
}

void TNClipView::leaveEvent(QEvent *event)
{
    moveLoupe(); // gone to another screen: its overlay shows the loupe now
    QWidget::leaveEvent(event);
}

void TNClipView::paintLoupe(QPainter &painter)
{
    if (!loupe_)
        return;
    const Loupe &loupe = *loupe_;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);

    // The marks around the pointer.
    const QColor red(255, 0, 0);
    painter.setPen(QPen(red, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(widgetRect(loupe.circle));
    painter.fillRect(widgetRect(loupe.verticalBar), red);
    painter.fillRect(widgetRect(loupe.horizontalBar), red);

    // The panel: a rounded, clipped, dark square; the enlarged picture above, the text below.
    const QRectF panel = widgetRect(QRectF(loupe.panelOrigin, QSizeF(kPanelSize)));
    QPainterPath outline;
    outline.addRoundedRect(panel.adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    painter.setClipPath(outline);
    painter.fillRect(panel, QColor::fromRgbF(0, 0, 0, 0.5f));
    const auto inPanel = [&panel](const QRectF &frame) {
        // Frames within the panel are y up from its lower left.
        return QRectF(panel.x() + frame.x(),
                      panel.y() + panel.height() - frame.y() - frame.height(), frame.width(),
                      frame.height());
    };
    const QRectF picture = inPanel(kPictureFrame);
    painter.fillRect(picture, QColor::fromRgbF(0.5333f, 0.5333f, 0.5333f, 0.5f));
    // Enlarged without smoothing: the pixels stay pixels, squeezed to the picture's frame.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(picture, samplePiece(screenImage_, loupe.sample));
    const QColor lines = QColor::fromRgbF(1, 0, 0, 0.8f);
    painter.fillRect(QRectF(picture.x(), picture.y() + picture.height() - 25 - 1, 80, 1), lines);
    painter.fillRect(QRectF(picture.x() + 39.5, picture.y(), 1, picture.height()), lines);
    const QRectF textFrame = inPanel(kTextFrame);
    painter.fillRect(textFrame, QColor::fromRgbF(0, 0, 0, 0.5f));
    QFont font = painter.font();
    font.setPixelSize(10);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(textFrame, Qt::AlignCenter,
                     text(loupe, colourAt(screenImage_, loupe.colourPixel)));
    painter.setClipping(false);
    painter.setPen(QPen(QColor::fromRgbF(0, 0, 0, 0.1f), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(outline);
    painter.restore();
}

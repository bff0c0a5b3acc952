#include "NSVertProgressView.h"

#include "MainThreadCall.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace {

// A rectangle with the bar's rounded ends: corner radius half the width.
QPainterPath roundedBar(const QRectF &rect, qreal width)
{
    QPainterPath path;
    path.addRoundedRect(rect, width / 2, width / 2);
    return path;
}

// The fill: rounded like the bar, and clipped by the bar's own rounded outline, as a layer
// mask would cut it; Qt clips a child to its parent's rectangle only.
class TrackView : public QWidget {
public:
    explicit TrackView(NSVertProgressView *bar) : QWidget(bar), bar_(bar)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath barOutline = roundedBar(QRectF(bar_->rect()), bar_->width());
        barOutline.translate(-QPointF(pos()));
        painter.setClipPath(barOutline);
        painter.fillPath(roundedBar(QRectF(rect()), width()), bar_->trackColor());
    }

private:
    NSVertProgressView *bar_;
};

} // namespace

NSVertProgressView::NSVertProgressView(const QRect &frame, QWidget *parent)
    : QWidget(parent), trackView_(new TrackView(this)),
      layoutCall_(new MainThreadCall([this] { layoutTrack(); }, this))
{
    setGeometry(frame);
    setAccessibleName(tr("Sound level"));
    trackView_->setAccessibleName(tr("Sound level fill"));
    layoutTrack();
}

QColor NSVertProgressView::backgroundColor()
{
    return QColor::fromRgbF(0.19215686274509805f, 0.19215686274509805f, 0.23921568627450981f, 1);
}

void NSVertProgressView::setProgress(float progress)
{
    progress_.store(progress, std::memory_order_relaxed);
    layoutCall_->post();
}

void NSVertProgressView::setTrackColor(const QColor &color)
{
    trackColor_ = color;
    trackView_->update();
}

void NSVertProgressView::layoutTrack()
{
    // Origin (0, 0) at the bottom in the system's y-up terms: the fill rises from the bottom.
    double trackHeight = double(progress()) * height();
    // Bounded only so the conversion stays defined; far beyond any bar.
    trackHeight = std::isfinite(trackHeight) ? std::clamp(trackHeight, -1e6, 1e6) : 0;
    trackHeight = std::round(trackHeight);
    trackView_->setGeometry(0, height() - int(trackHeight), width(), int(trackHeight));
}

void NSVertProgressView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(roundedBar(QRectF(rect()), width()), backgroundColor());
}

void NSVertProgressView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layoutTrack();
}

#include "SKVoiceWaveView.h"

#include "MainThreadCall.h"

#include <QLabel>
#include <QPainter>
#include <QResizeEvent>
#include <QScreen>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <cmath>

namespace {

// The column every point of the width starts with: the level's floor.
constexpr float kFloorColumn = 0.5f;

VoiceStroke makeStroke(float pointY, bool isRecording)
{
    VoiceStroke stroke;
    stroke.blendMode = 0;
    stroke.strokeWidth = 1.0;
    stroke.point_y = pointY;
    stroke.isRecording = isRecording;
    return stroke;
}

// From the system's y-up view coordinates to Qt's, and back (the same mirror).
QTransform flipped(qreal height)
{
    return QTransform(1, 0, 0, -1, 0, height);
}

} // namespace

SKVoiceWaveView::SKVoiceWaveView(const QRect &frame, QWidget *parent) : QWidget(parent)
{
    setGeometry(frame);
    setConfig();
}

SKVoiceWaveView::SKVoiceWaveView(QWidget *parent) : QWidget(parent)
{
    setConfig();
}

SKVoiceWaveView::~SKVoiceWaveView() = default;

void SKVoiceWaveView::setConfig()
{
    frameWidth_ = 0;
    {
        std::lock_guard lock(mutex_);
        width_ = float(geometry().width());
        initialFrame_ = QRectF(geometry());
    }
    initialWidth_ = geometry().width();
    lineWidth_ = 1.0;
    lineDistance_ = 10.0;
    lineColor_ = Qt::white;
    filter_ = SKVoiceFilter();
    // A clear background: only the columns are painted.
    setAttribute(Qt::WA_TranslucentBackground);
    setAutoFillBackground(false);
    setAccessibleName(tr("Sound waveform"));
    if (!updateCall_)
        updateCall_ = new MainThreadCall([this] { updateSampleData(); }, this);
    if (!repaintTimer_) {
        repaintTimer_ = new QTimer(this);
        repaintTimer_->setSingleShot(true);
        connect(repaintTimer_, &QTimer::timeout, this, [this] {
            if (repaintPending_)
                requestRepaint();
        });
    }
}

QRectF SKVoiceWaveView::initialFrame() const
{
    std::lock_guard lock(mutex_);
    return initialFrame_;
}

float SKVoiceWaveView::width() const
{
    std::lock_guard lock(mutex_);
    return width_;
}

void SKVoiceWaveView::makePointArrayLocked()
{
    if (pointArrayMade_)
        return;
    pointArrayMade_ = true;
    for (int i = 0; float(i) <= width_; ++i)
        pointArray_.push_back(makeStroke(kFloorColumn, false));
}

QList<VoiceStroke> SKVoiceWaveView::pointArray()
{
    std::lock_guard lock(mutex_);
    makePointArrayLocked();
    return QList<VoiceStroke>(pointArray_.begin(), pointArray_.end());
}

QList<VoiceStroke> SKVoiceWaveView::tempPointArray() const
{
    std::lock_guard lock(mutex_);
    return QList<VoiceStroke>(tempPointArray_.begin(), tempPointArray_.end());
}

void SKVoiceWaveView::appendWaveformValue(double value, bool isRecording)
{
    VoiceStroke stroke = makeStroke(float(value), isRecording);
    std::lock_guard lock(mutex_);
    makePointArrayLocked();
    if (pointArray_.size() > 1) {
        tempPointArray_.push_back(std::move(pointArray_.front()));
        pointArray_.pop_front();
    }
    // Before the last column, not after it: the last one keeps its place for ever, and new
    // sound enters one point from the right edge.
    const auto at = pointArray_.empty() ? pointArray_.end() : std::prev(pointArray_.end());
    pointArray_.insert(at, std::move(stroke));
    if (tempPointArray_.size() > pointArray_.size() && !tempPointArray_.empty())
        tempPointArray_.pop_front();
}

void SKVoiceWaveView::updateSampleData()
{
    if (QThread::currentThread() != thread()) {
        updateCall_->post();
        return;
    }
    if (lastProgressLayer_ && talking_) {
        lastProgressLayer_->resize(int(std::lround(QWidget::width() - frameStart_)),
                                   lastProgressLayer_->height());
    }
    requestRepaint();
}

// Feeding comes as fast as the sound's buffers; one repaint per frame of the screen is enough.
void SKVoiceWaveView::requestRepaint()
{
    if (repaintTimer_->isActive()) {
        repaintPending_ = true;
        return;
    }
    repaintPending_ = false;
    update();
    const qreal rate = screen() ? screen()->refreshRate() : 60.0;
    repaintTimer_->start(int(std::ceil(1000.0 / std::max<qreal>(rate, 1.0))));
}

void SKVoiceWaveView::paintEvent(QPaintEvent *)
{
    islock_.store(true, std::memory_order_release);
    {
        QPainter painter(this);
        painter.setTransform(flipped(QWidget::height()));
        drawRect(painter, QRectF(rect()));
    }
    islock_.store(false, std::memory_order_release);
}

void SKVoiceWaveView::drawRect(QPainter &painter, const QRectF &rect)
{
    // Copy the columns, so the feeding thread waits only for that copy.
    {
        std::lock_guard lock(mutex_);
        makePointArrayLocked();
        paintColumns_.clear();
        for (const VoiceStroke &stroke : pointArray_)
            paintColumns_.push_back({stroke.point_y, stroke.isRecording});
    }

    // The band's upper outline through every column's top, closed back on the centre; with its
    // mirror below, it masks the view: only what lies inside the band shows.
    const qreal centreY = rect.center().y();
    QPainterPath outline(QPointF(0, centreY));
    for (size_t i = 0; i < paintColumns_.size(); ++i)
        outline.lineTo(QPointF(qreal(i), kCentreLine + paintColumns_[i].point_y));
    outline.lineTo(QPointF(QWidget::width(), centreY));
    QPainterPath band = outline;
    band.addPath(QTransform(1, 0, 0, -1, 0, rect.height()).map(outline));
    band.setFillRule(Qt::WindingFill);
    shapeLayer_ = flipped(QWidget::height()).map(band);
    painter.setClipPath(band);

    // One point wide columns from 34 - p to 34 + p.
    for (size_t i = 0; i < paintColumns_.size(); ++i) {
        const Column &column = paintColumns_[i];
        const QColor color = column.isRecording ? recordingColor() : idleColor();
        painter.fillRect(QRectF(qreal(i), kCentreLine - column.point_y, 1.0, 2.0 * column.point_y),
                         color);
    }
}

void SKVoiceWaveView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (parentWidget()) {
        std::lock_guard lock(mutex_);
        width_ = float(event->size().width());
    }
}

QLabel *SKVoiceWaveView::recordCurrentTimelabel()
{
    if (recordCurrentTimelabel_)
        return recordCurrentTimelabel_;
    auto *label = new QLabel(QStringLiteral("00:00:00"), this);
    // 100 by 25 at x = width - 100, y = 43 from the bottom.
    const int labelHeight = 25;
    label->setGeometry(QWidget::width() - 100, QWidget::height() - 43 - labelHeight, 100,
                       labelHeight);
    label->setAlignment(Qt::AlignCenter);
    QFont font = label->font();
    // One of the system's points is one pixel at scale 1.
    font.setPixelSize(14);
    label->setFont(font);
    label->setStyleSheet(QStringLiteral("color: white; background: transparent;"));
    label->setTextInteractionFlags(Qt::NoTextInteraction);
    label->setAccessibleName(tr("Recorded time"));
    label->show();
    recordCurrentTimelabel_ = label;
    return label;
}

#include "CircleCounterView.h"

#include "Images.h"

#include <QPainter>
#include <QPointer>
#include <cmath>

namespace {

// Closer to zero than this counts as zero: the intervals are sums of floats.
constexpr float kZero = 0.0001f;
constexpr int kFinishedSegs = 29;
constexpr int kTurnMs = 1000;

// The names carry ".png"; the images are compiled-in SVGs named without it.
QString imageName(const char *format, float seconds)
{
    QString name = QString::asprintf(format, double(seconds));
    name.chop(4);
    return name;
}

} // namespace

CircleCounterView::CircleCounterView(const QRect &frame, QWidget *parent) : QWidget(parent)
{
    setGeometry(frame);
    // The background is a fully transparent rounded rectangle: nothing to fill. Clicks go to
    // the view below, as they would through a view that doesn't handle them.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    tick_.setSingleShot(true);
    tick_.setTimerType(Qt::PreciseTimer);
    connect(&tick_, &QTimer::timeout, this, &CircleCounterView::updateTime);
    rotateAnimation_.setDuration(kTurnMs);
    rotateAnimation_.setLoopCount(1);
    connect(&rotateAnimation_, &QVariantAnimation::valueChanged, this, [this](const QVariant &v) {
        rotationAngle_ = v.toDouble();
        update();
    });
}

QFont CircleCounterView::courierBold(int size)
{
    QFont font(QStringLiteral("Courier"));
    font.setBold(true);
    font.setPointSize(size);
    return font;
}

void CircleCounterView::startWithSeconds(float seconds)
{
    if (!(seconds > 0) || mIsRunning)
        return;
    mTimeInSeconds = seconds + 2;
    mIsRunning = true;
    mCircleSegs = 0;
    isStarting = false;
    updateTime();
}

void CircleCounterView::startWithSeconds(float seconds, float interval)
{
    startWithSeconds(seconds, interval, mTimeFormatString);
}

void CircleCounterView::startWithSeconds(float seconds, float interval, const QString &format)
{
    if (!(seconds > 0) || mIsRunning)
        return;
    // An interval of zero or less would never reach zero; it is treated like one too long.
    mTimeInterval = interval > seconds || !(interval > 0) ? seconds / 10 : interval;
    mTimeFormatString = format;
    startWithSeconds(seconds);
}

void CircleCounterView::stop()
{
    mIsRunning = false;
    tick_.stop();
    stopAnimation();
}

void CircleCounterView::updateTime()
{
    if (!mIsRunning)
        return;
    mTimeInSeconds -= mTimeInterval;
    if (std::fabs(mTimeInSeconds) < kZero) {
        // The chain ends here, even when this tick came from outside it.
        tick_.stop();
        mCircleSegs = kFinishedSegs;
        mTimeInSeconds = 0;
        update();
        if (parentWidget() && !isStarting && delegate_) {
            QPointer<CircleCounterView> alive(this);
            delegate_->counterDownFinished(this);
            if (!alive)
                return;
        }
        isStarting = true;
        stopAnimation();
        return;
    }
    tick_.start(qRound(mTimeInterval * 1000));
    if (mTimeInSeconds < recordTimeDuration_ + 1) {
        stopAnimation();
        setImages(imageName(mTimeInSeconds > 9 ? "0%.f.png" : "00%.f.png", mTimeInSeconds),
                  imageName("%.f.png", mTimeInSeconds));
        startAnimtion(false);
    }
}

void CircleCounterView::startAnimtion(bool reverse)
{
    rotateAnimation_.stop();
    rotateAnimation_.setStartValue(reverse ? 360.0 : 0.0);
    rotateAnimation_.setEndValue(reverse ? 0.0 : 360.0);
    rotateAnimation_.start();
}

void CircleCounterView::stopAnimation()
{
    rotateAnimation_.stop();
    rotationAngle_ = 0;
    update();
}

void CircleCounterView::setImages(const QString &ringName, const QString &digitName)
{
    imageBgView.name = ringName;
    imageView.name = digitName;
    drawImages();
    update();
}

void CircleCounterView::drawImages()
{
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    for (ImageView *image : {&imageBgView, &imageView}) {
        image->pixmap = image->name.isEmpty() ? QPixmap() : pixmapNamed(image->name, pixels);
        image->pixmap.setDevicePixelRatio(ratio);
    }
}

void CircleCounterView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    drawImages();
}

void CircleCounterView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QPointF centre = QRectF(rect()).center();
    auto place = [&](const QPixmap &pixmap) {
        QRectF target(QPointF(), pixmap.deviceIndependentSize());
        target.moveCenter(centre);
        return target;
    };
    if (!imageBgView.pixmap.isNull()) {
        painter.save();
        painter.translate(centre);
        // The ring turns counter-clockwise, as a positive angle does with y up; Qt's y is down.
        painter.rotate(-rotationAngle_);
        painter.translate(-centre);
        painter.drawPixmap(place(imageBgView.pixmap), imageBgView.pixmap,
                           QRectF(imageBgView.pixmap.rect()));
        painter.restore();
    }
    if (!imageView.pixmap.isNull())
        painter.drawPixmap(place(imageView.pixmap), imageView.pixmap,
                           QRectF(imageView.pixmap.rect()));
}

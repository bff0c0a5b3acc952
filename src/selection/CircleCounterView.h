#pragma once
// The countdown before a recording: a ring that turns once a second under the digit of the
// seconds left. Both are images by name; the colours and fonts are kept for callers that set
// them but are not drawn. Main thread only; the view owns its tick timer and its animation.
#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QString>
#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

class CircleCounterView;

// Told once when a counter that sits in a parent reaches zero. The counter keeps a plain
// pointer: the delegate must outlive it or be cleared first. The delegate may delete the view.
class CircleCounterViewDelegate {
public:
    virtual ~CircleCounterViewDelegate() = default;
    virtual void counterDownFinished(CircleCounterView *view) = 0;
};

class CircleCounterView : public QWidget {
    Q_OBJECT
public:
    // What one of the two stacked pictures shows: the image's name and its drawing at the
    // view's size (null when no image of that name exists).
    struct ImageView {
        QString name;
        QPixmap pixmap;
    };

    explicit CircleCounterView(const QRect &frame, QWidget *parent = nullptr);

    // Counting starts at seconds + 2 and the first tick comes at once. Ignored while running
    // and for seconds not above 0. An interval over the seconds becomes a tenth of them.
    void startWithSeconds(float seconds);
    void startWithSeconds(float seconds, float interval);
    void startWithSeconds(float seconds, float interval, const QString &format);
    void stop();
    // One tick: the chain of one-shot timers calls it every interval.
    void updateTime();
    // One turn of the ring in 1 s (backwards if reverse); stopAnimation puts it back upright.
    void startAnimtion(bool reverse);
    void stopAnimation();

    // The stored countdown length ("RECORDTIME_DURATION" as an integer, 0 when absent):
    // images show only once fewer seconds than this plus one are left.
    void setRecordTimeDuration(int seconds) { recordTimeDuration_ = seconds; }
    int recordTimeDuration() const { return recordTimeDuration_; }

    void setDelegate(CircleCounterViewDelegate *delegate) { delegate_ = delegate; }
    CircleCounterViewDelegate *delegate() const { return delegate_; }

    QColor numberColor() const { return mNumberColor; }
    void setNumberColor(const QColor &color) { mNumberColor = color; }
    QFont numberFont() const { return mNumberFont; }
    void setNumberFont(const QFont &font) { mNumberFont = font; }
    QColor circleColor() const { return mCircleColor; }
    void setCircleColor(const QColor &color) { mCircleColor = color; }
    double circleBorderWidth() const { return mCircleBorderWidth; }
    void setCircleBorderWidth(double width) { mCircleBorderWidth = width; }
    bool circleIncre() const { return mCircleIncre; }
    void setCircleIncre(bool incre) { mCircleIncre = incre; }
    float circleTimeInterval() const { return mCircleTimeInterval; }

    float timeInSeconds() const { return mTimeInSeconds; }
    float timeInterval() const { return mTimeInterval; }
    QString timeFormatString() const { return mTimeFormatString; }
    bool isRunning() const { return mIsRunning; }
    int circleSegs() const { return mCircleSegs; }
    // True once the count reached zero (the delegate has then been told, if it was to be).
    bool starting() const { return isStarting; }
    bool hasPendingTick() const { return tick_.isActive(); }

    // The ring (below) and the digit (above).
    const ImageView &ringImage() const { return imageBgView; }
    const ImageView &digitImage() const { return imageView; }
    const QVariantAnimation &rotateAnimation() const { return rotateAnimation_; }
    QVariantAnimation &rotateAnimation() { return rotateAnimation_; }
    // The ring's turn in degrees, counter-clockwise on the screen.
    double rotationAngle() const { return rotationAngle_; }

    // The font the counters name "Courier-Bold".
    static QFont courierBold(int size);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setImages(const QString &ringName, const QString &digitName);
    void drawImages();

    float mCircleTimeInterval = 1.0f;
    QColor mNumberColor = Qt::black;
    QFont mNumberFont = courierBold(20);
    QColor mCircleColor = Qt::black;
    double mCircleBorderWidth = 6;
    float mTimeInSeconds = 20;
    float mTimeInterval = 1.0f;
    QString mTimeFormatString = QStringLiteral("%.0f");
    bool mIsRunning = false;
    qint32 mCircleSegs = 0;
    bool mCircleIncre = false;
    bool isStarting = false;
    CircleCounterViewDelegate *delegate_ = nullptr;
    ImageView imageBgView;
    ImageView imageView;

    int recordTimeDuration_ = 0;
    QTimer tick_;
    QVariantAnimation rotateAnimation_;
    double rotationAngle_ = 0;
};

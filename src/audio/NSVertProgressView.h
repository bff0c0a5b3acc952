#pragma once
// The vertical level bar: a dark rounded track whose fill (trackView) rises from the bottom
// by progress × the bar's height.
//
// Threads: setProgress may be called from any thread (the audio thread does); the value is
// stored at once and the fill's geometry follows on the GUI thread (one change for the values
// that arrive while one is pending). The bar
// must outlive those callers. All other operations belong to the GUI thread.
#include <QColor>
#include <QWidget>
#include <atomic>

class MainThreadCall;

class NSVertProgressView : public QWidget {
    Q_OBJECT
public:
    // The frame in the parent's coordinates (initWithFrame); the fill starts empty.
    explicit NSVertProgressView(const QRect &frame, QWidget *parent = nullptr);

    float progress() const { return progress_.load(std::memory_order_relaxed); }
    // No clamp: a value above 1 overflows the bar and is cut at its edge.
    void setProgress(float progress);

    QColor trackColor() const { return trackColor_; }
    // Also the fill's background.
    void setTrackColor(const QColor &color);

    QWidget *trackView() const { return trackView_; }

    // The bar's own background, red 49, green 49, blue 61 of 255.
    static QColor backgroundColor();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layoutTrack();

    std::atomic<float> progress_{0.0f};
    QColor trackColor_;
    QWidget *trackView_;
    MainThreadCall *layoutCall_;
};

#pragma once
// The scrolling waveform of audio-only mode: one column per point of the width, each the peak
// of one sound buffer, drawn as a band around the centre line, white while idle and green for
// columns fed during a recording. The newest column enters one point from the right edge.
//
// Threads: appendWaveformValue, islock, initialFrame, pointArray and tempPointArray may be
// used from any thread (the audio thread feeds the columns); the columns sit behind a small
// mutex that the painter holds only to copy them. updateSampleData may be called from any
// thread and repaints on the GUI thread, at most once per frame of the screen. The view must
// outlive its feeders. Everything else belongs to the GUI thread.
#include "SKVoiceFilter.h"
#include "VoiceStroke.h"

#include <QColor>
#include <QList>
#include <QPainterPath>
#include <QPointer>
#include <QWidget>
#include <atomic>
#include <deque>
#include <mutex>
#include <vector>

class MainThreadCall;
class QLabel;
class QTimer;

class SKVoiceWaveView : public QWidget {
    Q_OBJECT
public:
    // Made in code with a frame in the parent's coordinates (initWithFrame).
    explicit SKVoiceWaveView(const QRect &frame, QWidget *parent = nullptr);
    // Made by a form: the frame is whatever geometry the widget has now (initWithCoder).
    explicit SKVoiceWaveView(QWidget *parent = nullptr);
    ~SKVoiceWaveView() override;

    // The defaults; both constructors run it.
    void setConfig();

    // One buffer's peak p (at least 0.5) as a new column, recording or not. The first column
    // scrolls out into tempPointArray unless it is the only one.
    void appendWaveformValue(double value, bool isRecording);
    // Asks for a redraw (and moves lastProgressLayer while talking).
    void updateSampleData();
    void addTrack() {}

    // True while the view paints: the meter drops its buffers meanwhile.
    bool islock() const { return islock_.load(std::memory_order_acquire); }
    // The frame at creation; its height scales the levels.
    QRectF initialFrame() const;
    // Copies of the columns on screen (made on first use: one per point of the width, plus
    // one, at the floor 0.5) and of those scrolled out.
    QList<VoiceStroke> pointArray();
    QList<VoiceStroke> tempPointArray() const;
    // "00:00:00" in the upper right corner, made on first use.
    QLabel *recordCurrentTimelabel();

    bool talking() const { return talking_; }
    void setTalking(bool talking) { talking_ = talking; }
    // The kept width (hides QWidget::width): follows the frame only while the view has a
    // parent, when the resize reaches it (at once if shown, else when it is shown).
    float width() const;
    double initialWidth() const { return initialWidth_; }
    double frameWidth() const { return frameWidth_; }
    void setFrameWidth(double frameWidth) { frameWidth_ = frameWidth; }
    double frameStart() const { return frameStart_; }
    void setFrameStart(double frameStart) { frameStart_ = frameStart; }
    double lineWidth() const { return lineWidth_; }
    void setLineWidth(double lineWidth) { lineWidth_ = lineWidth; }
    QColor lineColor() const { return lineColor_; }
    void setLineColor(const QColor &lineColor) { lineColor_ = lineColor; }
    double lineDistance() const { return lineDistance_; }
    void setLineDistance(double lineDistance) { lineDistance_ = lineDistance; }
    QList<QObject *> &trackLayers() { return trackLayers_; }
    // The band's outline of the last paint, in widget coordinates: what the view shows.
    QPainterPath shapeLayer() const { return shapeLayer_; }
    const SKVoiceFilter &filter() const { return filter_; }
    QWidget *lastProgressLayer() const { return lastProgressLayer_; }
    void setLastProgressLayer(QWidget *layer) { lastProgressLayer_ = layer; }

    // The fixed centre line: the view is meant to be 68 points high.
    static constexpr double kCentreLine = 34.0;
    static QColor recordingColor() { return QColor(0, 255, 0); }
    static QColor idleColor() { return QColor(255, 255, 255); }

protected:
    // Draws in the system's y-up coordinates (the painter is flipped); islock holds meanwhile.
    virtual void drawRect(QPainter &painter, const QRectF &rect);
    void paintEvent(QPaintEvent *event) override;
    // setFrame: the kept width follows the frame while the view has a parent.
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Column {
        float point_y;
        bool isRecording;
    };
    void makePointArrayLocked();
    void requestRepaint();

    std::atomic<bool> islock_{false};
    mutable std::mutex mutex_;
    // Guarded by mutex_.
    std::deque<VoiceStroke> pointArray_;
    bool pointArrayMade_ = false;
    std::deque<VoiceStroke> tempPointArray_;
    float width_ = 0;
    QRectF initialFrame_;

    // GUI thread only.
    std::vector<Column> paintColumns_;
    bool talking_ = false;
    double initialWidth_ = 0;
    double frameWidth_ = 0;
    double frameStart_ = 0;
    double lineWidth_ = 1.0;
    QColor lineColor_;
    double lineDistance_ = 10.0;
    QLabel *recordCurrentTimelabel_ = nullptr;
    QList<QObject *> trackLayers_;
    QPainterPath shapeLayer_;
    SKVoiceFilter filter_;
    QPointer<QWidget> lastProgressLayer_;
    QTimer *repaintTimer_ = nullptr;
    MainThreadCall *updateCall_ = nullptr;
    bool repaintPending_ = false;
};

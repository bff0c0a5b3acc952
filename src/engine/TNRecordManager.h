#pragma once
// The recording engine's one stateful object: the session state, the capture inputs,
// the chosen audio devices, the capture rectangle and the encoder facade.
//
// Threads: the session operations run on the main thread (the thread that owns this
// object). Frames arrive on the capture queues and read status, startDate, fileTimes,
// captureRect and the window lists; those are atomics or behind small locks.
#include "CaptureInputs.h"
#include "EZAudioDevice.h"
#include "EncodeManager.h"
#include "PixelBuffer.h"
#include "PixelBufferPool.h"
#include "Platform.h"
#include "RecordSessionHost.h"
#include "RecordTypes.h"
#include "ScreenCatalog.h"
#include "WindowServer.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QRectF>
#include <QVariantList>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

class QPainter;
class QTimer;

// A new buffer holding the picture flipped left to right; null when memory runs out.
PixelBufferRef mirrorPixelBuffer(const PixelBufferRef &source);
// The video bit rate, kbit/s, of a quality choice (0 original, 1 HD, any other SD).
qint64 videoBitrateForFramItemIndex(qint64 framItemIndex);

class TNRecordManager : public QObject {
    Q_OBJECT
public:
    TNRecordManager(const Platform &platform, RecordSessionHost &host);
    ~TNRecordManager() override;

    // Made on first use; each recording gets a library handle from startRecording.
    EncodeManager &encodeManager();

    void startRecording();
    void pauseRecording();
    void resumeRecording();
    void stopRecording();
    void stopCapture();
    void timerDurationTimeOut();

    // The screen road (TNRecordManager_overlays.cpp): permission, then one overlay per screen.
    void startRecordScreen();
    void readyToRecordScreen();
    // The on-screen windows as the arming found them, front first.
    const QVariantList &arrayRect() const { return arrayRect_; }
    // Overlays ask for these: the keyboard to a screen's overlay; a region stands on one
    // screen (the others' windows go); the keys end; the selection was cancelled.
    void changeKeyWindowWithScreen(const ScreenInfo &screen);
    void recordScreenWindowControllerDidSelectRegion(RecordScreenWindowController *controller);
    void recordScreenWindowControllerRemoveEventMonitor();
    void recordScreenWindowControllerDidCancel();
    void clearRecordWindowControllerArray();
    // Drops the overlay of the given screen (the first found): its window goes.
    void removeRecordWindowController(const ScreenInfo &screen);
    // A region stands on one screen: the first overlay of another screen goes.
    void removeFirstOtherScreenController(const ScreenInfo &screen);
    const std::vector<std::unique_ptr<RecordScreenWindowController>> &
    recordWindowControllerArray() const
    {
        return recordWindowControllerArray_;
    }

    void captrueScreenInputEnable(bool enable);
    void captrueVideoInputEnable(bool enable);
    // The sound session (main thread); see TNRecordManager_audio.cpp.
    void captrueAudioInputEnable(bool enable);
    void captrueAudioInputEnable();
    void startCapture();
    void setupAudioSettings();
    // The level of a buffer, shown on the bars (and the waveform in audio-only mode); on
    // the audio thread.
    void audioVolum(const AudioSampleBuffer &sampleBuffer);
    // A second level computation, on 16-bit samples; no flow uses it.
    bool isQuite(const QByteArray &data);

    // The receiver of all capture outputs: a picture of the screen or the camera on its
    // queue, or a buffer of sound on the audio queue.
    enum class CaptureOutput { Screen, Video };
    void captureOutput(CaptureOutput output, const PixelBufferRef &frame);
    void captureOutput(const AudioSampleBuffer &sampleBuffer);

    // The compositor: the frame at captureRect's size with highlight, click ring, cursor
    // and watermark burnt in. Null for a null source.
    QImage appendMouseCursor(const QImage &source);
    // The followed window's picture, composed.
    QImage getCapturedImage();
    // A picture over the buffer's pixels; it keeps the buffer alive.
    static QImage imageFromPixelBuffer(const PixelBufferRef &buffer);
    // A BGRA buffer of size (truncated) with the image drawn at its own size, from the
    // lower left.
    static PixelBufferRef pixelBufferFromCGImage(const QImage &image, const QSizeF &size);

    // Watermark helpers.
    QSizeF getTextWidth(const QString &text) const;
    QImage getTarnelLogoImageForRecording() const;
    QImage getWaterMarkerImageRef() const;

    // Audio routing (main thread): finds the physical devices and builds the aggregates
    // around the loopback device; codes 0, 80, 81, 82, 90, 91 as logged.
    void prepareDevice();
    int prepareDevice(const QString &inputName, const QString &outputName);
    int loadEZAudioInputDevice(const QString &inputName);
    void loadMRInputDevice();
    int loadEZAudioOutputDevice(const QString &outputName);
    void loadMROutPutDevice();
    int32_t switchRecordType(quint64 type);
    OSStatus setSystemDefaultOutPut(const EZAudioDevice &device);
    OSStatus setSystemDefaultInput(const EZAudioDevice &device);
    OSStatus createAggregateDevice(const QString &name, const QString &firstUID,
                                   const QString &secondUID, bool isOut);
    OSStatus destroyAggregateDevice(AudioDeviceID deviceID);
    bool hasInstallSoundFlower() const;
    QList<EZAudioDevice> inputDevices() const;
    QList<EZAudioDevice> outputDevices() const;
    // The quit's clean-up: both aggregates, by their exact names.
    void destroyAggregatesAtQuit();
    // One round of the device watch (every half second while sound is captured): a changed
    // number of inputs rebuilds the routing and the sound session.
    void checkAudioDevices();

    const std::optional<EZAudioDevice> &builtInputDevice() const { return builtInputDevice_; }
    const std::optional<EZAudioDevice> &builtOutputDevice() const { return builtOutputDevice_; }
    const std::optional<EZAudioDevice> &soundflowerInputDevcie() const
    {
        return soundflowerInputDevcie_;
    }
    const std::optional<EZAudioDevice> &aggregateInputDevcie() const
    {
        return aggregateInputDevcie_;
    }
    const std::optional<EZAudioDevice> &aggregateOutputDevice() const
    {
        return aggregateOutputDevice_;
    }
    const std::optional<EZAudioDevice> &selectInputDevice() const { return selectInputDevice_; }
    const std::optional<EZAudioDevice> &selectOutputDevice() const { return selectOutputDevice_; }

    // The selected window's current bounds, rounded down to even numbers, replace
    // captureRect; the frame path runs this for every window frame.
    void followSelectedWindow();

    QRectF captureRect() const;
    void setCaptureRect(const QRectF &rect);
    const std::optional<ScreenInfo> &screen() const { return screen_; }
    void setScreen(const std::optional<ScreenInfo> &screen);
    qint64 screenNumber() const { return screenNumber_; }
    void setScreenNumber(qint64 number);

    quint64 status() const { return status_.load(); }
    quint64 recordVideoType() const { return recordVideoType_.load(); }
    void setRecordVideoType(quint64 type) { recordVideoType_ = type; }
    quint64 recordAudioType() const { return recordAudioType_.load(); }
    void setRecordAudioType(quint64 type) { recordAudioType_ = type; }
    bool isWorking() const { return isWorking_.load(); }
    double startDate() const { return startDate_.load(); }
    QList<double> fileTimes() const;
    QList<CGWindowID> desktopElements() const;
    QList<CGWindowID> onScreenWindows() const;
    QList<CGWindowID> exceptWinodwArray() const;
    void setExceptWinodwArray(const QList<CGWindowID> &windows);
    bool isCursorClick() const { return isCursorClick_.load(); }
    void setIsCursorClick(bool click) { isCursorClick_ = click; }
    float cursorEffectWidth() const { return cursorEffectWidth_.load(); }
    void setCursorEffectWidth(float width) { cursorEffectWidth_ = width; }
    bool isDisableChangeScreen() const { return isDisableChangeScreen_.load(); }
    void setIsDisableChangeScreen(bool disable) { isDisableChangeScreen_ = disable; }
    float volum() const { return volum_.load(); }
    void setVolum(float volum) { volum_ = volum; }

    const std::optional<EZAudioDevice> &inputDevice() const { return inputDevice_; }
    const std::optional<EZAudioDevice> &outputDevice() const { return outputDevice_; }

    TNRecordAudioManagerDelegate *delegate() const { return delegate_.load(); }
    void setDelegate(TNRecordAudioManagerDelegate *delegate) { delegate_ = delegate; }
    QPointF cursorCenter() const;
    // The camera by name; empty picks the first the input offers.
    QString selectedVideoDevice() const;
    void setSelectedVideoDevice(const QString &name);

private:
    struct WindowMatch {
        bool matched = false;
        QVariantMap description;
    };
    // Describes the window and, when it is the selected one, moves captureRect onto
    // its bounds.
    WindowMatch matchSelectedWindow(CGWindowID number);
    void walkWindowsAtStart();
    void retire(std::vector<std::unique_ptr<RecordScreenWindowController>>::iterator controller);

    // A frame or sound buffer let through the gate, until it has been pushed. The stop
    // waits until none is left, so nothing let through for one recording reaches the
    // encoder of the next. Empty when the gate is shut.
    class LivePass {
    public:
        LivePass() = default;
        LivePass(TNRecordManager *manager, double seconds) : manager_(manager), seconds_(seconds) {}
        LivePass(LivePass &&other) noexcept
            : manager_(std::exchange(other.manager_, nullptr)), seconds_(other.seconds_)
        {}
        LivePass &operator=(LivePass &&) = delete;
        ~LivePass();
        explicit operator bool() const { return manager_ != nullptr; }
        // Seconds of picture at the gate (see frameTimestamp).
        double seconds() const { return seconds_; }

    private:
        TNRecordManager *manager_ = nullptr;
        double seconds_ = 0;
    };
    // The gate: live means recording or resumed with the encoder working. stamp gives the
    // pass a picture time, read under the same lock as the status.
    LivePass passLive(bool stamp);
    OSStatus setDefaultDevice(AudioObjectPropertySelector selector, AudioDeviceID deviceID);
    // Session events of the three inputs come to the main thread; an error with a changed
    // number of output devices runs the device recovery.
    void postSessionEvent(CaptureSessionEvent event, const QString &error);
    void captureSessionEvent(CaptureSessionEvent event, const QString &error);
    void recoverAudioDevices(const QList<EZAudioDevice> &inputs);
    void showLevel(float level, double waveformValue);
    // Seconds of picture at this moment: wall clock since the stretch began, plus the
    // closed stretches. The first live frame starts the clock. Under stretchMutex_.
    double frameTimestamp();
    // On the capture thread that made it: the buffer goes to the encoder at seconds. Each
    // capture thread is serial, so a source's frames reach the encoder in time order.
    void pushFrame(const PixelBufferRef &buffer, double seconds);
    void reportDuration();
    void screenRule(const PixelBufferRef &frame, double seconds);
    void cameraRule(const PixelBufferRef &frame);
    void drawClickRing(QPainter &painter, int canvasHeight, float px, float py, float cw, float ch);
    void drawWatermark(QImage &canvas, const FrameDecorations &decorations);

    Platform platform_;
    RecordSessionHost &host_;
    std::once_flag encodeManagerOnce_;
    std::unique_ptr<EncodeManager> encodeManager_;

    std::atomic<bool> isWorking_{false};
    std::atomic<bool> isCursorClick_{false};
    std::atomic<bool> isDisableChangeScreen_{false};
    std::atomic<float> volum_{0};
    std::atomic<float> cursorEffectWidth_{0};
    std::optional<EZAudioDevice> inputDevice_;
    std::optional<EZAudioDevice> outputDevice_;
    // Routing references; main thread only.
    std::optional<EZAudioDevice> builtInputDevice_;
    std::optional<EZAudioDevice> builtOutputDevice_;
    std::optional<EZAudioDevice> soundflowerInputDevcie_;
    std::optional<EZAudioDevice> aggregateInputDevcie_;
    std::optional<EZAudioDevice> aggregateOutputDevice_;
    std::optional<EZAudioDevice> selectInputDevice_;
    std::optional<EZAudioDevice> selectOutputDevice_;
    bool audioDeviceInput_ = false;
    QList<QTimer *> checkAudioDeviceTimers_;
    std::atomic<quint64> recordAudioType_{AudioTypeSystem};
    std::atomic<quint64> recordVideoType_{VideoTypeFullScreen};
    std::atomic<double> startDate_{0};
    // Guards fileTimes_ and every change of status_ and startDate_ that a frame's time
    // depends on (start, pause, resume, stop).
    mutable std::mutex stretchMutex_;
    QList<double> fileTimes_;
    int livePasses_ = 0; // behind stretchMutex_
    std::condition_variable livePassesDone_;
    std::atomic<TNRecordAudioManagerDelegate *> delegate_{nullptr};
    // Guards the three window lists: a window frame in flight may walk them during a stop.
    mutable std::mutex windowsMutex_;
    QList<CGWindowID> desktopElements_;
    QList<CGWindowID> exceptWinodwArray_;
    QList<CGWindowID> onScreenWindows_;
    std::atomic<quint64> status_{RecordStatusIdle};
    std::vector<std::unique_ptr<RecordScreenWindowController>> recordWindowControllerArray_;
    QVariantList arrayRect_;
    std::vector<std::unique_ptr<RecordScreenWindowController>> retiredControllers_;
    std::optional<ScreenInfo> screen_;
    qint64 screenNumber_ = 0;
    mutable std::mutex captureRectMutex_;
    QRectF captureRect_;
    QString selectedVideoDevice_; // also behind captureRectMutex_
    // Written by the compositor, read by tests.
    mutable std::mutex cursorCenterMutex_;
    PixelBufferPool canvasPool_; // the compositor's frames, reused
    QPointF cursorCenter_;
};

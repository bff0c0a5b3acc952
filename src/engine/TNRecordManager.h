#pragma once
// The recording engine's one stateful object: the session state, the capture inputs,
// the chosen audio devices, the capture rectangle and the encoder facade.
//
// Threads: the session operations run on the main thread (the thread that owns this
// object). Frames arrive on the capture queues and read status, startDate, fileTimes,
// captureRect and the window lists; those are atomics or behind small locks.
#include "EZAudioDevice.h"
#include "EncodeManager.h"
#include "Platform.h"
#include "RecordSessionHost.h"
#include "RecordTypes.h"
#include "ScreenCatalog.h"
#include "WindowServer.h"

#include <QList>
#include <QObject>
#include <QRectF>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

class TNRecordManager : public QObject {
    Q_OBJECT
public:
    TNRecordManager(const Platform &platform, RecordSessionHost &host);
    ~TNRecordManager() override;

    // Made on first use; each session gets a new library handle from startRecording.
    EncodeManager &encodeManager();

    void startRecording();
    void pauseRecording();
    void resumeRecording();
    void stopRecording();
    void stopCapture();
    void timerDurationTimeOut();

    void captrueScreenInputEnable(bool enable);
    void captrueVideoInputEnable(bool enable);

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
    QList<CGWindowID> exceptWinodwArray() const { return exceptWinodwArray_; }
    void setExceptWinodwArray(const QList<CGWindowID> &windows) { exceptWinodwArray_ = windows; }
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

    TNRecordAudioManagerDelegate *delegate() const { return delegate_; }
    void setDelegate(TNRecordAudioManagerDelegate *delegate) { delegate_ = delegate; }

private:
    struct WindowMatch {
        bool matched = false;
        QVariantMap description;
    };
    // Describes the window and, when it is the selected one, moves captureRect onto
    // its bounds.
    WindowMatch matchSelectedWindow(CGWindowID number);
    void walkWindowsAtStart();

    Platform platform_;
    RecordSessionHost &host_;
    std::unique_ptr<EncodeManager> encodeManager_;

    std::atomic<bool> isWorking_{false};
    std::atomic<bool> isCursorClick_{false};
    std::atomic<bool> isDisableChangeScreen_{false};
    std::atomic<float> volum_{0};
    std::atomic<float> cursorEffectWidth_{0};
    std::optional<EZAudioDevice> inputDevice_;
    std::optional<EZAudioDevice> outputDevice_;
    std::atomic<quint64> recordAudioType_{AudioTypeSystem};
    std::atomic<quint64> recordVideoType_{VideoTypeFullScreen};
    std::atomic<double> startDate_{0};
    mutable std::mutex fileTimesMutex_;
    QList<double> fileTimes_;
    TNRecordAudioManagerDelegate *delegate_ = nullptr;
    QList<CGWindowID> exceptWinodwArray_;
    // Guards the two window lists: a window frame in flight may walk them during a stop.
    mutable std::mutex windowsMutex_;
    QList<CGWindowID> desktopElements_;
    QList<CGWindowID> onScreenWindows_;
    std::atomic<quint64> status_{RecordStatusIdle};
    std::optional<ScreenInfo> screen_;
    qint64 screenNumber_ = 0;
    mutable std::mutex captureRectMutex_;
    QRectF captureRect_;
};

#pragma once
// One screen's overlay of a screen recording: it points out the screen and region,
// hands them to the session and starts it. The whole-screen road needs no user step.
#include "RecordScreenHost.h"
#include "RecordSessionHost.h"
#include "ScreenCatalog.h"

#include <QRectF>

class TNRecordManager;
struct Platform;

enum OverlayStatus : quint64 {
    OverlayStatusIdle = 0,
    OverlayStatusRecording = 1,
    OverlayStatusPaused = 2,
    OverlayStatusResumed = 3,
};

// The region handed to the encoder: even sides, 2 below the frame, origin rounded up
// to even.
QRectF selectedRegionForFrame(const QRectF &contentFrame);
// A screen's starting region: both sides held to multiples of 4.
QRectF startingRegionForScreen(const QRectF &screenFrame);

class TNRecordScreenWindowController : public RecordScreenWindowController {
public:
    TNRecordScreenWindowController(TNRecordManager &delegate, RecordScreenHost &host,
                                   const Platform &platform, const ScreenInfo &screen);

    const ScreenInfo &screen() const override { return screen_; }
    void startRecorderScreen() override;
    void cleanup() override;
    void removeRecordScreenView() override {}
    void orderOut() override {}

    void clipViewMouseMoved();
    void startNoteButtonClick();
    void recordStartNote();
    void showCircleDownCounter();
    void startRecording();

    quint64 status() const { return status_; }
    QRectF lastWindowRect() const { return lastWindowRect_; }
    QRectF selectedRegion() const { return selectedRegion_; }

private:
    bool isFullScreenOnSeveral() const;
    // The screen the recording is for: the pop-up's choice for a whole screen among
    // several, else the one under the pointer.
    std::optional<ScreenInfo> targetScreen() const;
    // The overlay that acts: that of the pop-up's screen for a whole screen among several.
    TNRecordScreenWindowController *actingController();

    TNRecordManager *delegate_;
    RecordScreenHost &host_;
    const Platform &platform_;
    ScreenInfo screen_;
    quint64 status_ = OverlayStatusIdle;
    std::optional<ScreenInfo> selectedScreen_;
    QRectF lastWindowRect_;
    QRectF selectedRegion_;
};

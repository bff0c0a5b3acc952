#pragma once
// One screen's overlay of a screen recording: it points out the screen and region,
// hands them to the session and starts it. The whole-screen road needs no user step.
#include "CircleCounterView.h"
#include "RecordScreenHost.h"
#include "RecordSessionHost.h"
#include "ScreenCatalog.h"
#include "TNClipView.h"

#include <QObject>
#include <QRectF>
#include <QRegion>
#include <QVariantList>
#include <memory>

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

class TNRecordScreenWindowController : public RecordScreenWindowController,
                                       public TNClipViewDelegate,
                                       public CircleCounterViewDelegate {
public:
    TNRecordScreenWindowController(TNRecordManager &delegate, RecordScreenHost &host,
                                   const Platform &platform, const ScreenInfo &screen);
    ~TNRecordScreenWindowController() override;

    const ScreenInfo &screen() const override { return screen_; }
    void startRecorderScreen() override;
    void cleanup() override;
    void removeRecordScreenView() override;
    void orderOut() override;
    void makeKeyAndOrderFront() override;
    void removeEventMonitor() override;
    void startNoteButtonClick();

    // The view's delegate.
    void clipViewMouseMoved(TNClipView *view) override;
    void recordViewDidShowToolBar(TNClipView *view) override;
    void recordStartNote() override;
    void cancelClip() override;

    // Hover in region and window mode: the front-most window of layer 0 under the pointer.
    void ChooseWindowRectInScreen(const QVariantList &arrayRect);
    void showCircleDownCounter();
    void counterDownFinished(CircleCounterView *counter) override;
    void startRecording();

    quint64 status() const { return status_; }
    QRectF lastWindowRect() const { return lastWindowRect_; }
    QRectF selectedRegion() const { return selectedRegion_; }
    // The overlay's window and view (none for a whole screen, which needs no user step).
    QWidget *window() const { return window_.get(); }
    TNClipView *recordScreenView() const { return recordScreenView_; }

private:
    bool isFullScreenOnSeveral() const;
    bool wholeScreen() const;
    // The screen the recording is for: the pop-up's choice for a whole screen among
    // several, else the one under the pointer.
    std::optional<ScreenInfo> targetScreen() const;
    // The overlay that acts: that of the pop-up's screen for a whole screen among several.
    TNRecordScreenWindowController *actingController();
    TNClipView *actingView();
    // TNRecordScreenWindowController_window.cpp: the overlay window and the keys.
    void makeWindow(bool show = true);
    TNClipView *makeCounterWindow();
    void addEventMonitor();
    // Escape: the selection ends on every screen.
    void cancelSelection();
    QRectF viewRect(const QRectF &screenRect) const;

    TNRecordManager *delegate_;
    RecordScreenHost &host_;
    const Platform &platform_;
    ScreenInfo screen_;
    quint64 status_ = OverlayStatusIdle;
    std::optional<ScreenInfo> selectedScreen_;
    QRectF lastWindowRect_;
    QRectF selectedRegion_;
    std::unique_ptr<QWidget> window_;
    TNClipView *recordScreenView_ = nullptr;
    std::unique_ptr<QObject> eventMonitor_;
    // What stays of the window once the region is accepted: the frame around it.
    QRegion frameMask_;
    QWidget *counterHost_ = nullptr;
};

#pragma once
// What a screen's overlay asks of the application controller: the screen pop-up, the
// output path, the recording choices and the main window's look.
#include <QString>
#include <cstdint>

class RecordOverlayWindow;

class RecordScreenHost {
public:
    virtual ~RecordScreenHost() = default;
    // The screen pop-up: its selected index (0 is its empty item) and its item count.
    virtual int screenItemIndex() const = 0;
    virtual int screenItemCount() const = 0;
    virtual QString createoutputPath(bool isVideo) = 0;
    virtual void setOutputPath(const QString &path) = 0;
    virtual float fps() const = 0;
    virtual qint64 framItemIndex() const = 0;
    virtual bool isShowReverseTime() const = 0;
    virtual void setRecordWC(RecordOverlayWindow *overlay) = 0;
    // The window under the pointer, for the window-following capture.
    virtual void setSelectedWindowNumber(uint32_t number) = 0;
    virtual void setSelectedWindowName(const QString &name) = 0;
    // A cancelled selection: the source can be chosen again.
    virtual void enableSourceChoice() = 0;
    // The countdown's step: the source choices can no longer change.
    virtual void disableSourceControls() = 0;
    // The main window's look for a running screen recording.
    virtual void showRecordingControls() = 0;
};

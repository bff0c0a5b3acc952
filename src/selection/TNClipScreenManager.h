#pragma once
// A still clip over every screen: one overlay per screen, the shutter sound when a picture
// is taken, and the picture handed to whoever started the clip.
#include "TNClipWindowController.h"

#include <QImage>
#include <QVariantList>
#include <functional>
#include <vector>

struct Platform;

class TNClipScreenManager : public TNClipWindowControllerDelegate {
public:
    explicit TNClipScreenManager(const Platform &platform);
    ~TNClipScreenManager() override;

    // Does nothing while a clip is under way.
    void startCapture();
    void changeKeyWindowWithScreen(const ScreenInfo &screen) override;
    void clearClipWindowControllerArray();
    void showUploadWindowToFront() {}

    void clipWindowControllerDidClipedWithImage(TNClipWindowController *controller,
                                                const QImage &image) override;
    void clipWindowControllerDidCancel(TNClipWindowController *controller) override;
    const QVariantList &arrayRect() const override { return arrayRect_; }

    bool isWorking() const { return isWorking_; }
    const std::vector<TNClipWindowController *> &clipWindowControllerArray() const
    {
        return clipWindowControllerArray_;
    }
    // Where a finished clip's picture goes (saved, copied), after the shutter sound.
    std::function<void(const QImage &)> didClipImage;

private:
    void finish(TNClipWindowController *sender);

    const Platform &platform_;
    bool isWorking_ = false;
    bool hasShutterSound_ = false;
    QVariantList arrayRect_;
    // Deleted later: a controller may be inside the event that ends the clip.
    std::vector<TNClipWindowController *> clipWindowControllerArray_;
};

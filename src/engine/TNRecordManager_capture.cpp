// The capture inputs as the session switches them.
#include "TNRecordManager.h"

#include "CaptureInputs.h"

void TNRecordManager::captrueScreenInputEnable(bool enable)
{
    if (!enable) {
        platform_.screenInput->stopRunning();
        return;
    }
    // A new screen session starts with a fresh clock and no pending click effect.
    startDate_ = 0;
    isCursorClick_ = false;
    cursorEffectWidth_ = 0;
    platform_.screenInput->startRunning();
}

void TNRecordManager::captrueVideoInputEnable(bool enable)
{
    if (enable)
        platform_.cameraInput->startRunning();
    else
        platform_.cameraInput->stopRunning();
}

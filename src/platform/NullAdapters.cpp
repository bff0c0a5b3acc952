#include "NullAdapters.h"

#include "Log.h"

void NullCaptureExplainer::explain()
{
    if (!explained_.exchange(true))
        capstan::NSLog(lcPlatform, "%s capture is not available on this system",
                       qUtf8Printable(what_));
}

#include "FakePlatform.h"

FakePlatform::FakePlatform()
{
    folders.movies = home.filePath(QStringLiteral("Videos"));
    folders.caches = home.filePath(QStringLiteral(".cache"));
    folders.attributes = {50'000'000'000LL, 500'000'000'000LL};
    screens.list.append(ScreenInfo{QRectF(0, 0, 1920, 1080), 1, QStringLiteral("Fake 1"), 1.0});
}

Platform FakePlatform::platform()
{
    return Platform{&defaults, &clock,       &folders, &audio,       &windows,    &screens,
                    &version,  &permissions, &alerts,  &screenInput, &cameraInput};
}

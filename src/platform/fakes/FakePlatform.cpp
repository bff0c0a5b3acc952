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
    Platform p;
    p.defaults = &defaults;
    p.clock = &clock;
    p.folders = &folders;
    p.audio = &audio;
    p.windows = &windows;
    p.screens = &screens;
    p.version = &version;
    p.permissions = &permissions;
    p.alerts = &alerts;
    p.screenInput = &screenInput;
    p.cameraInput = &cameraInput;
    p.audioInput = &audioInput;
    p.pointer = &pointer;
    p.sounds = &sounds;
    p.media = &media;
    return p;
}

#pragma once
// Every fake port, owned together, with folders in a temporary directory.
#include "FakeAudioHardware.h"
#include "FakePorts.h"
#include "Platform.h"

#include <QTemporaryDir>

class FakePlatform {
public:
    FakePlatform();
    Platform platform();

    QTemporaryDir home;
    FakeUserDefaults defaults;
    FakeClock clock;
    FakeFolders folders;
    FakeAudioHardware audio;
    FakeWindowServer windows;
    FakeScreens screens;
    FakeSystemVersion version;
    FakePermissions permissions;
    FakeAlerts alerts;
    FakeScreenCaptureInput screenInput;
    FakeCameraCaptureInput cameraInput;
    FakeAudioCaptureInput audioInput;
    FakePointer pointer;
    FakeSoundPlayer sounds;
    FakeMediaInspector media;
};

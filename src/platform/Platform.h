#pragma once
// The set of ports the program's logic runs against. Production code gets the
// Linux adapters (linux/LinuxPlatform.h); tests build one from fakes.
// The bundle does not own the ports.
class UserDefaults;
class Clock;
class StandardFolders;
class AudioHardware;
class WindowServer;
class ScreenCatalog;
class SystemVersion;
class Permissions;
class Alerts;
class ScreenCaptureInput;
class CameraCaptureInput;
class AudioCaptureInput;
class Pointer;
class SoundPlayer;
class MediaInspector;

struct Platform {
    UserDefaults *defaults = nullptr;
    Clock *clock = nullptr;
    StandardFolders *folders = nullptr;
    AudioHardware *audio = nullptr;
    WindowServer *windows = nullptr;
    ScreenCatalog *screens = nullptr;
    SystemVersion *version = nullptr;
    Permissions *permissions = nullptr;
    Alerts *alerts = nullptr;
    ScreenCaptureInput *screenInput = nullptr;
    CameraCaptureInput *cameraInput = nullptr;
    AudioCaptureInput *audioInput = nullptr;
    Pointer *pointer = nullptr;
    SoundPlayer *sounds = nullptr;   // may be null: no sounds
    MediaInspector *media = nullptr; // may be null: no file is read back
};

#pragma once
// The session's enumerations. The numbers are stored and shown (tags, menu positions).
#include <QtGlobal>

enum RecordVideoType : quint64 {
    VideoTypeFullScreen = 0,
    VideoTypeCustomArea = 1,
    VideoTypeAppWindow = 2,
    VideoTypeCamera = 3,
    VideoTypeAudioOnly = 4,
};

enum RecordAudioType : quint64 {
    AudioTypeSystem = 0,
    AudioTypeMicphone = 1,
    AudioTypeSystemAndMicphone = 2,
    AudioTypeNone = 3,
};

enum RecordStatus : quint64 {
    RecordStatusIdle = 0,
    RecordStatusRecording = 1,
    RecordStatusPaused = 2,
    RecordStatusResumed = 3,
};

// Frames pass while recording or resumed: both have bit 1 set and make 3 with it.
constexpr bool statusPassesFrames(quint64 status)
{
    return (status | 2) == 3;
}

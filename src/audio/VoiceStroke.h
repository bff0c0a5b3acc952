#pragma once
// One column of the waveform: the peak of one sound buffer as a half height in points.
#include <QPainterPath>

struct VoiceStroke {
    // Fed while a recording ran: drawn green.
    bool isRecording = false;
    float point_x = 0;
    float point_y = 0;
    int blendMode = 0;
    QPainterPath path;
    double strokeWidth = 1.0;
};

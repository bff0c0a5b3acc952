#pragma once
// One buffer of captured sound as the capture output delivers it: 4-byte signed
// samples, the channels one after the other (planar) when there are several.
#include <QByteArray>

struct AudioSampleBuffer {
    QByteArray data;
    int channels = 2;
    int sampleRate = 44100;
};

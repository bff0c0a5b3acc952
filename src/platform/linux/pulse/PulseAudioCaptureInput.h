#pragma once
// Sound capture on PulseAudio: a record stream on a source, 32-bit samples at the
// format asked for, at least 10 ms a buffer, delivered planar on "AudioDataOutputQueue".
// Devices go by the names the hardware adapter gives them, so both layers match.
#include "CaptureInputs.h"
#include "PulseAudioHardware.h"
#include "PulseConnection.h"

#include <atomic>
#include <mutex>
#include <vector>

class PulseAudioCaptureInput final : public AudioCaptureInput {
public:
    explicit PulseAudioCaptureInput(PulseAudioHardware &hardware);
    ~PulseAudioCaptureInput() override;

    QStringList devices() const override;
    QString defaultDevice() const override;
    bool setDevice(const QString &name) override;
    void setFormat(int sampleRate, int channels) override;
    void setSampleCallback(AudioSampleCallback callback) override;
    void setSessionEventCallback(SessionEventCallback callback) override;
    void startRunning() override;
    void stopRunning() override;
    // False again once the stream fails, as well as after stopRunning().
    bool isRunning() const override { return running_.load(); }

private:
    static void onRead(pa_stream *stream, size_t bytes, void *self);
    static void onState(pa_stream *stream, void *self);
    void post(CaptureSessionEvent event, const QString &error = {});
    // Opens the stream under the loop's lock; the error's text when it cannot.
    QString openStream();

    PulseAudioHardware &hardware_;
    pulse::PulseConnection connection_{"AudioDataOutputQueue"};
    std::mutex mutex_; // settings and callbacks
    QString source_;
    int sampleRate_ = 44100;
    int channels_ = 2;
    AudioSampleCallback sampleCallback_;
    SessionEventCallback eventCallback_;
    pulse::StreamHandle stream_; // under the loop's lock
    std::atomic<bool> running_{false};
    static constexpr int kMinBufferMs = 10;

    bool started_ = false;         // on the loop's thread
    std::vector<int32_t> pending_; // on the loop's thread: interleaved, not yet delivered
};

#include "PulseAudioCaptureInput.h"

#include "Log.h"

#include <cstring>

PulseAudioCaptureInput::PulseAudioCaptureInput(PulseAudioHardware &hardware) : hardware_(hardware)
{}

PulseAudioCaptureInput::~PulseAudioCaptureInput()
{
    stopRunning();
}

QStringList PulseAudioCaptureInput::devices() const
{
    QStringList names;
    for (const PulseAudioHardware::Device &d : hardware_.snapshot().devices)
        if (!d.source.isEmpty())
            names << d.name;
    return names;
}

QString PulseAudioCaptureInput::defaultDevice() const
{
    const PulseAudioHardware::Snapshot shot = hardware_.snapshot();
    for (const PulseAudioHardware::Device &d : shot.devices)
        if (d.id == shot.defaultInput)
            return d.name;
    return {};
}

bool PulseAudioCaptureInput::setDevice(const QString &name)
{
    for (const PulseAudioHardware::Device &d : hardware_.snapshot().devices) {
        if (d.name == name && !d.source.isEmpty()) {
            std::lock_guard lock(mutex_);
            source_ = d.source;
            return true;
        }
    }
    return false;
}

void PulseAudioCaptureInput::setFormat(int sampleRate, int channels)
{
    std::lock_guard lock(mutex_);
    sampleRate_ = sampleRate;
    channels_ = channels;
}

void PulseAudioCaptureInput::setSampleCallback(AudioSampleCallback callback)
{
    std::lock_guard lock(mutex_);
    sampleCallback_ = std::move(callback);
}

void PulseAudioCaptureInput::setSessionEventCallback(SessionEventCallback callback)
{
    std::lock_guard lock(mutex_);
    eventCallback_ = std::move(callback);
}

void PulseAudioCaptureInput::post(CaptureSessionEvent event, const QString &error)
{
    SessionEventCallback callback;
    {
        std::lock_guard lock(mutex_);
        callback = eventCallback_;
    }
    if (callback)
        callback(event, error);
}

void PulseAudioCaptureInput::startRunning()
{
    stopRunning();
    if (!connection_.isReady()) {
        post(CaptureSessionEvent::RuntimeError, QStringLiteral("no sound server"));
        return;
    }
    const QString error = openStream();
    // Told outside the loop's lock: whoever listens may ask the input about itself.
    if (!error.isEmpty()) {
        capstan::NSLog(lcAudio, "%s", qUtf8Printable(error));
        post(CaptureSessionEvent::RuntimeError, error);
    }
}

QString PulseAudioCaptureInput::openStream()
{
    QByteArray source;
    pa_sample_spec spec{};
    {
        std::lock_guard lock(mutex_);
        source = source_.toUtf8();
        spec = {PA_SAMPLE_S32LE, uint32_t(sampleRate_), uint8_t(channels_)};
    }
    pulse::LoopLock lock(connection_.loop());
    pa_context *context = connection_.context();
    if (!context || pa_context_get_state(context) != PA_CONTEXT_READY)
        return QStringLiteral("no sound server");
    pending_.clear();
    pulse::StreamHandle stream(pa_stream_new(context, "Capstan recording", &spec, nullptr));
    if (!stream)
        return QStringLiteral("cannot make a sound stream (%1 Hz, %2 channels): %3")
            .arg(spec.rate)
            .arg(spec.channels)
            .arg(QString::fromUtf8(pa_strerror(pa_context_errno(context))));
    pa_stream_set_read_callback(stream.get(), &PulseAudioCaptureInput::onRead, this);
    pa_stream_set_state_callback(stream.get(), &PulseAudioCaptureInput::onState, this);
    // About 20 ms a buffer keeps the level meter lively and the sound close to the pictures.
    pa_buffer_attr attr{};
    attr.maxlength = uint32_t(-1);
    attr.fragsize = uint32_t(pa_usec_to_bytes(20 * PA_USEC_PER_MSEC, &spec));
    started_ = false;
    if (pa_stream_connect_record(
            stream.get(), source.isEmpty() ? nullptr : source.constData(), &attr,
            pa_stream_flags_t(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE)) < 0) {
        pa_stream_set_read_callback(stream.get(), nullptr, nullptr);
        pa_stream_set_state_callback(stream.get(), nullptr, nullptr);
        return QStringLiteral("cannot record from %1: %2")
            .arg(QString::fromUtf8(source.isEmpty() ? QByteArray("the default source") : source),
                 QString::fromUtf8(pa_strerror(pa_context_errno(context))));
    }
    // A source that is not there is only found out later, in onState.
    stream_ = std::move(stream);
    running_ = true;
    return {};
}

void PulseAudioCaptureInput::stopRunning()
{
    if (!connection_.loop())
        return;
    pulse::StreamHandle stream;
    {
        // Under the loop's lock no callback runs; after it none will for this stream.
        pulse::LoopLock lock(connection_.loop());
        stream = std::move(stream_);
        running_ = false;
        if (!stream)
            return;
        pa_stream_set_read_callback(stream.get(), nullptr, nullptr);
        pa_stream_set_state_callback(stream.get(), nullptr, nullptr);
        // A failed stream has left its context (the server went): nothing to disconnect.
        if (PA_STREAM_IS_GOOD(pa_stream_get_state(stream.get())))
            pa_stream_disconnect(stream.get());
        stream.reset();
    }
    post(CaptureSessionEvent::DidStopRunning);
}

void PulseAudioCaptureInput::onState(pa_stream *stream, void *self)
{
    auto *input = static_cast<PulseAudioCaptureInput *>(self);
    switch (pa_stream_get_state(stream)) {
    case PA_STREAM_READY:
        if (!input->started_) {
            input->started_ = true;
            input->post(CaptureSessionEvent::DidStartRunning);
        }
        break;
    case PA_STREAM_FAILED:
    case PA_STREAM_TERMINATED: {
        // The device went away, was never there, or the server went.
        input->running_ = false;
        const QString error = QStringLiteral("the sound device stopped: %1")
                                  .arg(QString::fromUtf8(pa_strerror(
                                      pa_context_errno(pa_stream_get_context(stream)))));
        capstan::NSLog(lcAudio, "%s", qUtf8Printable(error));
        input->post(CaptureSessionEvent::RuntimeError, error);
        break;
    }
    default:
        break;
    }
}

void PulseAudioCaptureInput::onRead(pa_stream *stream, size_t, void *self)
{
    auto *input = static_cast<PulseAudioCaptureInput *>(self);
    AudioSampleCallback callback;
    int channels = 2, rate = 44100;
    {
        std::lock_guard lock(input->mutex_);
        callback = input->sampleCallback_;
        channels = input->channels_;
        rate = input->sampleRate_;
    }
    std::vector<int32_t> &pending = input->pending_;
    const void *data = nullptr;
    size_t bytes = 0;
    while (pa_stream_readable_size(stream) > 0) {
        if (pa_stream_peek(stream, &data, &bytes) < 0 || bytes == 0)
            break;
        const size_t samples = bytes / 4 / size_t(channels) * size_t(channels);
        // A hole (no data) stays silence.
        if (data) {
            const auto *in = static_cast<const int32_t *>(data);
            pending.insert(pending.end(), in, in + samples);
        } else {
            pending.resize(pending.size() + samples, 0);
        }
        pa_stream_drop(stream);
    }
    // The server may hand over a millisecond at a time; each buffer passed on costs the
    // meter, the encoder and the interface a round, so small pieces are gathered first.
    const size_t frames = pending.size() / size_t(channels);
    if (frames < size_t(rate) * kMinBufferMs / 1000)
        return;
    AudioSampleBuffer buffer;
    buffer.channels = channels;
    buffer.sampleRate = rate;
    buffer.data = QByteArray(qsizetype(frames * 4 * size_t(channels)), Qt::Uninitialized);
    // The server gives frames interleaved; the capture output hands the channels one
    // after the other.
    auto *out = reinterpret_cast<int32_t *>(buffer.data.data());
    for (size_t f = 0; f < frames; ++f)
        for (int c = 0; c < channels; ++c)
            out[size_t(c) * frames + f] = pending[f * size_t(channels) + size_t(c)];
    pending.clear();
    if (callback)
        callback(buffer);
}

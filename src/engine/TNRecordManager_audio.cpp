// The sound capture session: opened on the device the routing picked, running from the
// moment a sound source is chosen so the meters move before a recording starts; a
// recording only opens the gate in the sample callback. A watch every half second
// rebuilds routing and session when microphones come or go.
#include "TNRecordManager.h"

#include "AudioDeviceNames.h"
#include "Log.h"
#include "SystemVersion.h"

#include <QMetaObject>
#include <QTimer>

using capstan::NSLog;

namespace {

constexpr int kDeviceWatchIntervalMs = 500;

} // namespace

void TNRecordManager::captrueAudioInputEnable()
{
    captrueAudioInputEnable(true);
}

void TNRecordManager::startCapture()
{
    captrueAudioInputEnable(recordAudioType() != AudioTypeNone);
}

void TNRecordManager::captrueAudioInputEnable(bool enable)
{
    AudioCaptureInput &input = *platform_.audioInput;
    if (!enable) {
        if (!checkAudioDeviceTimers_.isEmpty())
            delete checkAudioDeviceTimers_.takeLast();
        if (!audioDeviceInput_) {
            NSLog(lcAudio, "get deview input with device failed");
            return;
        }
        input.stopRunning();
        return;
    }

    // An earlier watch timer goes on firing: the watch works by comparison, so the extra
    // rounds change nothing, and a disable stops only the newest.
    if (platform_.version->isAtLeast(10, 12)) {
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, &TNRecordManager::checkAudioDevices);
        timer->start(kDeviceWatchIntervalMs);
        checkAudioDeviceTimers_.append(timer);
    }
    const QStringList devices = input.devices();
    if (devices.isEmpty())
        return;
    // The new session replaces the old one.
    if (input.isRunning())
        input.stopRunning();
    audioDeviceInput_ = false;

    // The name is the only link between the hardware layer's device and the capture's.
    const QString wanted = selectInputDevice_ ? selectInputDevice_->name() : QString();
    const QString device = devices.contains(wanted) ? wanted : input.defaultDevice();
    if (recordAudioType() == AudioTypeNone)
        return;
    if (!input.setDevice(device)) {
        NSLog(lcAudio, "get deview input with device failed");
        return;
    }
    audioDeviceInput_ = true;
    setupAudioSettings();
    input.setSampleCallback([this](const AudioSampleBuffer &buffer) { captureOutput(buffer); });
    input.setSessionEventCallback([this](CaptureSessionEvent event, const QString &error) {
        postSessionEvent(event, error);
    });
    input.startRunning();
}

void TNRecordManager::setupAudioSettings()
{
    EncodeManager &encoder = encodeManager();
    if (encoder.audioBitrate() == 0)
        encoder.setAudioBitrate(12800);
    if (encoder.audioSamples() == 0)
        encoder.setAudioSamples(44100);
    if (encoder.audioChannels() == 0)
        encoder.setAudioChannels(2);
    platform_.audioInput->setFormat(encoder.audioSamples(), encoder.audioChannels());
}

void TNRecordManager::checkAudioDevices()
{
    const QList<EZAudioDevice> inputs = inputDevices();
    // A device swapped for another in one step goes unnoticed, as do output changes.
    if (inputs.size() == host_.inputDevicesCount())
        return;
    recoverAudioDevices(inputs);
}

void TNRecordManager::recoverAudioDevices(const QList<EZAudioDevice> &inputs)
{
    bool found = false;
    for (const EZAudioDevice &device : inputs)
        if (AudioDeviceNames::isSecondPassMicrophone(device.name()))
            found = true;
    prepareDevice();
    if (!found) {
        // The session's own flag: a paused recording is not stopped, it falls back.
        if (recordAudioType() == AudioTypeMicphone && isWorking_) {
            host_.recordScreenClicked();
            host_.showMicrophoneMissing();
        }
        host_.selectSystemAudioItem();
        setRecordAudioType(AudioTypeSystem);
        switchRecordType(AudioTypeSystem);
    }
    host_.storeDeviceLists(inputDevices(), outputDevices());
    captrueAudioInputEnable(true);
}

void TNRecordManager::postSessionEvent(CaptureSessionEvent event, const QString &error)
{
    // Routing and the sessions belong to the main thread.
    QMetaObject::invokeMethod(
        this, [this, event, error] { captureSessionEvent(event, error); }, Qt::QueuedConnection);
}

void TNRecordManager::captureSessionEvent(CaptureSessionEvent event, const QString &error)
{
    if (event == CaptureSessionEvent::DidStopRunning || error.isEmpty())
        return;
    NSLog(lcAudio, "error:%s", qUtf8Printable(error));
    QDLog::showMessage(
        QString::asprintf("%s %d error:%s", __func__, __LINE__, qUtf8Printable(error)));
    // A changed number of outputs is the sign that a device came or went.
    if (outputDevices().size() != host_.outputDevicesCount())
        recoverAudioDevices(inputDevices());
}

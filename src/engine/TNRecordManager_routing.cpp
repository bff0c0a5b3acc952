// Audio routing: the physical microphone and output are found by name, and two
// aggregates are built around the loopback device so system sound can be recorded:
// "MR-OutputDevice" plays to the speakers and the loopback at once, "MR-InputDevice"
// records the microphone and the loopback together.
//
// Runs on the main thread; the two delayed loads come back to it by a timer.
#include "TNRecordManager.h"

#include "AudioDeviceNames.h"
#include "Log.h"

#include <QTimer>
#include <cstdio>

using capstan::NSLog;

using namespace AudioDeviceNames;

namespace {

constexpr int kAggregateListingDelayMs = 500;

// The first device whose name begins with prefix.
std::optional<EZAudioDevice> firstNamed(const QList<EZAudioDevice> &devices, const QString &prefix)
{
    for (const EZAudioDevice &device : devices)
        if (device.name().startsWith(prefix))
            return device;
    return std::nullopt;
}

} // namespace

QList<EZAudioDevice> TNRecordManager::inputDevices() const
{
    return EZAudioDevice::inputDevices(*platform_.audio);
}

QList<EZAudioDevice> TNRecordManager::outputDevices() const
{
    return EZAudioDevice::outputDevices(*platform_.audio);
}

void TNRecordManager::prepareDevice()
{
    const QList<EZAudioDevice> inputs = inputDevices();
    QString inputName;
    if (status_ != RecordStatusIdle && inputDevice_) {
        // During a session the microphone in use stays the choice while it exists.
        for (const EZAudioDevice &device : inputs)
            if (device.deviceID() == inputDevice_->deviceID())
                inputName = device.name();
    }
    if (inputName.isNull()) {
        for (const EZAudioDevice &device : inputs) {
            if (isFirstPassMicrophone(device.name())) {
                inputName = device.name();
                inputDevice_ = device;
                break;
            }
        }
    }
    if (inputName.isNull()) {
        // The loopback device ends the walk; otherwise the last microphone-like name wins.
        for (const EZAudioDevice &device : inputs) {
            if (device.UID() == kLoopbackUID) {
                inputName = device.name();
                inputDevice_ = device;
                break;
            }
            if (isSecondPassMicrophone(device.name())) {
                inputName = device.name();
                inputDevice_ = device;
            }
        }
    }

    const QList<EZAudioDevice> outputs = outputDevices();
    QString outputName;
    if (status_ != RecordStatusIdle && outputDevice_) {
        for (const EZAudioDevice &device : outputs)
            if (device.deviceID() == outputDevice_->deviceID())
                outputName = device.name();
    }
    if (outputName.isNull()) {
        for (const EZAudioDevice &device : outputs) {
            if (outputDevice_ && device.deviceID() == outputDevice_->deviceID()) {
                outputName = device.name();
                break;
            }
            if (isFirstPassOutput(device.name())) {
                outputName = device.name();
                outputDevice_ = device;
                break;
            }
        }
    }
    if (outputName.isNull()) {
        for (const EZAudioDevice &device : outputs) {
            if (device.UID() == QStringLiteral("BuiltInSpeakerDevice")) {
                outputName = device.name();
                break;
            }
        }
    }
    // A UID stands in for a missing name, as it always has; it rarely matches a name.
    prepareDevice(inputName.isNull() ? kLoopbackUID : inputName, outputName);
}

int TNRecordManager::prepareDevice(const QString &inputName, const QString &outputName)
{
    if (inputName.isEmpty() || outputName.isEmpty()) {
        NSLog(lcAudio, "没有找到麦克风");
        return 80;
    }
    const int status = loadEZAudioInputDevice(inputName);
    if (status != 0)
        return status;
    return loadEZAudioOutputDevice(outputName);
}

int TNRecordManager::loadEZAudioInputDevice(const QString &inputName)
{
    std::optional<EZAudioDevice> oldAggregate;
    for (const EZAudioDevice &device : inputDevices()) {
        if (device.name().startsWith(inputName))
            builtInputDevice_ = device;
        if (device.name().startsWith(kLoopbackName))
            soundflowerInputDevcie_ = device;
        if (device.name().startsWith(kInputAggregate))
            oldAggregate = device;
    }
    if (!builtInputDevice_) {
        NSLog(lcAudio, "未找到内置话筒");
        return 80;
    }
    if (!soundflowerInputDevcie_) {
        NSLog(lcAudio, "未找到soundflower输入");
        return 81;
    }
    if (oldAggregate)
        destroyAggregateDevice(oldAggregate->deviceID());
    const OSStatus status = createAggregateDevice(kInputAggregate, builtInputDevice_->UID(),
                                                  soundflowerInputDevcie_->UID(), false);
    if (status != noErr) {
        NSLog(lcAudio, "createAggregateDevice %s fail", qUtf8Printable(kInputAggregate));
        return 82;
    }
    // A new device is listed only a little later.
    QTimer::singleShot(kAggregateListingDelayMs, this, [this] { loadMRInputDevice(); });
    return 0;
}

void TNRecordManager::loadMRInputDevice()
{
    if (auto device = firstNamed(inputDevices(), kInputAggregate))
        aggregateInputDevcie_ = device;
}

int TNRecordManager::loadEZAudioOutputDevice(const QString &outputName)
{
    const QList<EZAudioDevice> outputs = outputDevices();
    std::optional<EZAudioDevice> physical, loopback, oldAggregate;
    for (const EZAudioDevice &device : outputs) {
        if (device.name().startsWith(outputName)) {
            physical = device;
            builtOutputDevice_ = device;
        }
        if (device.name().startsWith(kLoopbackName))
            loopback = device;
        if (device.name().startsWith(kOutputAggregate))
            oldAggregate = device;
    }
    if (outputs.isEmpty() || !physical) {
        NSLog(lcAudio, "未找到 内置输出");
        return 90;
    }
    // Unconditionally: without an old aggregate the id is 0 and the call just fails.
    destroyAggregateDevice(oldAggregate ? oldAggregate->deviceID() : kAudioObjectUnknown);
    const OSStatus status = createAggregateDevice(kOutputAggregate, physical->UID(),
                                                  loopback ? loopback->UID() : QString(), true);
    if (status != noErr) {
        NSLog(lcAudio, "create output AggregateDevice fail  name= %s",
              qUtf8Printable(kOutputAggregate));
        return 91;
    }
    QTimer::singleShot(kAggregateListingDelayMs, this, [this] { loadMROutPutDevice(); });
    return 0;
}

void TNRecordManager::loadMROutPutDevice()
{
    if (auto device = firstNamed(outputDevices(), kOutputAggregate))
        aggregateOutputDevice_ = device;
}

int32_t TNRecordManager::switchRecordType(quint64 type)
{
    if (!aggregateOutputDevice_)
        loadMROutPutDevice();
    setRecordAudioType(type);
    if (type != AudioTypeNone) {
        EncodeManager &encoder = encodeManager();
        encoder.setAudioBitrate(12800);
        encoder.setAudioSamples(44100);
        encoder.setAudioChannels(2);
        encoder.setUpAudioSettings();
    }
    const std::optional<EZAudioDevice> &input = type == AudioTypeSystem ? soundflowerInputDevcie_
                                                : type == AudioTypeMicphone ? builtInputDevice_
                                                                            : aggregateInputDevcie_;
    if (input)
        selectInputDevice_ = input;
    if (aggregateOutputDevice_)
        selectOutputDevice_ = aggregateOutputDevice_;
    if (selectInputDevice_)
        setSystemDefaultInput(*selectInputDevice_);
    if (selectOutputDevice_)
        setSystemDefaultOutPut(*selectOutputDevice_);
    return 0;
}

OSStatus TNRecordManager::setSystemDefaultOutPut(const EZAudioDevice &device)
{
    const OSStatus status =
        setDefaultDevice(kAudioHardwarePropertyDefaultOutputDevice, device.deviceID());
    if (status == noErr)
        NSLog(lcAudio, "setSystemDefaultOutPut %s", qUtf8Printable(device.name()));
    QDLog::showMessage(QString::asprintf("%s %d id:%d err：%d", __func__, __LINE__,
                                         int(device.deviceID()), int(status)));
    return status;
}

OSStatus TNRecordManager::setSystemDefaultInput(const EZAudioDevice &device)
{
    const OSStatus status =
        setDefaultDevice(kAudioHardwarePropertyDefaultInputDevice, device.deviceID());
    if (status == noErr)
        NSLog(lcAudio, "setSystemDefaultInput %s", qUtf8Printable(device.name()));
    QDLog::showMessage(QString::asprintf("%s %d setSystemDefaultInput:%s,err:%d", __func__,
                                         __LINE__, qUtf8Printable(device.name()), int(status)));
    return status;
}

OSStatus TNRecordManager::setDefaultDevice(AudioObjectPropertySelector selector,
                                           AudioDeviceID deviceID)
{
    const AudioObjectPropertyAddress address{selector, kAudioObjectPropertyScopeGlobal,
                                             kAudioObjectPropertyElementMaster};
    return platform_.audio->AudioObjectSetPropertyData(kAudioObjectSystemObject, address,
                                                       AudioPropertyValue(deviceID));
}

OSStatus TNRecordManager::createAggregateDevice(const QString &name, const QString &firstUID,
                                                const QString &secondUID, bool isOut)
{
    QVariantMap description{
        {QStringLiteral("name"), name},
        {QStringLiteral("uid"), isOut ? kOutputAggregate : kInputAggregate},
        {QStringLiteral("subdevices"),
         QVariantList{QVariantMap{{QStringLiteral("uid"), firstUID}},
                      QVariantMap{{QStringLiteral("uid"), secondUID}}}},
        {QStringLiteral("master"), firstUID},
    };
    if (isOut)
        description.insert(QStringLiteral("stacked"), 1);
    AudioObjectID created = kAudioObjectUnknown;
    const OSStatus status =
        platform_.audio->AudioHardwareCreateAggregateDevice(description, &created);
    if (status != noErr) {
        std::printf("AudioHardwareCreateAggregateDevice Error: %d\n", int(status));
        std::fflush(stdout);
    } else {
        NSLog(lcAudio, "AudioHardwareCreateAggregateDevice success");
    }
    return status;
}

OSStatus TNRecordManager::destroyAggregateDevice(AudioDeviceID deviceID)
{
    const OSStatus status = platform_.audio->AudioHardwareDestroyAggregateDevice(deviceID);
    if (status != noErr)
        std::printf("destroyAggregateDevice Error: %d\n", int(status));
    else
        std::printf("destroyAggregateDevice success\n");
    std::fflush(stdout);
    return status;
}

bool TNRecordManager::hasInstallSoundFlower() const
{
    return firstNamed(inputDevices(), kLoopbackName).has_value();
}

void TNRecordManager::destroyAggregatesAtQuit()
{
    for (const EZAudioDevice &device : inputDevices())
        if (device.name() == kInputAggregate)
            destroyAggregateDevice(device.deviceID());
    for (const EZAudioDevice &device : outputDevices())
        if (device.name() == kOutputAggregate)
            destroyAggregateDevice(device.deviceID());
}

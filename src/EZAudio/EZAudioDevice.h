#pragma once
// A snapshot of one audio device, and the class operations that ask the audio
// hardware layer for devices. The catalog keeps nothing: every call asks the layer afresh.
// Records are equal when their UIDs are equal.
#include "AudioHardware.h"

#include <QList>
#include <QString>
#include <functional>

class EZAudioDevice {
public:
    using Block = std::function<void(const EZAudioDevice &device, bool *stop)>;

    const QString &name() const { return name_; }
    void setName(const QString &name) { name_ = name; }
    AudioDeviceID deviceID() const { return deviceID_; }
    void setDeviceID(AudioDeviceID id) { deviceID_ = id; }
    const QString &manufacturer() const { return manufacturer_; }
    void setManufacturer(const QString &manufacturer) { manufacturer_ = manufacturer; }
    qint64 inputChannelCount() const { return inputChannelCount_; }
    void setInputChannelCount(qint64 count) { inputChannelCount_ = count; }
    qint64 outputChannelCount() const { return outputChannelCount_; }
    void setOutputChannelCount(qint64 count) { outputChannelCount_ = count; }
    const QString &UID() const { return UID_; }
    void setUID(const QString &uid) { UID_ = uid; }
    bool isBuiltIn() const { return isBuiltIn_; }
    void setIsBuiltIn(bool builtIn) { isBuiltIn_ = builtIn; }

    bool operator==(const EZAudioDevice &other) const { return UID_ == other.UID_; }
    QString description() const;

    static void enumerateDevicesUsingBlock(AudioHardware &hw, const Block &block);
    static QList<EZAudioDevice> devices(AudioHardware &hw);
    static QList<EZAudioDevice> inputDevices(AudioHardware &hw);
    static QList<EZAudioDevice> outputDevices(AudioHardware &hw);
    static EZAudioDevice currentInputDevice(AudioHardware &hw);
    static EZAudioDevice currentOutputDevice(AudioHardware &hw);
    static EZAudioDevice deviceWithPropertySelector(AudioHardware &hw,
                                                    AudioObjectPropertySelector selector);

    static AudioObjectPropertyAddress
    addressForPropertySelector(AudioObjectPropertySelector selector);
    // "?" when the property cannot be read.
    static QString stringPropertyForSelector(AudioHardware &hw,
                                             AudioObjectPropertySelector selector,
                                             AudioDeviceID deviceID);
    static qint64 channelCountForScope(AudioHardware &hw, AudioObjectPropertyScope scope,
                                       AudioDeviceID deviceID);
    static bool isBuiltInDevice(AudioHardware &hw, AudioDeviceID deviceID);
    static QString manufacturerForDeviceID(AudioHardware &hw, AudioDeviceID deviceID);
    static QString namePropertyForDeviceID(AudioHardware &hw, AudioDeviceID deviceID);
    static QString UIDPropertyForDeviceID(AudioHardware &hw, AudioDeviceID deviceID);

private:
    QString name_;
    AudioDeviceID deviceID_ = 0;
    QString manufacturer_;
    qint64 inputChannelCount_ = 0;
    qint64 outputChannelCount_ = 0;
    QString UID_;
    bool isBuiltIn_ = false;
};

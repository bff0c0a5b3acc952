// The sound choices of the main window and what the session asks when devices change.
#include "AppDelegate.h"

#include "Alerts.h"
#include "AudioDeviceNames.h"
#include "HomeMainWindow.h"
#include "Localization.h"
#include "NSVertProgressView.h"
#include "SKVoiceWaveView.h"
#include "SettingsKeys.h"
#include "UserDefaults.h"

void AppDelegate::applicationWillTerminate()
{
    applicationShouldTerminateAfterLastWindowClosed();
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed()
{
    TNRecordManager &manager = *recordManager();
    // The views stop being fed before anything else goes.
    voiceView_ = nullptr;
    for (auto &view : progressViews_)
        view = nullptr;
    manager.captrueVideoInputEnable(false);
    manager.captrueAudioInputEnable(false);
    manager.destroyAggregatesAtQuit();
    return true;
}

void AppDelegate::storeDeviceLists(const QList<EZAudioDevice> &inputs,
                                   const QList<EZAudioDevice> &outputs)
{
    inputDevices_ = inputs;
    outputDevices_ = outputs;
}

void AppDelegate::showMicrophoneMissing()
{
    platform_.alerts->showModleMessage(
        Localization::localizedStringForKey(QStringLiteral("Alert_Mic_Message")), QString());
}

void AppDelegate::selectSystemAudioItem()
{
    audioItemIndex_ = 1;
}

void AppDelegate::audioChangeAction(int index)
{
    TNRecordManager &manager = *recordManager();
    const QList<EZAudioDevice> inputs = manager.inputDevices();
    if (inputs.size() != inputDevices_.size())
        manager.prepareDevice();
    storeDeviceLists(manager.inputDevices(), manager.outputDevices());

    quint64 type = AudioTypeNone;
    if (index == 1) {
        type = AudioTypeSystem;
    } else if (index == 2 || index == 3) {
        const bool found = std::any_of(inputs.cbegin(), inputs.cend(), [](const EZAudioDevice &d) {
            return AudioDeviceNames::isFirstPassMicrophone(d.name()) ||
                   AudioDeviceNames::isSecondPassMicrophone(d.name());
        });
        if (!found) {
            showMicrophoneMissing();
            return;
        }
        type = index == 3 ? AudioTypeSystemAndMicphone : AudioTypeMicphone;
    }
    manager.setRecordAudioType(type);
    if (type == AudioTypeNone) {
        audioIm_ = QStringLiteral("btnNotRecordAudio_Normal");
        manager.captrueAudioInputEnable(false);
        setProgress(LevelBar::Main, 0);
    } else {
        manager.stopCapture();
        manager.switchRecordType(type);
        audioIm_ = QStringLiteral("btnMainRec_Audio_Normal");
        manager.captrueAudioInputEnable();
    }
    audioItemIndex_ = index;
    platform_.defaults->setInteger(qint64(type), QString::fromLatin1(Keys::RecordAudioType));
}

namespace {

enum class BoxAction { System, Micphone };

// The two tables differ on purpose where the system box is off.
quint64 boxAudioType(BoxAction action, int s, int m)
{
    if (s == 1 && m == 1)
        return AudioTypeSystemAndMicphone;
    if (s == 1 && m == 2)
        return AudioTypeSystem;
    if (s == 2 && m == 1)
        return action == BoxAction::System ? AudioTypeMicphone : AudioTypeNone;
    if (s == 2 && m == 2)
        return action == BoxAction::System ? AudioTypeNone : AudioTypeMicphone;
    return AudioTypeNone;
}

} // namespace

void AppDelegate::systemAudioBoxChange(int systemIndex, int micphoneIndex)
{
    applyBoxAudioType(boxAudioType(BoxAction::System, systemIndex, micphoneIndex));
}

void AppDelegate::micphoneBoxChange(int systemIndex, int micphoneIndex)
{
    applyBoxAudioType(boxAudioType(BoxAction::Micphone, systemIndex, micphoneIndex));
}

void AppDelegate::applyBoxAudioType(quint64 type)
{
    TNRecordManager &manager = *recordManager();
    manager.switchRecordType(type);
    manager.captrueAudioInputEnable(type != AudioTypeNone);
    platform_.defaults->setInteger(qint64(type), QString::fromLatin1(Keys::RecordAudioType));
}

QSizeF AppDelegate::voiceContentViewSize() const
{
    std::lock_guard lock(voiceMutex_);
    return voiceContentViewSize_;
}

void AppDelegate::setVoiceContentViewSize(const QSizeF &size)
{
    std::lock_guard lock(voiceMutex_);
    voiceContentViewSize_ = size;
}

void AppDelegate::appendWaveformValue(double value)
{
    if (SKVoiceWaveView *view = voiceView_.load(std::memory_order_acquire))
        view->appendWaveformValue(value, recording());
}

void AppDelegate::updateSampleData()
{
    if (SKVoiceWaveView *view = voiceView_.load(std::memory_order_acquire))
        view->updateSampleData();
}

void AppDelegate::setProgress(LevelBar bar, float value)
{
    progress_[int(bar)] = value;
    if (NSVertProgressView *view = progressViews_[int(bar)].load(std::memory_order_acquire))
        view->setProgress(value);
}

void AppDelegate::publishLevelViews()
{
    progressViews_[int(LevelBar::Main)] = window_->progressView;
    progressViews_[int(LevelBar::System)] = window_->systemProgress;
    progressViews_[int(LevelBar::Micphone)] = window_->micphoneProgress;
    voiceView_ = window_->voiceContentView;
}

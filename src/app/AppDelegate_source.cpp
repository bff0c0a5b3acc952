// The source screen: the five modes, the pop-ups and the way back home.
#include "AppDelegate.h"

#include "Alerts.h"
#include "CaptureInputs.h"
#include "HomeMainWindow.h"
#include "Localization.h"
#include "NSVertProgressView.h"
#include "SKVoiceWaveView.h"
#include "ScreenCatalog.h"
#include "SettingsKeys.h"
#include "StatusItem.h"
#include "SystemVersion.h"
#include "TNButton.h"
#include "UserDefaults.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>

using Localization::localizedStringForKey;

namespace {

QStringList localized(std::initializer_list<const char *> keys)
{
    QStringList texts;
    for (const char *key : keys)
        texts << localizedStringForKey(QString::fromLatin1(key));
    return texts;
}

QStringList modeTitles()
{
    return localized({"Main_Full_Screen", "Main_Custom_Area", "Main_App_Window", "Main_Camera",
                      "Main_Audio_Only"});
}

QStringList onOffTitles()
{
    return localized({"Main_On", "Main_Off"});
}

QStringList soundTitles()
{
    return localized({"Main_Audio_System", "Main_Audio_Micphone", "Main_Audio_System&Micphone",
                      "Main_Audio_None"});
}

// Selects without running the pop-up's action: the caller runs it when it should.
void selectQuietly(QComboBox *box, int index)
{
    const QSignalBlocker blocker(box);
    box->setCurrentIndex(std::clamp(index, 0, std::max(0, box->count() - 1)));
}

} // namespace

void AppDelegate::fillPopups()
{
    HomeMainWindow &w = *window_;
    HomeMainWindow::fillPopup(w.chooseViewItemBox, modeTitles());
    HomeMainWindow::fillPopup(w.frameItemBox, frameTitles());
    selectQuietly(w.frameItemBox, int(framItemIndex()) + 1);
    HomeMainWindow::fillPopup(w.fpstemBox, fpsTitles());
    selectQuietly(w.fpstemBox, int(fpsItemIndex()) + 1);
    HomeMainWindow::fillPopup(w.captrueItemBox, onOffTitles());
    selectQuietly(w.captrueItemBox, 2);
    const QStringList sound = soundTitles();
    const int storedSound =
        int(platform_.defaults->integerForKey(QString::fromLatin1(Keys::RecordAudioType))) + 1;
    for (QComboBox *box : {w.audioItemBox, w.onlyAudio_AudioTypePopBtn}) {
        HomeMainWindow::fillPopup(box, sound);
        selectQuietly(box, storedSound);
    }
    HomeMainWindow::fillPopup(w.audioExtensionBox, audioExtensions());
    selectQuietly(w.audioExtensionBox, int(audioExtensionIndex()) + 1);
    for (QComboBox *box : {w.systemAudioBox, w.micphoneBox}) {
        HomeMainWindow::fillPopup(box, onOffTitles());
        selectQuietly(box, 2);
    }
    w.captruesBox->clear();
    w.captruesBox->addItem(localizedStringForKey(QStringLiteral("SelectCaptrue")));
}

void AppDelegate::localizePopups()
{
    HomeMainWindow &w = *window_;
    const auto refill = [](QComboBox *box, const QStringList &texts, int index) {
        HomeMainWindow::fillPopup(box, texts);
        selectQuietly(box, index);
    };
    refill(w.frameItemBox, frameTitles(), int(framItemIndex()) + 1);
    // The source pop-up comes back on its first source, whatever the source is.
    refill(w.chooseViewItemBox, modeTitles(), 1);
    refill(w.captrueItemBox, onOffTitles(), isCaptrue() ? 1 : 2);
    for (QComboBox *box : {w.audioItemBox, w.onlyAudio_AudioTypePopBtn})
        refill(box, soundTitles(), box->currentIndex());
    for (QComboBox *box : {w.systemAudioBox, w.micphoneBox})
        refill(box, onOffTitles(), box->currentIndex());
    if (checkCapture(false)) {
        const int camera = w.captruesBox->currentIndex();
        w.captruesBox->clear();
        w.captruesBox->addItem(localizedStringForKey(QStringLiteral("SelectCaptrue")));
        w.captruesBox->addItems(platform_.cameraInput->devices());
        selectQuietly(w.captruesBox, camera);
    }
}

void AppDelegate::fullScreenClicked(int tag)
{
    HomeMainWindow &w = *window_;
    w.infoView->show();
    w.homeView->hide();
    refreshStateMenuItem();
    isCanKeyEvent_ = true;
    recordManager()->setRecordVideoType(quint64(tag));
    if (tag != VideoTypeAudioOnly) {
        w.captruesBox->clear();
        w.captruesBox->addItem(localizedStringForKey(QStringLiteral("SelectCaptrue")));
    }
    selectQuietly(w.chooseViewItemBox, tag + 1);
    areaChangeAction();
}

void AppDelegate::areaChangeAction()
{
    HomeMainWindow &w = *window_;
    TNRecordManager &manager = *recordManager();
    generateMemoryInfo();
    const int mode = std::max(0, w.chooseViewItemBox->currentIndex() - 1);
    manager.setRecordVideoType(quint64(mode));
    const bool audioOnly = mode == VideoTypeAudioOnly;
    const bool camera = mode == VideoTypeCamera;

    w.audioSetsView->show();
    w.voiceWaveView->setVisible(audioOnly);
    const QString zeroSize =
        QString::asprintf("%.2f MB / %s", 0.0, qUtf8Printable(systemFreeSpace()));
    w.audioprogressLabel->setText(QStringLiteral("00:00:00"));
    w.audioFileSizeLabel->setText(zeroSize);
    w.recordFileSizelabel->setText(zeroSize);

    const QList<ScreenInfo> screens = platform_.screens->screens();
    w.screenItempopBtn->clear();
    if (mode == VideoTypeFullScreen) {
        w.screenItempopBtn->addItem(QString());
        if (platform_.version->isAtLeast(10, 15)) {
            for (const ScreenInfo &screen : screens)
                w.screenItempopBtn->addItem(screen.localizedName);
        }
        selectQuietly(w.screenItempopBtn, 1);
        w.screenItemBoxContentView->setVisible(screens.size() >= 2);
    } else {
        w.screenItemBoxContentView->hide();
    }

    w.setHeightKeepingCentre(camera ? HomeMainWindow::kCameraHeight
                                    : HomeMainWindow::kSourceHeight);
    if (audioOnly && !w.voiceContentView) {
        w.voiceContentView =
            new SKVoiceWaveView(QRect(QPoint(0, 0), w.voiceWaveView->size()), w.voiceWaveView);
        w.voiceContentView->setAccessibleDescription(QStringLiteral("voiceContentView"));
        w.voiceContentView->show();
        setVoiceContentViewSize(w.voiceWaveView->size());
        publishLevelViews();
    }

    if (camera) {
        w.infoContentView->hide();
        w.recordBtn->hide();
        w.captrueInputView->show();
        w.captruesBox->clear();
        w.captruesBox->addItem(localizedStringForKey(QStringLiteral("SelectCaptrue")));
        const QStringList cameras =
            checkCapture(false) ? platform_.cameraInput->devices() : QStringList();
        w.captruesBox->addItems(cameras);
        if (!cameras.isEmpty()) {
            manager.setSelectedVideoDevice(cameras.first());
            selectQuietly(w.captruesBox, 1);
            manager.captrueVideoInputEnable(true);
        } else {
            selectQuietly(w.captruesBox, 0);
            manager.captrueVideoInputEnable(false);
        }
    } else {
        if (platform_.cameraInput->devices().isEmpty())
            manager.setSelectedVideoDevice(QString());
        w.captrueContentVideoView->clear();
        manager.captrueVideoInputEnable(isCaptrue());
        w.captrueInputView->hide();
        w.infoContentView->show();
        w.recordBtn->show();
        w.videoSetsView->setVisible(!audioOnly);
        w.audioExtensionView->setVisible(audioOnly);
    }

    // Arms the sound path for the mode.
    audioChangeAction(w.audioItemBox->currentIndex());
    w.infoDocementView->setVisible(!audioOnly);
    w.onlyAudioStrip->setVisible(audioOnly);
    w.audioprogressLabel->hide();
    w.audioFileSizeLabel->hide();
    w.startSetsBtn->move(w.width() - (camera ? 25 : 35), w.startSetsBtn->y());
}

void AppDelegate::screenItemChange()
{
    // The choice is read when the recording starts.
}

void AppDelegate::frameChangeAction()
{
    framItemIndex_ = std::max(0, window_->frameItemBox->currentIndex() - 1);
    platform_.defaults->setInteger(framItemIndex_.load(), QString::fromLatin1(Keys::FramItemIndex));
}

void AppDelegate::fpsChangeAction()
{
    QComboBox *box = window_->fpstemBox;
    setFps(fpsFromTitle(box->currentText()));
    fpsItemIndex_ = std::max(0, box->currentIndex() - 1);
    platform_.defaults->setInteger(fpsItemIndex_, QString::fromLatin1(Keys::FpsItemIndex));
}

void AppDelegate::captrueChangeAction()
{
    HomeMainWindow &w = *window_;
    TNRecordManager &manager = *recordManager();
    const bool on = w.captrueItemBox->currentIndex() == 1;
    if (on && platform_.cameraInput->devices().isEmpty()) {
        platform_.alerts->showModleMessage(
            localizedStringForKey(QStringLiteral("Alert_Camera_Message")),
            localizedStringForKey(QStringLiteral("Alert_Title")));
        selectQuietly(w.captrueItemBox, 2);
        return;
    }
    setIsCaptrue(on);
    HomeMainWindow::setButtonImages(w.captrueIm,
                                    on ? QStringLiteral("btnMainRec_Camera_Normal")
                                       : QStringLiteral("btnMainRec_NoCamera_Normal"),
                                    on ? QStringLiteral("btnMainRec_Camera_Normal")
                                       : QStringLiteral("btnMainRec_NoCamera_Normal"));
    manager.captrueVideoInputEnable(on);
}

void AppDelegate::audioExpChangeAction()
{
    setAudioExtensionIndex(std::max(0, window_->audioExtensionBox->currentIndex() - 1));
    platform_.defaults->setInteger(audioExtensionIndex(),
                                   QString::fromLatin1(Keys::AudioTypeIndex));
}

void AppDelegate::backHomeAction()
{
    HomeMainWindow &w = *window_;
    TNRecordManager &manager = *recordManager();
    manager.captrueVideoInputEnable(false);
    manager.captrueScreenInputEnable(false);
    manager.captrueAudioInputEnable(false);
    if (platform_.cameraInput->devices().isEmpty())
        manager.setSelectedVideoDevice(QString());
    w.captrueContentVideoView->clear();
    w.infoView->hide();
    w.captrueInputView->hide();
    w.homeView->show();
    w.setHeightKeepingCentre(HomeMainWindow::kHomeHeight);
    refreshStateMenuItem();
}

int AppDelegate::screenItemIndex() const
{
    return window_ ? window_->screenItempopBtn->currentIndex() : 0;
}

int AppDelegate::screenItemCount() const
{
    return window_ ? window_->screenItempopBtn->count() : 0;
}

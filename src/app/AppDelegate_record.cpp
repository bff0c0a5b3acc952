// The record flow: the one toggle, its three roads, pause, the tick and the stop sequence.
#include "AppDelegate.h"

#include "Alerts.h"
#include "EncodeManager.h"
#include "HomeMainWindow.h"
#include "Localization.h"
#include "Log.h"
#include "MainThreadCall.h"
#include "RecordRules.h"
#include "RecordingList.h"
#include "SKVoiceWaveView.h"
#include "ScreenCatalog.h"
#include "SettingsKeys.h"
#include "SoundPlayer.h"
#include "StatusItem.h"
#include "TNButton.h"
#include "UserDefaults.h"

#include <QAction>
#include <QBuffer>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QMenuBar>
#include <QSaveFile>
#include <QScreen>

using capstan::NSLog;
using Localization::localizedStringForKey;

namespace {
const QString kStartImage = QStringLiteral("btnStartRecrord_Normal");
const QString kStartImageOn = QStringLiteral("btnStartRecrord_On");
const QString kStopImage = QStringLiteral("btnStopRecord_Normal");
const QString kStopImageOn = QStringLiteral("btnStopRecord_On");
const QString kPauseImage = QStringLiteral("btnPauseRecord_Normal");
const QString kPauseImageOn = QStringLiteral("btnPauseRecord_On");
const QString kContinueImage = QStringLiteral("btnContinueRecord_Normal");
const QString kContinueImageOn = QStringLiteral("btnContinueRecord_On");
} // namespace

void AppDelegate::connectWindowActions()
{
    HomeMainWindow &w = *window_;
    for (TNButton *home : w.homeButtons)
        connect(home, &TNButton::clicked, this,
                [this, home] { fullScreenClicked(int(home->index())); });
    connect(w.backhomeBtn, &TNButton::clicked, this, &AppDelegate::backHomeAction);
    connect(w.recordBtn, &TNButton::clicked, this, &AppDelegate::recordScreenClicked);
    connect(w.captrueStartBtn, &TNButton::clicked, this, &AppDelegate::recordScreenClicked);
    connect(w.captureRecordStopBtn, &TNButton::clicked, this, &AppDelegate::recordScreenClicked);
    for (TNButton *pause : {w.pauseOrReume, w.resumeAudioBtn, w.captruePauseOrResumeBtn})
        connect(pause, &TNButton::clicked, this, &AppDelegate::pauseOrResumeAction);
    connect(w.fileListBtn, &TNButton::clicked, this, &AppDelegate::enterFileListAction);
    connect(w.timeSetsBtn, &TNButton::clicked, this, &AppDelegate::timeSetsAction);
    connect(w.splitSetsBtn, &TNButton::clicked, this, &AppDelegate::autoSplitSetsAction);
    connectScreenshotMenu();
    connect(w.startSetsBtn, &TNButton::clicked, this, &AppDelegate::startSetsItemAction);
    connect(w.pencilBtn, &TNButton::clicked, this, &AppDelegate::showDoodleToolAction);
    connect(w.mainMenu, &QMenuBar::triggered, this,
            [this](QAction *item) { showHelp(item->data().toInt()); });
    const auto activated = QOverload<int>::of(&QComboBox::activated);
    connect(w.chooseViewItemBox, activated, this, [this] { areaChangeAction(); });
    connect(w.screenItempopBtn, activated, this, [this] { screenItemChange(); });
    connect(w.frameItemBox, activated, this, [this] { frameChangeAction(); });
    connect(w.fpstemBox, activated, this, [this] { fpsChangeAction(); });
    connect(w.captrueItemBox, activated, this, [this] { captrueChangeAction(); });
    connect(w.audioExtensionBox, activated, this, [this] { audioExpChangeAction(); });
    for (QComboBox *box : {w.audioItemBox, w.onlyAudio_AudioTypePopBtn}) {
        connect(box, activated, this, [this, box](int index) {
            audioChangeAction(index);
            // Both sound pop-ups show the one choice (a missing microphone puts it back).
            for (QComboBox *other : {window_->audioItemBox, window_->onlyAudio_AudioTypePopBtn}) {
                const QSignalBlocker blocker(other);
                other->setCurrentIndex(audioItemIndex());
            }
        });
    }
    connect(w.systemAudioBox, activated, this, [this] {
        systemAudioBoxChange(window_->systemAudioBox->currentIndex(),
                             window_->micphoneBox->currentIndex());
    });
    connect(w.micphoneBox, activated, this, [this] {
        micphoneBoxChange(window_->systemAudioBox->currentIndex(),
                          window_->micphoneBox->currentIndex());
    });
    // The image buttons open their pop-ups, unless a recording runs (the camera's always).
    const auto opens = [this](TNButton *image, QComboBox *box, bool guarded) {
        connect(image, &TNButton::clicked, this, [this, box, guarded] {
            if (!guarded || !encodeManager().isWorking())
                box->showPopup();
        });
    };
    opens(w.framIm, w.frameItemBox, true);
    opens(w.fpsIm, w.fpstemBox, true);
    opens(w.audioIm, w.audioItemBox, true);
    opens(w.onlyAudio_AudioTypeIm, w.onlyAudio_AudioTypePopBtn, true);
    opens(w.captrueIm, w.captrueItemBox, false);
}

void AppDelegate::recordScreenClicked()
{
    // Started this way a recording has no countdown, whatever the setting says.
    autoStop_Duration_ = 0.0;
    isShowReverseTime_ = false;
    recordAfterScreenClicked();
}

bool AppDelegate::createOutputFolder()
{
    const QString folder = QFileInfo(createoutputPath(true)).absolutePath();
    if (QFileInfo(folder).isDir() && QFileInfo(folder).isWritable())
        return true;
    platform_.alerts->showModleMessage(
        localizedStringForKey(QStringLiteral("Alert_OutputFolder_Message")).arg(folder),
        localizedStringForKey(QStringLiteral("Alert_Title")));
    return false;
}

void AppDelegate::recordAfterScreenClicked()
{
    TNRecordManager &manager = *recordManager();
    generateMemoryInfo();
    isAutoStop_ = platform_.defaults->boolForKey(QString::fromLatin1(Keys::IsAutoStop));
    if (manager.status() != RecordStatusIdle) {
        stopSequence();
        return;
    }
    // Nothing starts where the file could not be written.
    if (!createOutputFolder())
        return;
    fileDuration_ = 0;
    fileSize_ = 0;
    recordProgressNum_ = -1;
    window_->screenItempopBtn->setEnabled(false);
    switch (manager.recordVideoType()) {
    case VideoTypeAudioOnly:
        if (checkCaptureAudio()) {
            recordAudio();
            window_->resumeAudioBtn->show();
        } else {
            platform_.permissions->requestAccessForMediaType(MediaType::Audio, nullptr);
        }
        return;
    case VideoTypeCamera:
        if (manager.selectedVideoDevice().isEmpty() || platform_.cameraInput->devices().isEmpty()) {
            platform_.alerts->showModleMessage(
                localizedStringForKey(QStringLiteral("Alert_Camera_Message")),
                localizedStringForKey(QStringLiteral("Alert_Title")));
            window_->screenItempopBtn->setEnabled(true);
            return;
        }
        if (checkCapture(true))
            recordVideo();
        return;
    default:
        manager.startRecordScreen();
        return;
    }
}

void AppDelegate::recordVideo()
{
    setOutputPath(createoutputPath(true));
    recordManager()->startRecording();
    switchControlsToRecording(true, false);
}

void AppDelegate::recordAudio()
{
    setOutputPath(createoutputPath(false));
    recordManager()->startRecording();
    switchControlsToRecording(false, true);
}

void AppDelegate::showRecordingControls()
{
    switchControlsToRecording(false, false);
}

void AppDelegate::disableSourceControls()
{
    HomeMainWindow &w = *window_;
    for (QWidget *control :
         std::initializer_list<QWidget *>{w.backhomeBtn, w.chooseViewItemBox, w.frameItemBox,
                                          w.fpstemBox, w.captruesBox, w.audioItemBox})
        control->setEnabled(false);
}

void AppDelegate::enableSourceChoice()
{
    window_->chooseViewItemBox->setEnabled(true);
    window_->backhomeBtn->setEnabled(true);
    window_->screenItempopBtn->setEnabled(true);
}

void AppDelegate::switchControlsToRecording(bool cameraRoad, bool audioRoad)
{
    HomeMainWindow &w = *window_;
    const bool audioOnly = recordManager()->recordVideoType() == VideoTypeAudioOnly;
    const bool overlayRoad = !cameraRoad && !audioRoad;
    w.backhomeBtn->setEnabled(false);
    w.recordingTimeBgView->setVisible(cameraRoad || !audioOnly);
    if (audioRoad && audioOnly)
        w.onlyAudioStrip->hide();
    if (overlayRoad)
        w.onlyAudioStrip->hide();
    if (!cameraRoad && audioOnly) {
        w.onlyAudioStrip->show();
        w.onlyAudio_AudioTypePopBtn->setEnabled(false);
        w.audioExtensionBox->setEnabled(false);
        w.audioprogressLabel->show();
        w.audioFileSizeLabel->show();
    }
    w.framParent->hide();
    w.fpsParent->hide();
    w.captrueParent->show();
    w.pauseOrReume->setVisible(!audioOnly);
    w.audioParent->hide();
    if (!overlayRoad) {
        w.captrueIm->hide();
        w.captrueItemBox->hide();
    }
    w.audioItemBox->setEnabled(false);
    w.audioExtensionBox->setEnabled(false);
    if (overlayRoad)
        w.captrueItemBox->setEnabled(false);
    if (cameraRoad)
        w.captruesBox->setEnabled(false);
    HomeMainWindow::setButtonImages(w.recordBtn, kStopImage, kStopImageOn);
    writeRecordingJournal();
    if (cameraRoad) {
        HomeMainWindow::setButtonImages(w.captureRecordStopBtn, kStopImage, kStopImageOn);
        HomeMainWindow::setButtonImages(w.captrueStartBtn, kStopImage, kStopImageOn);
        w.captrueStartBtn->hide();
        w.captrueRecordView->show();
    }
}

void AppDelegate::pauseOrResumeAction()
{
    TNRecordManager &manager = *recordManager();
    HomeMainWindow &w = *window_;
    const bool resume = manager.status() == RecordStatusPaused;
    if (resume)
        manager.resumeRecording();
    else
        manager.pauseRecording();
    for (TNButton *button : {w.pauseOrReume, w.resumeAudioBtn, w.captruePauseOrResumeBtn}) {
        if (resume)
            HomeMainWindow::setButtonImages(button, kPauseImage, kPauseImageOn);
        else
            HomeMainWindow::setButtonImages(button, kContinueImage, kContinueImageOn);
    }
    w.resumeAudioBtn->setAccessibleDescription(QStringLiteral("resumeAudioBtn"));
    // The menu's pause entry follows the state.
    refreshStateMenuItem();
}

void AppDelegate::recordScreenTimeDuration(int32_t seconds)
{
    // Called for every sample on the capture thread: within a second it costs one size
    // query and nothing else.
    if (seconds < 0)
        return;
    if (seconds != 0) {
        fileDuration_ = float(seconds);
        fileSize_ = float(encodeManager().filesize());
    }
    if (recordProgressNum_.exchange(seconds) == seconds)
        return;
    tickSeconds_ = seconds;
    tickCall_->post();
}

void AppDelegate::showTick(int seconds)
{
    HomeMainWindow &w = *window_;
    const QString text =
        QString::asprintf("%02lu:%02lu:%02lu", (unsigned long)seconds / 3600 % 60,
                          (unsigned long)seconds / 60 % 60, (unsigned long)seconds % 60);
    const double size = fileSize_.load() / 1000000.0;
    const QString sizeText =
        QString::asprintf("%.2f MB / %s", size, qUtf8Printable(systemFreeSpace()));
    if (recordManager()->recordVideoType() != VideoTypeAudioOnly) {
        w.recordCurrentTimelabel->setText(text);
        w.captrueRecordTimeLabel->setText(text);
        if (statusItem_)
            statusItem_->setBadgeLabel(text);
        w.recordFileSizelabel->setText(sizeText);
        w.captrueFilesizeLabel->setText(sizeText);
    } else {
        w.audioprogressLabel->setText(text);
        w.audioFileSizeLabel->setText(sizeText);
        if (w.voiceContentView)
            w.voiceContentView->recordCurrentTimelabel()->setText(text);
    }
    if (relativeStopFires(autoStop_Duration_, autoStop_withTime_, getNowTimeTimestamp(),
                          autoStop_StartTime_)) {
        setRecording(false);
        recordScreenClicked();
        return;
    }
    const FixedStopRule rule{isAutoStop_, isRecordEndSizeType_, recordEndTimeDuration_,
                             recordEndFileSize_};
    if (fixedRuleFires(rule, recording(), seconds, size)) {
        autoStop_withTime_ = everyTime_;
        setRecording(false);
        recordScreenClicked();
    }
}

void AppDelegate::stopSequence()
{
    HomeMainWindow &w = *window_;
    TNRecordManager &manager = *recordManager();
    const quint64 type = manager.recordVideoType();
    const bool audioOnly = type == VideoTypeAudioOnly;
    const int screens = int(platform_.screens->screens().size());
    if (type == VideoTypeFullScreen && screens > 0)
        w.screenItemBoxContentView->setVisible(screens >= 2);
    w.screenItempopBtn->setEnabled(true);
    w.backhomeBtn->setEnabled(true);
    w.chooseViewItemBox->setEnabled(true);
    w.captrueRecordView->hide();
    w.captrueStartBtn->show();

    // The list is written before the engine stops, with the last tick's figures.
    addRecordToList(plistPath(),
                    RecordingRecord::movie(outputPath(), fileDuration_.load(), fileSize_.load(),
                                           dateToString(QDateTime::currentDateTime()), audioOnly));
    removeRecordingJournal();
    manager.stopRecording();
    for (TNButton *button : {w.recordBtn, w.captureRecordStopBtn, w.captrueStartBtn})
        HomeMainWindow::setButtonImages(button, kStartImage, kStartImageOn);
    w.backhomeBtn->setEnabled(true);
    if (type == VideoTypeFullScreen || type == VideoTypeCustomArea)
        w.screenItemBoxContentView->setVisible(type == VideoTypeFullScreen && screens >= 2);
    if (isAutoStopOnce_) {
        platform_.defaults->setInteger(0, QString::fromLatin1(Keys::IsAutoStop));
        isAutoStop_ = false;
    }
    if (isAutoSplitOnce_)
        platform_.defaults->setInteger(0, QString::fromLatin1(Keys::SplitType));
    w.captrueParent->show();
    w.captrueIm->show();
    w.captrueItemBox->show();
    if (audioOnly) {
        w.onlyAudioStrip->show();
        w.audioprogressLabel->hide();
        w.audioFileSizeLabel->hide();
    } else {
        w.recordingTimeBgView->hide();
    }
    w.framParent->show();
    w.fpsParent->show();
    w.pauseOrReume->hide();
    w.audioParent->show();
    for (QWidget *control : std::initializer_list<QWidget *>{
             w.frameItemBox, w.fpstemBox, w.captrueItemBox, w.audioItemBox, w.audioExtensionBox,
             w.captruesBox, w.onlyAudio_AudioTypePopBtn})
        control->setEnabled(true);
    const QString zero = QString::asprintf("%.2f MB / %s", 0.0, qUtf8Printable(systemFreeSpace()));
    w.recordCurrentTimelabel->setText(QStringLiteral("00:00:00"));
    w.captrueRecordTimeLabel->setText(QStringLiteral("00:00:00"));
    if (audioOnly) {
        w.resumeAudioBtn->hide();
        w.audioprogressLabel->setText(QStringLiteral("00:00:00"));
        w.recordFileSizelabel->setText(zero);
        w.audioFileSizeLabel->setText(zero);
    } else {
        w.captrueFilesizeLabel->setText(zero);
    }
    if (manager.screen())
        manager.removeRecordWindowController(*manager.screen());
    if (statusItem_)
        statusItem_->setBadgeLabel(QString());
    enterFileListAction();
    if (finshpopIndex_ == 2) {
        QCoreApplication::exit(0);
        return;
    }
    if (!everyTime_)
        finshpopIndex_ = 1;
}

QImage AppDelegate::getmainDesktopImage() const
{
    QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->grabWindow(0).toImage() : QImage();
}

QString AppDelegate::saveImage(const QImage &image)
{
    const QString folder = QFileInfo(createoutputPath(true)).absolutePath();
    const QString path = QDir(folder).filePath(getFileNameForNowTime() + QStringLiteral(".png"));
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QSaveFile file(path);
    if (image.isNull() || !image.save(&buffer, "PNG") || !file.open(QIODevice::WriteOnly) ||
        file.write(data) != data.size() || !file.commit()) {
        NSLog(lcApp, "screenshot not saved: %s", qUtf8Printable(path));
        return path;
    }
    addRecordToList(plistPath(),
                    RecordingRecord::screenshot(path, quint64(data.size()),
                                                dateToString(QDateTime::currentDateTime())));
    return path;
}

void AppDelegate::screenshort()
{
    if (platform_.sounds)
        platform_.sounds->play(QStringLiteral("Capture"));
    saveImage(getmainDesktopImage());
}

void AppDelegate::OnorOffCaptrueCamera()
{
    QComboBox *box = window_->captrueItemBox;
    const QSignalBlocker blocker(box);
    box->setCurrentIndex(box->currentIndex() == 1 ? 2 : 1);
    captrueChangeAction();
}

void AppDelegate::showDoodleToolAction()
{
    NSLog(lcApp, "drawing tools are not available yet");
}

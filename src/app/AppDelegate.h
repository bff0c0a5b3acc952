#pragma once
// The application controller: owner of the settings mirrors, the fixed value tables,
// the output paths and the one recording manager. sharedInstance() is the program's
// single point of access; tests build their own with create().
#include "AutoSplitSetsWindow.h"
#include "AutoTimeSetWindow.h"
#include "Permissions.h"
#include "Platform.h"
#include "RecordScreenHost.h"
#include "RecordSessionHost.h"
#include "TNClipScreenManager.h"
#include "TNRecordManager.h"

#include <QColor>
#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <atomic>
#include <memory>
#include <mutex>

class EncodeManager;
class FileListWindowController;
class HomeMainWindow;
class MainThreadCall;
class NSVertProgressView;
class SKVoiceWaveView;
class StatusItem;
class Workspace;

// The watermark text's font: an empty name stands for the system font.
struct WatermarkFont {
    QString fontName;
    double pointSize = 20;
};

class AppDelegate : public QObject,
                    public RecordSessionHost,
                    public RecordScreenHost,
                    public TNRecordAudioManagerDelegate {
    Q_OBJECT
public:
    static inline const QString CFBundleName = QStringLiteral("Capstan");
    static inline const QString CFBundleIdentifier = QStringLiteral("org.capstan.Capstan");

    // The first call makes the instance (and establishes the settings) exactly once,
    // with the platform given to installSharedPlatform, or the Linux adapters.
    static AppDelegate *sharedInstance();
    static void installSharedPlatform(const Platform &platform);
    // Establishes the settings in the store and builds an instance on them.
    static std::unique_ptr<AppDelegate> create(const Platform &platform);
    ~AppDelegate() override;

    const Platform &platform() const { return platform_; }
    TNRecordManager *recordManager();
    EncodeManager &encodeManager();

    // Output paths and disk space.
    QString createoutputPath(bool isVideo) override;
    QString getFileNameForNowTime() const;
    static QString dateToString(const QDateTime &date);
    QString plistPath() const;
    double getNowTimeTimestamp() const;
    static QString timeFromString(int seconds);
    static QString timeFrom_String(int seconds);
    void generateMemoryInfo();
    QString systemFreeSpace() const override;
    QString generateNumberFromValue(quint64 bytes) const;
    // The title the audio type pop-up shows.
    QString audioExtensionBoxTitle() const;

    // The microphone check of the start: a known microphone, the loopback device, or
    // a device whose name says microphone.
    bool hasMicrophone() const;

    // RecordSessionHost
    void setRecording(bool recording) override { recording_ = recording; }
    bool recording() const { return recording_; }
    QString outputPath() const override { return outputPath_; }
    void setOutputPath(const QString &path) override { outputPath_ = path; }
    bool checkCaptureAudio() override;
    bool checkCapture(bool showAlert) override;
    bool isCaptrue() const override { return isCaptrue_; }
    void setIsCaptrue(bool on) { isCaptrue_ = on; }
    uint32_t selectedWindowNumber() const override { return selectedWindowNumber_; }
    void setSelectedWindowNumber(uint32_t number) override { selectedWindowNumber_ = number; }
    QString selectedWindowName() const override { return selectedWindowName_; }
    void setSelectedWindowName(const QString &name) override { selectedWindowName_ = name; }
    void refreshStateMenuItem() override;
    void setTimeSetsBtnEnabled(bool enabled) override { timeSetsBtnEnabled_ = enabled; }
    bool timeSetsBtnEnabled() const { return timeSetsBtnEnabled_; }
    RecordOverlayWindow *recordWC() override { return recordWC_; }
    void setRecordWC(RecordOverlayWindow *overlay) override { recordWC_ = overlay; }
    std::unique_ptr<RecordScreenWindowController>
    makeRecordScreenWindowController(const ScreenInfo &screen) override;
    void setRecordCurrentTimeLabel(const QString &text) override;
    QString recordCurrentTimeLabel() const { return recordCurrentTimeLabel_; }
    void setRecordFileSizeLabel(const QString &text) override;
    QString recordFileSizeLabel() const { return recordFileSizeLabel_; }
    float fps() const override { return fps_.load(); }
    void setFps(float fps) { fps_ = fps; }
    qint64 framItemIndex() const override { return framItemIndex_.load(); }
    // "SplitType", read when a recording starts.
    qint64 splitType() const override;
    FrameDecorations frameDecorations() const override;
    void showCameraImage(const QImage &image, bool recordingView) override;
    // The latest camera pictures, for the views that show them.
    QImage floatingCameraImage() const { return floatingCameraImage_; }
    QImage recordingCameraImage() const { return recordingCameraImage_; }

    // The main window (AppDelegate_window.cpp): built once, then driven by the actions.
    void setWindow(HomeMainWindow *window);
    HomeMainWindow *homeMainWindow() const { return window_; }
    void applicationDidFinishLaunching();
    void showHomeMainWindow();
    bool applicationShouldHandleReopen();
    // A close of the main window: false hides it instead.
    bool homeMainWindowShouldClose();
    // Opens a file with the desktop's default application, and shows one in its folder.
    void setWorkspace(Workspace *workspace) { workspace_ = workspace; }
    void enterFileListAction();
    FileListWindowController *fileListWindowController() const { return fileList_; }
    StatusItem *statusItem() const { return statusItem_; }

    // Source selection (AppDelegate_source.cpp).
    void fullScreenClicked(int tag);
    void areaChangeAction();
    void screenItemChange();
    void frameChangeAction();
    void fpsChangeAction();
    void captrueChangeAction();
    void audioExpChangeAction();
    void backHomeAction();
    bool isCanKeyEvent() const { return isCanKeyEvent_; }
    int screenItemIndex() const override;
    int screenItemCount() const override;

    // The record flow (AppDelegate_record.cpp).
    void recordAfterScreenClicked();
    void recordVideo();
    void recordAudio();
    void pauseOrResumeAction();
    void recordScreenTimeDuration(int32_t seconds) override;
    void screenshort();
    // A still clip of a window or a region on any screen (AppDelegate_clip.cpp): saved like a
    // screenshot and copied to the clipboard.
    void clipScreenArea();
    TNClipScreenManager &clipScreenManager();
    QImage getmainDesktopImage() const;
    QString saveImage(const QImage &image);
    void OnorOffCaptrueCamera();
    void showDoodleToolAction();
    // The start and stop menus of the timing button (AppDelegate_timing.cpp).
    void startSetsItemAction();
    void addStartSetsMenu();
    void addStopSetsMenu();
    void startSetsItemChangeAction(int index);
    void countDownAction(const QString &title);
    void autoStopSetsAction(const QString &title);
    // The rule windows, each run modally; OK applies and stores what was chosen.
    void timeSetsAction();
    void autoSplitSetsAction();
    void applyAutoStopRule(const AutoTimeSetWindow::Result &rule);
    void applySplitRule(const AutoSplitSetsWindow::Result &rule);
    bool isAutoStop() const { return isAutoStop_; }
    bool isAutoStopOnce() const { return isAutoStopOnce_; }
    bool isAutoSplitOnce() const { return isAutoSplitOnce_; }
    qint64 startSetsItemIndex() const { return startSetsItemIndex_; }
    double autoStop_Duration() const { return autoStop_Duration_; }
    void disableSourceControls() override;
    void enableSourceChoice() override;
    void showRecordingControls() override;
    float fileDuration() const { return fileDuration_.load(); }
    float fileSize() const { return fileSize_.load(); }

    // The language (AppDelegate_language.cpp): the menu bar's items, a language chosen and
    // every text of the main window looked up again.
    void showHelp(int tag);
    void setLange(qint64 language);
    void changeLanguage();

    // A recording cut short (AppDelegate_recovery.cpp): the journal a running recording keeps
    // beside the list, and what the next start makes of one left behind.
    QString journalPath() const;
    void rememberSystemDefaultDevices();
    void writeRecordingJournal();
    void removeRecordingJournal();
    void recoverInterruptedRecording();

    // The end of a run: the sound session stops and the two aggregates go.
    void applicationWillTerminate();
    bool applicationShouldTerminateAfterLastWindowClosed();

    // Sound devices as last stored, and the sound choices (AppDelegate_audio.cpp).
    qsizetype inputDevicesCount() const override { return inputDevices_.size(); }
    qsizetype outputDevicesCount() const override { return outputDevices_.size(); }
    const QList<EZAudioDevice> &inputDevices() const { return inputDevices_; }
    const QList<EZAudioDevice> &outputDevices() const { return outputDevices_; }
    void storeDeviceLists(const QList<EZAudioDevice> &inputs,
                          const QList<EZAudioDevice> &outputs) override;
    void recordScreenClicked() override;
    void showMicrophoneMissing() override;
    void selectSystemAudioItem() override;
    // The choice by index of the sound pop-up (0 blank, 1 system, 2 microphone, 3 both,
    // 4 none).
    void audioChangeAction(int index);
    // The two on/off pop-ups of camera mode (1 on, 2 off); each action has its own table.
    void systemAudioBoxChange(int systemIndex, int micphoneIndex);
    void micphoneBoxChange(int systemIndex, int micphoneIndex);
    int audioItemIndex() const { return audioItemIndex_; }
    QString audioIm() const { return audioIm_; }

    // The level views; the bars and the waveform come with the main window.
    QSizeF voiceContentViewSize() const override;
    void setVoiceContentViewSize(const QSizeF &size);
    bool voiceContentViewIsLocked() const override { return voiceContentViewLocked_; }
    void setVoiceContentViewLocked(bool locked) { voiceContentViewLocked_ = locked; }
    // Fed from the audio thread: the views are published through atomics once made.
    void appendWaveformValue(double value) override;
    void updateSampleData() override;
    void setProgress(LevelBar bar, float value) override;
    float progress(LevelBar bar) const { return progress_[int(bar)]; }

    // Watermarks.
    bool isTimeTextWatermark() const;
    void setIsTimeTextWatermark(bool on);
    QImage watermarkImage() const;
    void setWatermarkImage(QImage image);
    // The text in the watermark's font, colour and alpha.
    QImage saveImageWithText(const QString &text) const;
    // The installed font families but "Helvetica".
    static QStringList getFontNameArray();

    // Fixed tables.
    QStringList frameTitles() const;
    const QStringList &fpsTitles() const { return fpsTitles_; }
    const QStringList &videoTypes() const { return videoTypes_; }
    const QStringList &audioExtensions() const { return audioExtensions_; }
    const QStringList &timeFramStyles() const { return timeFramStyles_; }
    // The first blank-separated word of a frame rate title, as a float.
    static float fpsFromTitle(const QString &title);

    // Settings mirrors.
    double recordEndTimeDuration() const { return recordEndTimeDuration_; }
    double recordEndFileSize() const { return recordEndFileSize_; }
    bool isRecordEndSizeType() const { return isRecordEndSizeType_; }
    bool everyTime() const { return everyTime_; }
    qint64 finshpopIndex() const { return finshpopIndex_; }
    bool autoStop_withTime() const { return autoStop_withTime_; }
    qint64 fpsItemIndex() const { return fpsItemIndex_; }
    qint64 videoTypeBoxIndex() const { return videoTypeBoxIndex_; }
    void setVideoTypeBoxIndex(qint64 index) { videoTypeBoxIndex_ = index; }
    qint64 audioExtensionIndex() const { return audioExtensionIndex_; }
    void setAudioExtensionIndex(qint64 index) { audioExtensionIndex_ = index; }
    bool isMouseHight() const;
    void setIsMouseHight(bool on);
    bool isShowMouse() const;
    void setIsShowMouse(bool on);
    bool isMouseClickEffect() const;
    void setIsMouseClickEffect(bool on);
    bool isShowReverseTime() const override { return isShowReverseTime_; }
    bool isCaptrueMirror() const { return isCaptrueMirror_; }
    const WatermarkFont &textWatermarkFont() const { return textWatermarkFont_; }
    const QColor &textWatermarkColor() const { return textWatermarkColor_; }
    qint64 timeFramStyleIndex() const { return timeFramStyleIndex_; }
    float watermarkAlpha() const { return watermarkAlpha_; }
    qint64 isWatermarkShadow() const { return isWatermarkShadow_; }
    const QString &watermarkTextString() const { return watermarkTextString_; }
    quint64 watermarkType() const;
    void setWatermarkType(quint64 type);
    // "Watermark_center_x", "Watermark_center_y", "Watermark_scale": stored and mirrored
    // for the compositor.
    WatermarkPlacement watermarkPlacement() const;
    void setWatermarkPlacement(const WatermarkPlacement &placement);
    qint64 endTimeType() const { return endTimeType_; }
    bool isResetEventMonitor() const { return isResetEventMonitor_; }
    double freeSpace() const { return freeSpace_; }
    double totalSpace() const { return totalSpace_; }

signals:
    // After a language was chosen; windows also receive Qt's LanguageChange event.
    void ChangeLanguageNotification();
    void stateMenuItemsNeedRefresh();
    void recordLabelsChanged();
    void cameraImageChanged(bool recordingView);

private:
    explicit AppDelegate(const Platform &platform);
    static void establishDefaults(UserDefaults &defaults);
    void loadSettings();
    bool permissionGranted(MediaType type, bool showAlert, MediaType requestType);
    void applyBoxAudioType(quint64 type);
    void connectWindowActions();
    void fillPopups();
    // The pop-ups' texts in the current language, their choices kept.
    void localizePopups();
    void buildTimeFramStyles();
    void switchControlsToRecording(bool cameraRoad, bool audioRoad);
    void stopSequence();
    void showTick(int seconds);
    void publishLevelViews();
    bool createOutputFolder();

    void connectScreenshotMenu();

    Platform platform_;
    std::unique_ptr<TNRecordManager> recordManager_;
    std::unique_ptr<TNClipScreenManager> clipScreenManager_;

    HomeMainWindow *window_ = nullptr;
    StatusItem *statusItem_ = nullptr;
    FileListWindowController *fileList_ = nullptr;
    Workspace *workspace_ = nullptr;
    MainThreadCall *tickCall_ = nullptr;
    bool isCanKeyEvent_ = false;
    // Written by the tick on the capture thread, read for the labels and the list.
    std::atomic<float> fileDuration_{0};
    std::atomic<float> fileSize_{0};
    std::atomic<int> recordProgressNum_{-1};
    std::atomic<int> tickSeconds_{0};
    double autoStop_Duration_ = 0;
    qint64 startSetsItemIndex_ = 0;
    double autoStop_StartTime_ = 0;
    bool isAutoStop_ = false;
    bool isAutoStopOnce_ = false;
    bool isAutoSplitOnce_ = false;

    std::atomic<bool> recording_ = false;
    QString outputPath_;
    bool isCaptrue_ = false;
    uint32_t selectedWindowNumber_ = 0;
    QString selectedWindowName_;
    bool timeSetsBtnEnabled_ = true;
    RecordOverlayWindow *recordWC_ = nullptr;
    QString recordCurrentTimeLabel_;
    QString recordFileSizeLabel_;
    std::atomic<float> fps_{0};
    QList<EZAudioDevice> inputDevices_;
    QList<EZAudioDevice> outputDevices_;
    int audioItemIndex_ = 0;
    QString audioIm_;
    mutable std::mutex voiceMutex_; // the view's size and the waveform's values
    QSizeF voiceContentViewSize_;
    std::atomic<SKVoiceWaveView *> voiceView_{nullptr};
    std::atomic<NSVertProgressView *> progressViews_[3] = {nullptr, nullptr, nullptr};
    std::atomic<bool> voiceContentViewLocked_{false};
    std::atomic<float> progress_[3] = {0.0f, 0.0f, 0.0f};
    QImage floatingCameraImage_;
    QImage recordingCameraImage_;
    // Guards what the compositor reads on the capture thread: the pointer options and
    // the watermark fields below.
    mutable std::mutex decorationsMutex_;
    bool isTimeTextWatermark_ = false;
    QImage watermarkImage_;

    QStringList fpsTitles_;
    QStringList videoTypes_;
    QStringList audioExtensions_;
    QStringList timeFramStyles_;

    double recordEndTimeDuration_ = 0;
    double recordEndFileSize_ = 0;
    bool isRecordEndSizeType_ = false;
    bool everyTime_ = false;
    qint64 finshpopIndex_ = 0;
    bool autoStop_withTime_ = false;
    std::atomic<qint64> framItemIndex_{0};
    qint64 fpsItemIndex_ = 0;
    qint64 videoTypeBoxIndex_ = 0;
    qint64 audioExtensionIndex_ = 0;
    bool isMouseHight_ = false;
    bool isShowMouse_ = false;
    bool isMouseClickEffect_ = false;
    bool isShowReverseTime_ = false;
    bool isCaptrueMirror_ = false;
    WatermarkFont textWatermarkFont_;
    QColor textWatermarkColor_;
    qint64 timeFramStyleIndex_ = 0;
    float watermarkAlpha_ = 0;
    qint64 isWatermarkShadow_ = 0;
    QString watermarkTextString_;
    quint64 watermarkType_ = 0;
    WatermarkPlacement watermarkPlacement_;
    qint64 endTimeType_ = 0;
    bool isResetEventMonitor_ = false;
    double freeSpace_ = 0;
    double totalSpace_ = 0;
    // The desktop's default sound devices before this run changed them.
    QString systemDefaultInputUID_;
    QString systemDefaultOutputUID_;
};

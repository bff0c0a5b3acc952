// The settings model: defaults at first run, the mirrors, the fixed tables.
#include "AppDelegate.h"

#include "AudioDeviceNames.h"
#include "EZAudioDevice.h"
#include "Localization.h"
#include "SettingsKeys.h"
#include "UserDefaults.h"

namespace {

struct Default {
    const char *key;
    QVariant value;
};

// The hot keys: code key, code, text key, text.
struct HotKeyDefault {
    const char *codeKey;
    int code;
    const char *textKey;
    const char *text;
};

const HotKeyDefault hotKeyDefaults[] = {
    {Keys::EventStartOrStop, 18, Keys::EventStartOrStopChar, "⌘ 1"},
    {Keys::EventResumeOrPause, 19, Keys::EventResumeOrPauseChar, "⌘ 2"},
    {Keys::EventOnOrOffCaptrue, 20, Keys::EventOnOrOffCaptrueChar, "⌘ 3"},
    {Keys::EventScreenshot, 21, Keys::EventScreenshotChar, "⌘ 4"},
    {Keys::EventShowDrawTool, 23, Keys::EventShowDrawToolChar, "⌘ 5"},
};

void writeHotKey(UserDefaults &defaults, const HotKeyDefault &hotKey)
{
    defaults.setObject(QString::fromUtf8(hotKey.text), hotKey.textKey);
    defaults.setInteger(hotKey.code, hotKey.codeKey);
}

// The first-run values after the hot keys, in the order they are written.
QList<Default> firstRunDefaults(const QString &watermarkText)
{
    return {
        {Keys::WatermarkColor, QVariantList{1, 0, 0}},
        {Keys::WatermarkAlpha, 1.0f},
        {Keys::WatermarkShadow, 0},
        {Keys::WatermarkScale, 1.0f},
        {Keys::WatermarkIsShow, 0},
        {Keys::WatermarkTextString, watermarkText},
        {Keys::TimeFramStyleIndex, 0},
        {Keys::IsShowMouse, true},
        {Keys::IsMouseClickEffect, true},
        {Keys::IsMouseHighlight, false},
        {Keys::IsShowReverseTime, true},
        {Keys::FramItemIndex, 1},
        {Keys::FpsItemIndex, 3},
        {Keys::VideoTypeIndex, 1},
        {Keys::AudioTypeIndex, 0},
        {Keys::RecordAudioType, 0u},
        {Keys::WatermarkType, 2u},
        {Keys::IsCaptrueMirrored, true},
        {Keys::Linewidth, 2.0},
    };
}

} // namespace

void AppDelegate::establishDefaults(UserDefaults &defaults)
{
    // The watermark text is reset at every start, before anything else.
    const QString watermarkText = Localization::localizedStringForKey(QStringLiteral("Meun_App"));
    defaults.setObject(watermarkText, Keys::WatermarkTextString);
    if (!defaults.boolForKey(Keys::IsFirstRun)) {
        defaults.setInteger(1, Keys::IsFirstRun);
        for (const HotKeyDefault &hotKey : hotKeyDefaults)
            writeHotKey(defaults, hotKey);
        for (const Default &entry : firstRunDefaults(watermarkText))
            defaults.setObject(entry.value, entry.key);
    }
    // Stores from before the fifth hot key existed gain it.
    if (!defaults.hasKey(Keys::EventShowDrawToolChar))
        writeHotKey(defaults, hotKeyDefaults[4]);
}

std::unique_ptr<AppDelegate> AppDelegate::create(const Platform &platform)
{
    establishDefaults(*platform.defaults);
    std::unique_ptr<AppDelegate> delegate(new AppDelegate(platform));
    delegate->loadSettings();
    // The base the device watch compares with.
    TNRecordManager &manager = *delegate->recordManager();
    delegate->storeDeviceLists(manager.inputDevices(), manager.outputDevices());
    return delegate;
}

void AppDelegate::loadSettings()
{
    // The compositor reads these mirrors from the capture thread.
    std::lock_guard lock(decorationsMutex_);
    const UserDefaults &d = *platform_.defaults;
    recordEndTimeDuration_ = double(d.integerForKey(Keys::AutoStopTime));
    if (recordEndTimeDuration_ == 0)
        recordEndTimeDuration_ = 600.0;
    recordEndFileSize_ = double(d.integerForKey(Keys::AutoStopFileSize));
    if (recordEndFileSize_ == 0)
        recordEndFileSize_ = 100.0;

    isRecordEndSizeType_ = d.boolForKey(Keys::AutoStopType);
    everyTime_ = d.boolForKey(Keys::AutoStopEveryTime);
    finshpopIndex_ = d.integerForKey(Keys::AutoStopFinshIndex);
    autoStop_withTime_ = everyTime_;
    if (finshpopIndex_ == 0)
        finshpopIndex_ = 1;

    TNRecordManager *manager = recordManager();
    manager->setRecordVideoType(VideoTypeFullScreen);
    manager->setRecordAudioType(quint64(d.integerForKey(Keys::RecordAudioType)));
    // Without a microphone, system sound for this run; the stored choice stays.
    if (manager->recordAudioType() == AudioTypeMicphone && !hasMicrophone())
        manager->setRecordAudioType(AudioTypeSystem);

    framItemIndex_ = d.integerForKey(Keys::FramItemIndex);
    fpsItemIndex_ = d.integerForKey(Keys::FpsItemIndex);
    videoTypeBoxIndex_ = d.integerForKey(Keys::VideoTypeIndex);
    isMouseHight_ = d.boolForKey(Keys::IsMouseHighlight);
    isShowMouse_ = d.boolForKey(Keys::IsShowMouse);
    isMouseClickEffect_ = d.boolForKey(Keys::IsMouseClickEffect);
    isShowReverseTime_ = d.boolForKey(Keys::IsShowReverseTime);

    // A stored time rule waits until the rule is confirmed again; a size rule keeps its limit.
    recordEndTimeDuration_ = 0.0;

    if (d.hasKey(Keys::WatermarkFontName))
        textWatermarkFont_ = {d.stringForKey(Keys::WatermarkFontName),
                              double(d.integerForKey(Keys::WatermarkPointSize))};
    else
        textWatermarkFont_ = {};
    // Blue is read from the green element: a colour reloaded at start loses its blue.
    const QVariantList rgb = d.arrayForKey(Keys::WatermarkColor);
    const double red = UserDefaults::numberFromVariant(rgb.value(0));
    const double green = UserDefaults::numberFromVariant(rgb.value(1));
    textWatermarkColor_ = QColor::fromRgbF(float(red), float(green), float(green), 1.0f);
    timeFramStyleIndex_ = d.integerForKey(Keys::TimeFramStyleIndex);
    watermarkAlpha_ = d.floatForKey(Keys::WatermarkAlpha);
    isWatermarkShadow_ = d.integerForKey(Keys::WatermarkIsShow);
    watermarkTextString_ = d.stringForKey(Keys::WatermarkTextString);
    watermarkType_ = quint64(d.integerForKey(Keys::WatermarkType));
    watermarkPlacement_ = {d.floatForKey(Keys::WatermarkCenterX),
                           d.floatForKey(Keys::WatermarkCenterY),
                           d.floatForKey(Keys::WatermarkScale)};
    endTimeType_ = 0;
    isResetEventMonitor_ = false;
    audioExtensionIndex_ = d.integerForKey(Keys::AudioTypeIndex);
    isCaptrueMirror_ = d.boolForKey(Keys::IsCaptrueMirrored);

    audioExtensions_ = {QStringLiteral(".mp3"), QStringLiteral(".wav"), QStringLiteral(".m4a")};
    videoTypes_ = {QStringLiteral(".mov"), QStringLiteral(".mp4"), QStringLiteral(".m4v"),
                   QStringLiteral(".flv"), QStringLiteral(".avi")};
    fpsTitles_ = {QStringLiteral("20 fps"), QStringLiteral("23.976 fps"), QStringLiteral("24 fps"),
                  QStringLiteral("25 fps"), QStringLiteral("29.97 fps"),  QStringLiteral("30 fps")};
    // The main window's frame rate pop-up sets it again when it is built.
    setFps(fpsFromTitle(fpsTitles_.value(int(fpsItemIndex_))));
    buildTimeFramStyles();
}

void AppDelegate::buildTimeFramStyles()
{
    // The Chinese styles are offered only while the program is not in English.
    const bool english = Localization::isEnglishLanguage(*platform_.defaults);
    timeFramStyles_ = {QStringLiteral("YYYY/MM/dd HH/mm/ss")};
    if (!english)
        timeFramStyles_.append(QStringLiteral("YYYY年MM月dd日 HH时mm分ss秒"));
    timeFramStyles_.append(QStringLiteral("YYYY-MM-dd HH:mm:ss"));
    timeFramStyles_.append(QStringLiteral("YYYY-MM-dd HH:mm"));
    if (!english)
        timeFramStyles_.append(QStringLiteral("YYYY年MM月dd日 HH时mm分"));
}

bool AppDelegate::hasMicrophone() const
{
    using namespace AudioDeviceNames;
    const QList<EZAudioDevice> inputs = EZAudioDevice::inputDevices(*platform_.audio);
    for (const EZAudioDevice &device : inputs)
        if (isFirstPassMicrophone(device.name()))
            return true;
    for (const EZAudioDevice &device : inputs)
        if (device.UID() == kLoopbackUID || isSecondPassMicrophone(device.name()))
            return true;
    return false;
}

QStringList AppDelegate::frameTitles() const
{
    return {Localization::localizedStringForKey(QStringLiteral("Main_Fram_Original_Quality")),
            Localization::localizedStringForKey(QStringLiteral("Main_Fram_HD_Quality")),
            Localization::localizedStringForKey(QStringLiteral("Main_Fram_SD_Quality"))};
}

float AppDelegate::fpsFromTitle(const QString &title)
{
    return title.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty).toFloat();
}

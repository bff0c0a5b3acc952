#include "AppDelegate.h"
#include "FakePlatform.h"
#include "QSettingsUserDefaults.h"
#include "RecordingMediaEncoder.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QStringList firstRunKeys{"IsFirstRun",
                               "EventStartOrStop",
                               "EventStartOrStopChar",
                               "EventResumeOrPause",
                               "EventResumeOrPauseChar",
                               "EventOnOrOffCaptrue",
                               "EventOnOrOffCaptrueChar",
                               "EventScreenshot",
                               "EventScreenshotChar",
                               "EventShowDrawTool",
                               "EventShowDrawToolChar",
                               "Watermark_color",
                               "Watermark_alpha",
                               "Watermark_shadow",
                               "Watermark_scale",
                               "Watermark_isShow",
                               "Watermark_textString",
                               "TimeFramStyleIndex",
                               "IsShowMouse",
                               "IsMouseClickEffect",
                               "IsMouseHighlight",
                               "IsShowReverseTime",
                               "FramItemIndex",
                               "FpsItemIndex",
                               "VideoTypeIndex",
                               "AudioTypeIndex",
                               "RecordAudioType",
                               "Watermark_Type",
                               "IsCaptrueMirrored",
                               "Linewidth"};

class SettingsModelTest : public testing::Test {
protected:
    void SetUp() override { RecordingMediaEncoder::reset(); }
    std::unique_ptr<AppDelegate> start() { return AppDelegate::create(fake.platform()); }
    FakePlatform fake;
};

TEST_F(SettingsModelTest, FirstRunWritesExactlyTheFirstRunKeys)
{
    auto delegate = start();
    QStringList keys = fake.defaults.keys();
    QStringList expected = firstRunKeys;
    keys.sort();
    expected.sort();
    EXPECT_EQ(keys, expected);
    // The watermark text goes first, then the first-run keys in their order.
    EXPECT_EQ(fake.defaults.writtenKeys().mid(0, 3),
              QStringList({"Watermark_textString", "IsFirstRun", "EventStartOrStopChar"}));

    const UserDefaults &d = fake.defaults;
    EXPECT_EQ(d.stringForKey("EventStartOrStopChar"), "⌘ 1");
    EXPECT_EQ(d.integerForKey("EventShowDrawTool"), 23);
    EXPECT_EQ(d.integerForKey("FpsItemIndex"), 3);
    EXPECT_EQ(d.integerForKey("Watermark_Type"), 2);
    EXPECT_EQ(d.arrayForKey("Watermark_color"), QVariantList({1, 0, 0}));

    EXPECT_EQ(delegate->videoTypes().value(delegate->videoTypeBoxIndex()), ".mp4");
    EXPECT_EQ(delegate->audioExtensionBoxTitle(), ".mp3");
    EXPECT_EQ(AppDelegate::fpsFromTitle(delegate->fpsTitles().value(delegate->fpsItemIndex())),
              25.0f);
    EXPECT_EQ(delegate->finshpopIndex(), 1);
    EXPECT_EQ(delegate->recordEndFileSize(), 100.0);
    EXPECT_EQ(delegate->recordEndTimeDuration(), 0.0);
    EXPECT_EQ(delegate->watermarkTextString(), "Capstan");
    EXPECT_EQ(delegate->textWatermarkColor(), QColor::fromRgbF(1, 0, 0, 1));
    EXPECT_TRUE(delegate->textWatermarkFont().fontName.isEmpty());
    EXPECT_EQ(delegate->textWatermarkFont().pointSize, 20);
}

TEST_F(SettingsModelTest, OldStoreGainsOnlyTheFifthHotKey)
{
    fake.defaults.setInteger(1, "IsFirstRun");
    fake.defaults.setInteger(7, "FpsItemIndex");
    auto delegate = start();
    QStringList keys = fake.defaults.keys();
    keys.sort();
    EXPECT_EQ(keys, QStringList({"EventShowDrawTool", "EventShowDrawToolChar", "FpsItemIndex",
                                 "IsFirstRun", "Watermark_textString"}));
    EXPECT_EQ(fake.defaults.stringForKey("EventShowDrawToolChar"), "⌘ 5");
    EXPECT_EQ(delegate->fpsItemIndex(), 7); // out of range goes straight through
}

TEST_F(SettingsModelTest, StoredRulesAtStart)
{
    fake.defaults.setInteger(1, "IsFirstRun");
    fake.defaults.setDouble(90.5, "AutoStop_Time");
    fake.defaults.setDouble(250.7, "AutoStop_FileSize");
    fake.defaults.setInteger(0, "AutoStop_FinshIndex");
    fake.defaults.setBool(true, "AutoStop_EveryTime");
    fake.defaults.setObject(QVariantList({0.2, 0.6, 0.9}), "Watermark_color");
    fake.defaults.setObject("Serif", "Watermark_fontName");
    fake.defaults.setDouble(31.9, "Watermark_pointSize");
    auto delegate = start();
    EXPECT_EQ(delegate->recordEndTimeDuration(), 0.0); // undone for this run
    EXPECT_EQ(delegate->recordEndFileSize(), 250.0);
    EXPECT_EQ(delegate->finshpopIndex(), 1);
    EXPECT_TRUE(delegate->autoStop_withTime());
    // Blue comes from the green element.
    EXPECT_EQ(delegate->textWatermarkColor(), QColor::fromRgbF(0.2f, 0.6f, 0.6f, 1.0f));
    EXPECT_EQ(delegate->textWatermarkFont().fontName, "Serif");
    EXPECT_EQ(delegate->textWatermarkFont().pointSize, 31);
}

TEST_F(SettingsModelTest, MicrophoneChoiceNeedsAMicrophone)
{
    fake.defaults.setInteger(1, "IsFirstRun");
    fake.defaults.setInteger(1, "RecordAudioType");
    {
        auto delegate = start();
        EXPECT_EQ(delegate->recordManager()->recordAudioType(), AudioTypeSystem);
        EXPECT_EQ(fake.defaults.integerForKey("RecordAudioType"), 1);
    }
    struct Case {
        QString name, uid;
        bool passes;
    };
    const Case cases[] = {
        {"Built-in Microphone", "a", true},
        {"内建麦克风", "b", true},
        {"USB Headset Microphone", "c", true},
        {"MacBook Pro Mic", "d", true},
        {"Line In", "BlackHole2ch_UID", true},
        {"Line In", "e", false},
        {"?", "f", false},
    };
    for (const Case &c : cases) {
        fake.audio.devices = {FakeAudioHardware::device(5, c.name, c.uid, {1}, {})};
        auto delegate = start();
        EXPECT_EQ(delegate->recordManager()->recordAudioType(),
                  c.passes ? AudioTypeMicphone : AudioTypeSystem)
            << qPrintable(c.name);
    }
}

TEST_F(SettingsModelTest, TimeStyleRowsDependOnLanguage)
{
    fake.defaults.setInteger(1, "IsFirstRun");
    auto english = start();
    EXPECT_EQ(english->timeFramStyles().size(), 3);
    EXPECT_EQ(english->timeFramStyles().value(1), "YYYY-MM-dd HH:mm:ss");
    fake.defaults.setInteger(1, "AppLanguage");
    auto chinese = start();
    EXPECT_EQ(chinese->timeFramStyles().size(), 5);
    EXPECT_TRUE(chinese->timeFramStyles().value(1).contains("年"));
    fake.defaults.setInteger(12, "AppLanguage"); // clamped to 8: not English
    EXPECT_EQ(start()->timeFramStyles().size(), 5);
}

TEST_F(SettingsModelTest, WronglyTypedValuesReadAsNothing)
{
    UserDefaults &d = fake.defaults;
    d.setObject(QVariantList({1, 2}), "FramItemIndex");
    d.setObject("abc", "FpsItemIndex");
    d.setObject(QVariantMap{{"x", 1}}, "IsShowMouse");
    d.setObject(42, "Watermark_color");
    EXPECT_EQ(d.integerForKey("FramItemIndex"), 0);
    EXPECT_EQ(d.integerForKey("FpsItemIndex"), 0);
    EXPECT_FALSE(d.boolForKey("IsShowMouse"));
    EXPECT_TRUE(d.arrayForKey("Watermark_color").isEmpty());
    EXPECT_TRUE(d.stringForKey("FramItemIndex").isNull());
    EXPECT_EQ(d.stringForKey("Watermark_color"), "42");
    EXPECT_TRUE(d.dictionaryForKey("absent").isEmpty());
}

// The real store: values survive a restart with the types the readers expect.
TEST(QSettingsStore, FirstRunRoundTripsThroughTheIniFile)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("Capstan.conf");
    {
        QSettingsUserDefaults store(file);
        FakePlatform fake;
        Platform platform = fake.platform();
        platform.defaults = &store;
        AppDelegate::create(platform);
        store.setObject(QVariantMap{{"r", 0.5}, {"g", 0.25}, {"b", 1}}, "LineColor");
        store.setDouble(90.5, "AutoStop_Time");
        EXPECT_TRUE(store.synchronize());
    }
    QSettingsUserDefaults reopened(file);
    EXPECT_EQ(reopened.integerForKey("IsFirstRun"), 1);
    EXPECT_TRUE(reopened.boolForKey("IsShowMouse"));
    EXPECT_FALSE(reopened.boolForKey("IsMouseHighlight"));
    EXPECT_EQ(reopened.stringForKey("EventScreenshotChar"), "⌘ 4");
    EXPECT_EQ(reopened.integerForKey("AutoStop_Time"), 90);
    EXPECT_DOUBLE_EQ(reopened.doubleForKey("Linewidth"), 2.0);
    const QVariantList rgb = reopened.arrayForKey("Watermark_color");
    ASSERT_EQ(rgb.size(), 3);
    EXPECT_EQ(UserDefaults::numberFromVariant(rgb[0]), 1.0);
    EXPECT_EQ(reopened.dictionaryForKey("LineColor").value("g").toDouble(), 0.25);
    EXPECT_FALSE(reopened.hasKey("SplitType"));
    EXPECT_FALSE(reopened.hasKey("IsAutoStop"));
    EXPECT_FALSE(reopened.hasKey("StartItemIndex"));
    EXPECT_FALSE(reopened.hasKey("RECORDTIME_DURATION"));
}

} // namespace

#pragma once
// Every key of the user defaults store, spelled once. The odd spellings are the
// stored names and stay.
namespace Keys {
// Recording options
inline constexpr char IsFirstRun[] = "IsFirstRun";
inline constexpr char FramItemIndex[] = "FramItemIndex";
inline constexpr char FpsItemIndex[] = "FpsItemIndex";
inline constexpr char VideoTypeIndex[] = "VideoTypeIndex";
inline constexpr char AudioTypeIndex[] = "AudioTypeIndex";
inline constexpr char RecordAudioType[] = "RecordAudioType";
inline constexpr char IsShowMouse[] = "IsShowMouse";
inline constexpr char IsMouseHighlight[] = "IsMouseHighlight";
inline constexpr char IsMouseClickEffect[] = "IsMouseClickEffect";
inline constexpr char IsShowReverseTime[] = "IsShowReverseTime";
inline constexpr char IsCaptrueMirrored[] = "IsCaptrueMirrored";
inline constexpr char RecordTimeDuration[] = "RECORDTIME_DURATION";
inline constexpr char StartItemIndex[] = "StartItemIndex";
// Automatic stop and split
inline constexpr char IsAutoStop[] = "IsAutoStop";
inline constexpr char AutoStopTime[] = "AutoStop_Time";
inline constexpr char AutoStopFileSize[] = "AutoStop_FileSize";
inline constexpr char AutoStopType[] = "AutoStop_Type";
inline constexpr char AutoStopEveryTime[] = "AutoStop_EveryTime";
inline constexpr char AutoStopFinshIndex[] = "AutoStop_FinshIndex";
inline constexpr char SplitType[] = "SplitType";
inline constexpr char SplitTime[] = "SplitTime";
inline constexpr char SplitSize[] = "SplitSize";
inline constexpr char SplitAlway[] = "SplitAlway";
// Watermark
inline constexpr char WatermarkType[] = "Watermark_Type";
inline constexpr char WatermarkTextString[] = "Watermark_textString";
inline constexpr char WatermarkColor[] = "Watermark_color";
inline constexpr char WatermarkAlpha[] = "Watermark_alpha";
inline constexpr char WatermarkFontName[] = "Watermark_fontName";
inline constexpr char WatermarkPointSize[] = "Watermark_pointSize";
inline constexpr char WatermarkImagePath[] = "Watermark_imagePath";
inline constexpr char WatermarkCenterX[] = "Watermark_center_x";
inline constexpr char WatermarkCenterY[] = "Watermark_center_y";
inline constexpr char WatermarkScale[] = "Watermark_scale";
inline constexpr char WatermarkIsShow[] = "Watermark_isShow";
inline constexpr char WatermarkShadow[] = "Watermark_shadow";
inline constexpr char TimeFramStyleIndex[] = "TimeFramStyleIndex";
// Hot keys: a key code and a display text per action
inline constexpr char EventStartOrStop[] = "EventStartOrStop";
inline constexpr char EventStartOrStopChar[] = "EventStartOrStopChar";
inline constexpr char EventResumeOrPause[] = "EventResumeOrPause";
inline constexpr char EventResumeOrPauseChar[] = "EventResumeOrPauseChar";
inline constexpr char EventOnOrOffCaptrue[] = "EventOnOrOffCaptrue";
inline constexpr char EventOnOrOffCaptrueChar[] = "EventOnOrOffCaptrueChar";
inline constexpr char EventScreenshot[] = "EventScreenshot";
inline constexpr char EventScreenshotChar[] = "EventScreenshotChar";
inline constexpr char EventShowDrawTool[] = "EventShowDrawTool";
inline constexpr char EventShowDrawToolChar[] = "EventShowDrawToolChar";
// Drawing
inline constexpr char Linewidth[] = "Linewidth";
inline constexpr char LineColor[] = "LineColor";
inline constexpr char DrawTextFontName[] = "DrawTextFontName";
inline constexpr char DrawTextFontSize[] = "DrawTextFontSize";
// Language
inline constexpr char AppLanguage[] = "AppLanguage";
inline constexpr char IsLanguageChanged[] = "isLanguageChanged";
inline constexpr char AppleLanguages[] = "AppleLanguages";
} // namespace Keys

// What the compositor stamps on frames, and the camera pictures it hands back.
#include "AppDelegate.h"

#include "SettingsKeys.h"
#include "UserDefaults.h"
#include "WatermarkRenderer.h"

#include <QFontDatabase>

FrameDecorations AppDelegate::frameDecorations() const
{
    std::lock_guard lock(decorationsMutex_);
    FrameDecorations d;
    d.isMouseHight = isMouseHight_;
    d.isMouseClickEffect = isMouseClickEffect_;
    d.isShowMouse = isShowMouse_;
    d.isTimeTextWatermark = isTimeTextWatermark_;
    d.timeFramStyles = timeFramStyles_;
    d.timeFramStyleIndex = timeFramStyleIndex_;
    d.watermarkType = watermarkType_;
    d.watermarkImage = watermarkImage_;
    d.textStyle = {textWatermarkFont_.fontName, textWatermarkFont_.pointSize, textWatermarkColor_,
                   watermarkAlpha_};
    d.placement = watermarkPlacement_;
    return d;
}

void AppDelegate::setWatermarkPlacement(const WatermarkPlacement &placement)
{
    UserDefaults &d = *platform_.defaults;
    d.setFloat(placement.centerX, Keys::WatermarkCenterX);
    d.setFloat(placement.centerY, Keys::WatermarkCenterY);
    d.setFloat(placement.scale, Keys::WatermarkScale);
    std::lock_guard lock(decorationsMutex_);
    watermarkPlacement_ = placement;
}

void AppDelegate::showCameraImage(const QImage &image, bool recordingView)
{
    (recordingView ? recordingCameraImage_ : floatingCameraImage_) = image;
    emit cameraImageChanged(recordingView);
}

QImage AppDelegate::saveImageWithText(const QString &text) const
{
    return WatermarkRenderer::imageWithText(text, frameDecorations().textStyle);
}

QStringList AppDelegate::getFontNameArray()
{
    QStringList families = QFontDatabase::families();
    families.removeAll(QStringLiteral("Helvetica"));
    return families;
}

// The pointer and watermark options, read by the compositor on the capture thread.
#define CAPSTAN_GUARDED_PROPERTY(Type, name, Setter)                                               \
    Type AppDelegate::name() const                                                                 \
    {                                                                                              \
        std::lock_guard lock(decorationsMutex_);                                                   \
        return name##_;                                                                            \
    }                                                                                              \
    void AppDelegate::Setter(Type value)                                                           \
    {                                                                                              \
        std::lock_guard lock(decorationsMutex_);                                                   \
        name##_ = value;                                                                           \
    }

CAPSTAN_GUARDED_PROPERTY(bool, isMouseHight, setIsMouseHight)
CAPSTAN_GUARDED_PROPERTY(bool, isShowMouse, setIsShowMouse)
CAPSTAN_GUARDED_PROPERTY(bool, isMouseClickEffect, setIsMouseClickEffect)
CAPSTAN_GUARDED_PROPERTY(quint64, watermarkType, setWatermarkType)

WatermarkPlacement AppDelegate::watermarkPlacement() const
{
    std::lock_guard lock(decorationsMutex_);
    return watermarkPlacement_;
}
CAPSTAN_GUARDED_PROPERTY(bool, isTimeTextWatermark, setIsTimeTextWatermark)
CAPSTAN_GUARDED_PROPERTY(QImage, watermarkImage, setWatermarkImage)

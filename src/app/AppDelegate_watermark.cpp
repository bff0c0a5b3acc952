// What the compositor stamps on frames, and the camera pictures it hands back.
#include "AppDelegate.h"

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
    return d;
}

void AppDelegate::showCameraImage(const QImage &image, bool recordingView)
{
    (recordingView ? recordingCameraImage_ : floatingCameraImage_) = image;
    emit cameraImageChanged(recordingView);
}

bool AppDelegate::isTimeTextWatermark() const
{
    std::lock_guard lock(decorationsMutex_);
    return isTimeTextWatermark_;
}

void AppDelegate::setIsTimeTextWatermark(bool on)
{
    std::lock_guard lock(decorationsMutex_);
    isTimeTextWatermark_ = on;
}

QImage AppDelegate::watermarkImage() const
{
    std::lock_guard lock(decorationsMutex_);
    return watermarkImage_;
}

void AppDelegate::setWatermarkImage(const QImage &image)
{
    std::lock_guard lock(decorationsMutex_);
    watermarkImage_ = image;
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

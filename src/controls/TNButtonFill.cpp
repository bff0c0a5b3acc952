#include "TNButtonFill.h"

#include <QLinearGradient>

namespace TNButtonColors {

QColor hoverGradientStart()
{
    return QColor::fromRgbF(0.25098039215686274f, 0.8862745098039215f, 1.0f);
}

QColor hoverGradientEnd()
{
    return QColor::fromRgbF(0.09019607843137255f, 0.20392156862745098f, 0.8470588235294118f);
}

QColor windowBackground()
{
    return QColor::fromRgbF(0.1843137254901961f, 0.21568627450980393f, 0.2549019607843137f);
}

QColor selection()
{
    return QColor::fromRgbF(0.2196078431372549f, 0.4549019607843137f, 0.6862745098039216f);
}

QColor lightGray()
{
    return QColor::fromRgbF(2.0f / 3.0f, 2.0f / 3.0f, 2.0f / 3.0f);
}

} // namespace TNButtonColors

TNButtonFill tnButtonFill(const TNButtonState &state)
{
    const double w = state.size.width();
    const double h = state.size.height();
    TNButtonFill fill;
    if (state.canMouseCustomColor && state.isEntered) {
        fill.kind = TNButtonFill::Kind::Gradient;
        fill.rect = QRectF(0, 0, w, h);
        fill.gradientStart = TNButtonColors::hoverGradientStart();
        fill.gradientEnd = TNButtonColors::hoverGradientEnd();
        fill.setsLightGrayBackground = true;
    } else if (state.canMouseCustomColor) {
        fill.kind = TNButtonFill::Kind::Solid;
        fill.rect = QRectF(0, 0, w, h);
        fill.color = TNButtonColors::windowBackground();
    } else if (state.isMouseColor && (state.isEntered || state.isOn)) {
        fill.kind = TNButtonFill::Kind::Solid;
        fill.rect = QRectF(0, 0, w, h + 2);
        fill.color = TNButtonColors::selection();
    }
    return fill;
}

QBrush TNButtonFill::brush() const
{
    switch (kind) {
    case Kind::Solid:
        return QBrush(color);
    case Kind::Gradient: {
        QLinearGradient gradient(rect.bottomLeft(), rect.topLeft());
        gradient.setColorAt(0, gradientStart);
        gradient.setColorAt(1, gradientEnd);
        return QBrush(gradient);
    }
    case Kind::None:
        break;
    }
    return QBrush();
}

#include "XJLabel.h"

XJLabel::XJLabel(QWidget *parent) : QLabel(parent)
{
    setAlignment(Qt::AlignCenter);
    QFont labelFont = font();
    labelFont.setPixelSize(kFontSize);
    setFont(labelFont);
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, backgroundColor());
    colours.setColor(QPalette::WindowText, Qt::black);
    setPalette(colours);
}

QColor XJLabel::backgroundColor()
{
    return QColor::fromRgbF(0.803921568627451f, 0.803921568627451f, 0.803921568627451f);
}

#pragma once
// Title colour helpers for every button. A TNButton draws its title in its own textColor,
// so for one of those they read and set that; other buttons keep the colour in their palette.
#include <QColor>
#include <QString>

class QAbstractButton;

struct IsShadow {
    bool value;
};
struct IsUnderLine {
    bool value;
};

QColor titleColor(const QAbstractButton *button);
void setTitleColor(QAbstractButton *button, const QColor &color);
QColor textColor(const QAbstractButton *button);
void setTextColor(QAbstractButton *button, const QColor &color);
// The title in one colour, with a soft dark shadow below it or without any.
void setText(QAbstractButton *button, const QString &text, const QColor &color, IsShadow shadow);
// The title in one colour, underlined or not.
void setText(QAbstractButton *button, const QString &text, const QColor &color,
             IsUnderLine underLine);

#include "ButtonTextColor.h"

#include "TNButton.h"

#include <QAbstractButton>
#include <QGraphicsDropShadowEffect>

QColor titleColor(const QAbstractButton *button)
{
    if (auto *tnButton = qobject_cast<const TNButton *>(button))
        return tnButton->cell().titleColor();
    return button->palette().color(QPalette::ButtonText);
}

void setTitleColor(QAbstractButton *button, const QColor &color)
{
    if (auto *tnButton = qobject_cast<TNButton *>(button)) {
        tnButton->setTextColor(color);
        return;
    }
    QPalette colours = button->palette();
    colours.setColor(QPalette::ButtonText, color);
    colours.setColor(QPalette::WindowText, color);
    button->setPalette(colours);
}

QColor textColor(const QAbstractButton *button)
{
    return titleColor(button);
}

void setTextColor(QAbstractButton *button, const QColor &color)
{
    setTitleColor(button, color);
}

void setText(QAbstractButton *button, const QString &text, const QColor &color, IsShadow shadow)
{
    button->setText(text);
    setTitleColor(button, color);
    if (!shadow.value) {
        button->setGraphicsEffect(nullptr);
        return;
    }
    auto *effect = new QGraphicsDropShadowEffect(button);
    effect->setColor(QColor(0, 0, 0, 128));
    effect->setOffset(0, 1);
    effect->setBlurRadius(2);
    button->setGraphicsEffect(effect);
}

void setText(QAbstractButton *button, const QString &text, const QColor &color,
             IsUnderLine underLine)
{
    button->setText(text);
    setTitleColor(button, color);
    QFont font = button->font();
    font.setUnderline(underLine.value);
    button->setFont(font);
}

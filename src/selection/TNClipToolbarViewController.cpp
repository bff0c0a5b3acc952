#include "TNClipToolbarViewController.h"

#include "Localization.h"
#include "TNButton.h"

#include <QPainter>

using Localization::localizedStringForKey;

namespace {

constexpr QSize kBarSize(160, 34);
constexpr QSize kButtonSize(72, 26);

TNButton *barButton(QWidget *bar, int x, const QString &key)
{
    auto *button = new TNButton(
        QRect(QPoint(x, (kBarSize.height() - kButtonSize.height()) / 2), kButtonSize), bar);
    const QString title = localizedStringForKey(key);
    button->setText(title);
    button->setTextColor(Qt::white);
    button->setAccessibleName(title);
    button->setAccessibleDescription(key);
    return button;
}

} // namespace

TNClipToolbarViewController::TNClipToolbarViewController(QWidget *parent) : QWidget(parent)
{
    resize(kBarSize);
    setAccessibleDescription(QStringLiteral("TNClipToolbarViewController"));
    cancelButton_ = barButton(this, 6, QStringLiteral("Cancel"));
    clipButton_ = barButton(this, kBarSize.width() - 6 - kButtonSize.width(), QStringLiteral("OK"));
    connect(cancelButton_, &TNButton::clicked, this, [this] {
        if (delegate_)
            delegate_->clipToolbarViewControllerCancel(this);
    });
    connect(clipButton_, &TNButton::clicked, this, [this] {
        if (delegate_)
            delegate_->clipToolbarViewControllerCliped(this);
    });
}

void TNClipToolbarViewController::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(31, 31, 40, 230));
    painter.drawRoundedRect(rect(), 6, 6);
}

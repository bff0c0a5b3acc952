#include "YZButton.h"

#include "XJLabel.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

namespace {

constexpr int kTipHeight = 20;
constexpr int kTipPadding = 15;

QPixmap namedImage(const QString &name)
{
    for (const char *suffix : {".svg", ".png", ""}) {
        QPixmap image(QStringLiteral(":/") + name + QLatin1String(suffix));
        if (!image.isNull())
            return image;
    }
    return QPixmap();
}

} // namespace

YZButton::YZButton(QWidget *parent, TNButtonOrigin origin) : TNButton(parent, origin)
{
    setUp();
}

YZButton::YZButton(const QRect &frame, QWidget *parent) : TNButton(frame, parent)
{
    setUp();
}

YZButton::~YZButton()
{
    // The tip lives in the superview while shown; it is still ours.
    if (warningLabel_ && warningLabel_->parent() != this)
        delete warningLabel_.data();
}

// No highlight and no border are drawn anyway; what both constructors add is the tracking.
void YZButton::setUp()
{
    mouseIn_ = false;
    setTracksMouse(true);
}

void YZButton::setExplainString(const QString &text)
{
    explainString_ = text;
    setAccessibleName(text);
}

XJLabel *YZButton::warningLabel()
{
    if (!warningLabel_) {
        warningLabel_ = new XJLabel(parentWidget() ? parentWidget() : this);
        warningLabel_->hide();
    }
    return warningLabel_;
}

void YZButton::changeImage(const QString &defaultName, const QString &selectedName)
{
    defaultImage_ = namedImage(defaultName);
    selectedImage_ = namedImage(selectedName);
    updateImage();
}

void YZButton::updateImage()
{
    if (mouseIn_ && !selectedImage_.isNull())
        setImage(selectedImage_);
    else if (!defaultImage_.isNull())
        setImage(defaultImage_);
}

void YZButton::warningLabelHiddenOrShow(QWidget *, const QString &stringVal, bool isHidden)
{
    XJLabel *label = warningLabel();
    // x from the window's content, y in the superview: the label sits on the button's top edge.
    const int x = mapTo(window(), QPoint(0, 0)).x();
    const QSizeF text = measureSinglelineStringSize(stringVal, XJLabel::kFontSize);
    label->setGeometry(x, geometry().top() - kTipHeight, int(std::ceil(text.width())) + kTipPadding,
                       kTipHeight);
    if (stringVal.isEmpty())
        return;
    label->setText(stringVal);
    QWidget *superview = parentWidget();
    if (!superview)
        return;
    if (isHidden) {
        label->hide();
        return;
    }
    if (label->parentWidget() != superview)
        label->setParent(superview);
    label->raise();
    label->show();
}

QSizeF YZButton::measureSinglelineStringSize(const QString &text, double fontSize)
{
    if (text.isNull())
        return QSizeF(0, 0);
    QFont font;
    font.setPixelSize(std::max(1, int(std::lround(fontSize))));
    const QFontMetricsF metrics(font);
    return QSizeF(metrics.horizontalAdvance(text), std::min<qreal>(metrics.height(), kTipHeight));
}

void YZButton::mouseEntered(QEvent *)
{
    // Followed only while the window is the active one.
    if (!isActiveWindow())
        return;
    mouseIn_ = true;
    updateImage();
    warningLabelHiddenOrShow(this, explainString_, false);
    if (mDelegate_.buttonMouseEnter)
        mDelegate_.buttonMouseEnter(this);
}

void YZButton::mouseExited(QEvent *)
{
    if (!isActiveWindow())
        return;
    mouseIn_ = false;
    updateImage();
    warningLabelHiddenOrShow(this, explainString_, true);
    if (mDelegate_.buttonMouseExited)
        mDelegate_.buttonMouseExited(this);
}

#pragma once
// The round tool button of the drawing strip: it swaps between two images under the pointer
// and shows its tip (explainString) in a label above itself while the pointer is in.
//
// It follows the pointer whichever way it was made, while its window is the active one.
// GUI thread only.
#include "TNButton.h"

#include <QPointer>
#include <QSizeF>
#include <QString>
#include <functional>

class XJLabel;
class YZButton;

// Told when the pointer enters or leaves a tool button; either may be left empty.
struct YZButtonDelegate {
    std::function<void(YZButton *button)> buttonMouseEnter;
    std::function<void(YZButton *button)> buttonMouseExited;
};

class YZButton : public TNButton {
    Q_OBJECT
public:
    explicit YZButton(QWidget *parent = nullptr, TNButtonOrigin origin = TNButtonOrigin::Code);
    explicit YZButton(const QRect &frame, QWidget *parent = nullptr);
    ~YZButton() override;

    bool mouseIn() const { return mouseIn_; }
    bool customEnabel() const { return customEnabel_; }
    void setCustomEnabel(bool on) { customEnabel_ = on; }
    QString explainString() const { return explainString_; }
    // Also the button's accessible name.
    void setExplainString(const QString &text);
    QPixmap selectedImage() const { return selectedImage_; }
    void setSelectedImage(const QPixmap &image) { selectedImage_ = image; }
    QPixmap defaultImage() const { return defaultImage_; }
    void setDefaultImage(const QPixmap &image) { defaultImage_ = image; }
    const YZButtonDelegate &mDelegate() const { return mDelegate_; }
    void setMDelegate(YZButtonDelegate delegate) { mDelegate_ = std::move(delegate); }

    // The tip's label, made on first use.
    XJLabel *warningLabel();

    // Loads both images by name (":/NAME.svg", else ":/NAME.png"); a missing one stays null.
    void changeImage(const QString &defaultName, const QString &selectedName);
    // The selected image while the pointer is in and there is one, else the default one if
    // there is one; with neither the image stays.
    void updateImage();
    // Places the tip above the button, its width the text's plus 15; a text shows it or, with
    // isHidden, takes it away. An empty text changes neither.
    void warningLabelHiddenOrShow(QWidget *view, const QString &stringVal, bool isHidden);
    // A single line's size at the system font of fontSize, at most 20 high; 0 by 0 for a null
    // text.
    static QSizeF measureSinglelineStringSize(const QString &text, double fontSize);

protected:
    void mouseEntered(QEvent *event) override;
    void mouseExited(QEvent *event) override;

private:
    void setUp();

    bool mouseIn_ = false;
    bool customEnabel_ = false;
    QString explainString_;
    QPixmap selectedImage_;
    QPixmap defaultImage_;
    QPointer<XJLabel> warningLabel_;
    YZButtonDelegate mDelegate_;
};

#pragma once
// The button of the dark windows: it can fill itself while the pointer is over it or while it
// is on, hands hover and press to closures, and draws title and image with insets of its own
// (through its TNButtonCell).
//
// Hover: a button made from a form (TNButtonOrigin::Form) follows the pointer from the start;
// one made in code does not until its owner calls setTracksMouse(true), as a button made in
// code always needed someone to add its tracking area. GUI thread only.
#include "TNButtonCell.h"

#include <QAbstractButton>
#include <QPixmap>
#include <functional>

class QEvent;
class QMouseEvent;

enum class TNButtonOrigin { Code, Form };

class TNButton : public QAbstractButton {
    Q_OBJECT
public:
    using Block = std::function<void(TNButton *button, QEvent *event)>;

    explicit TNButton(QWidget *parent = nullptr, TNButtonOrigin origin = TNButtonOrigin::Code);
    // Made in code with a frame in the parent's coordinates (initWithFrame).
    explicit TNButton(const QRect &frame, QWidget *parent = nullptr);

    bool tracksMouse() const { return tracksMouse_; }
    void setTracksMouse(bool tracks);

    bool isEntered() const { return isEntered_; }
    bool isMouseColor() const { return isMouseColor_; }
    void setIsMouseColor(bool on);
    bool canMouseCustomColor() const { return canMouseCustomColor_; }
    void setCanMouseCustomColor(bool on);
    qint64 index() const { return index_; }
    void setIndex(qint64 index) { index_ = index; }
    QColor textColor() const { return cell_.textColor(); }
    void setTextColor(const QColor &color);
    NSEdgeInsets texteEdgeInsets() const { return cell_.texteEdgeInsets(); }
    void setTexteEdgeInsets(const NSEdgeInsets &insets);
    NSEdgeInsets imageEdgeInsets() const { return cell_.imageEdgeInsets(); }
    void setImageEdgeInsets(const NSEdgeInsets &insets);
    // Free for the owner.
    QWidget *bgView() const { return bgView_; }
    void setBgView(QWidget *view) { bgView_ = view; }

    Block mouseEnteredBlock() const { return mouseEnteredBlock_; }
    void setMouseEnteredBlock(Block block) { mouseEnteredBlock_ = std::move(block); }
    Block mouseExitedBlock() const { return mouseExitedBlock_; }
    void setMouseExitedBlock(Block block) { mouseExitedBlock_ = std::move(block); }
    // Runs once a press has ended (the press is tracked until the button goes up).
    Block mouseDownBlock() const { return mouseDownBlock_; }
    void setMouseDownBlock(Block block) { mouseDownBlock_ = std::move(block); }
    // Kept for the owner; the button itself never runs it.
    Block mouseUpBlock() const { return mouseUpBlock_; }
    void setMouseUpBlock(Block block) { mouseUpBlock_ = std::move(block); }

    QPixmap image() const { return image_; }
    void setImage(const QPixmap &image);
    // 1 while the button is on, else 0.
    int state() const { return isChecked() ? 1 : 0; }

    const TNButtonCell &cell() const { return cell_; }
    QSize sizeHint() const override;

protected:
    virtual void mouseEntered(QEvent *event);
    virtual void mouseExited(QEvent *event);
    virtual void mouseDown(QMouseEvent *event);
    virtual void mouseUp(QMouseEvent *event);

    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setEntered(bool entered, QEvent *event, const Block &block, const char *operation);

    TNButtonCell cell_;
    bool tracksMouse_ = false;
    bool isEntered_ = false;
    bool isMouseColor_ = false;
    bool canMouseCustomColor_ = false;
    bool lightGrayBackground_ = false;
    bool pressTracked_ = false;
    qint64 index_ = 0;
    QWidget *bgView_ = nullptr;
    QPixmap image_;
    Block mouseEnteredBlock_;
    Block mouseExitedBlock_;
    Block mouseDownBlock_;
    Block mouseUpBlock_;
};

#pragma once
// The still clip's tool bar: accept and cancel, flown in under the marked region.
#include <QWidget>

class TNButton;
class TNClipToolbarViewController;

class TNClipToolbarViewControllerDelegate {
public:
    virtual ~TNClipToolbarViewControllerDelegate() = default;
    virtual void clipToolbarViewControllerCancel(TNClipToolbarViewController *) = 0;
    virtual void clipToolbarViewControllerCliped(TNClipToolbarViewController *) = 0;
};

class TNClipToolbarViewController : public QWidget {
    Q_OBJECT
public:
    explicit TNClipToolbarViewController(QWidget *parent = nullptr);

    void setDelegate(TNClipToolbarViewControllerDelegate *delegate) { delegate_ = delegate; }
    TNButton *clipButton() const { return clipButton_; }
    TNButton *cancelButton() const { return cancelButton_; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TNClipToolbarViewControllerDelegate *delegate_ = nullptr;
    TNButton *cancelButton_ = nullptr;
    TNButton *clipButton_ = nullptr;
};

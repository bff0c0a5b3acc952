#pragma once
// The content of a CustomPopover (the line width and colour choices): its view is the widget
// itself, and the popover's frame around it is painted dark.
#include <QWidget>

class PopViewController : public QWidget {
    Q_OBJECT
public:
    explicit PopViewController(QWidget *parent = nullptr);

    // Gives the frame around the view, if there is one yet, the popover's dark colour.
    virtual void viewDidLoad();
    // Closes the window the view is in.
    void quit();

    // Red 46, green 53, blue 59 of 255: the platform's light popover frame made dark.
    static QColor frameColor();
    // Fills frame with frameColor.
    static void paintFrame(QWidget *frame);
};

#include "PopViewController.h"

PopViewController::PopViewController(QWidget *parent) : QWidget(parent)
{
    setAccessibleName(tr("Choices"));
}

QColor PopViewController::frameColor()
{
    return QColor::fromRgbF(0.1803921568627451f, 0.20784313725490197f, 0.23137254901960785f, 1);
}

void PopViewController::paintFrame(QWidget *frame)
{
    QPalette colours = frame->palette();
    colours.setColor(QPalette::Window, frameColor());
    frame->setPalette(colours);
    frame->setAutoFillBackground(true);
}

void PopViewController::viewDidLoad()
{
    if (parentWidget())
        paintFrame(parentWidget());
}

// A modal session in Qt ends with its window, so closing the window is the whole of it.
void PopViewController::quit()
{
    window()->close();
}

#pragma once
// The pointer entering and leaving a widget, as the window system reports them.
#include <QApplication>
#include <QEnterEvent>

inline void enter(QWidget *widget)
{
    QEnterEvent event(QPointF(2, 2), QPointF(2, 2), widget->mapToGlobal(QPointF(2, 2)));
    QApplication::sendEvent(widget, &event);
}

inline void leave(QWidget *widget)
{
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(widget, &event);
}

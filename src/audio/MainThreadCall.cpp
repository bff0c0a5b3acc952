#include "MainThreadCall.h"

#include <QCoreApplication>

MainThreadCall::MainThreadCall(std::function<void()> run, QObject *parent)
    : QObject(parent), run_(std::move(run))
{}

QEvent::Type MainThreadCall::callType()
{
    static const auto type = QEvent::Type(QEvent::registerEventType());
    return type;
}

void MainThreadCall::post()
{
    if (pending_.exchange(true, std::memory_order_acq_rel))
        return;
    auto *call = new QEvent(callType());
    // Published before the event travels: the receiving side acquires it before reading.
    posted_.fetch_add(1, std::memory_order_release);
    QCoreApplication::postEvent(this, call);
}

bool MainThreadCall::event(QEvent *event)
{
    posted_.load(std::memory_order_acquire);
    if (event->type() != callType())
        return QObject::event(event);
    pending_.store(false, std::memory_order_release);
    run_();
    return true;
}

#pragma once
// A call that any thread can ask for and that runs on the thread of the object's parent (the
// GUI thread for a widget): asks made while one is pending run once. The hand-over is an event
// with an atomic beside it, so ThreadSanitizer sees the order that Qt's own (uninstrumented)
// event queue gives: a queued functor would be made on one thread and read on the other with
// nothing TSan knows of in between.
#include <QEvent>
#include <QObject>
#include <atomic>
#include <functional>

class MainThreadCall : public QObject {
public:
    MainThreadCall(std::function<void()> run, QObject *parent);

    // Thread-safe.
    void post();

protected:
    bool event(QEvent *event) override;

private:
    static QEvent::Type callType();

    std::function<void()> run_;
    std::atomic<bool> pending_{false};
    std::atomic<unsigned> posted_{0};
};

#pragma once
// A connection to the sound server on a threaded main loop of its own, with blocking
// helpers for the requests the adapters make. Every helper takes the loop's lock itself.
#include "PulseHandles.h"

#include <QString>
#include <functional>
#include <initializer_list>
#include <pulse/pulseaudio.h>

namespace pulse {

class PulseConnection {
public:
    // threadName names the loop's thread; connecting gives up after two seconds.
    explicit PulseConnection(const char *threadName);
    ~PulseConnection();
    PulseConnection(const PulseConnection &) = delete;
    PulseConnection &operator=(const PulseConnection &) = delete;

    bool isReady() const;
    // Null only when the library could not make them (out of memory); isReady() is false then.
    pa_threaded_mainloop *loop() const { return loop_.get(); }
    pa_context *context() const { return context_.get(); }

    // Runs start (under the lock) and waits until the operation it returns is done.
    // False when there is no connection or the request could not be made.
    bool wait(const std::function<pa_operation *()> &start);
    // Sends every request before waiting, so a group costs one round trip, not one each.
    // False when there is no connection or any request could not be made.
    bool waitAll(std::initializer_list<std::function<pa_operation *()>> starts);
    // Wakes wait() from a callback.
    void signal() { pa_threaded_mainloop_signal(loop_.get(), 0); }

private:
    static void stateChanged(pa_context *context, void *self);

    // The context goes before the loop it runs on.
    LoopHandle loop_;
    ContextHandle context_;
};

// Holds the loop's lock for a scope.
class LoopLock {
public:
    explicit LoopLock(pa_threaded_mainloop *loop) : loop_(loop)
    {
        pa_threaded_mainloop_lock(loop_);
    }
    ~LoopLock() { pa_threaded_mainloop_unlock(loop_); }
    LoopLock(const LoopLock &) = delete;
    LoopLock &operator=(const LoopLock &) = delete;

private:
    pa_threaded_mainloop *loop_;
};

} // namespace pulse

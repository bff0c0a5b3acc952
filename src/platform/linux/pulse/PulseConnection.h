#pragma once
// A connection to the sound server on a threaded main loop of its own, with blocking
// helpers for the requests the adapters make. Every helper takes the loop's lock itself.
//
// A server that goes away (killed, restarted) is tried again every half second, on a new
// context: the connection is ready again as soon as the server answers. One that was not there
// at the start is not looked for: the program runs on without sound, as it always did.
#include "PulseHandles.h"

#include <QByteArray>
#include <QString>
#include <functional>
#include <initializer_list>
#include <pulse/pulseaudio.h>

namespace pulse {

class PulseConnection {
public:
    using Request = std::function<pa_operation *(pa_context *)>;

    // threadName names the loop's thread; the first connection gives up after two seconds.
    explicit PulseConnection(const char *threadName);
    ~PulseConnection();
    PulseConnection(const PulseConnection &) = delete;
    PulseConnection &operator=(const PulseConnection &) = delete;

    bool isReady() const;
    // Null only when the library could not make it (out of memory); isReady() is false then.
    pa_threaded_mainloop *loop() const { return loop_.get(); }
    // The current context. A reconnection replaces it, so only under the loop's lock.
    pa_context *context() const { return context_.get(); }
    // Runs on the loop's thread, under its lock, whenever a new context has become ready after
    // the server went away: whatever was set up on the old one goes again.
    void setReconnectedCallback(std::function<void(pa_context *)> callback);

    // Runs start (under the lock) on the current context and waits until the operation it
    // returns is done. False when there is no connection or the request could not be made.
    bool wait(const Request &start);
    // Sends every request before waiting, so a group costs one round trip, not one each.
    // False when there is no connection or any request could not be made.
    bool waitAll(std::initializer_list<Request> starts);
    // Wakes wait() from a callback.
    void signal() { pa_threaded_mainloop_signal(loop_.get(), 0); }

private:
    static void stateChanged(pa_context *context, void *self);
    static void retryNow(pa_mainloop_api *, pa_time_event *, const struct timeval *, void *self);
    // Under the lock, or before the loop's thread starts: a new context, connecting.
    void connectLocked();
    void scheduleRetryLocked();

    QByteArray threadName_;
    // The context goes before the loop it runs on.
    LoopHandle loop_;
    ContextHandle context_;                   // replaced under the lock
    pa_time_event *retry_ = nullptr;          // under the lock
    bool everReady_ = false;                  // under the lock
    bool lostSaid_ = false;                   // under the lock: the loss is in the log
    std::function<void(pa_context *)> again_; // under the lock
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

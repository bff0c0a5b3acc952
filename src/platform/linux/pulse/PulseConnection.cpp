#include "PulseConnection.h"

#include "Log.h"

#include <utility>
#include <vector>

namespace pulse {

namespace {

// How often a server that is not there is tried again: about as often as the engine's device
// watch looks, so a restarted server is used again within a second.
constexpr pa_usec_t kRetryInterval = 500 * PA_USEC_PER_MSEC;

} // namespace

PulseConnection::PulseConnection(const char *threadName) : threadName_(threadName)
{
    loop_.reset(pa_threaded_mainloop_new());
    if (!loop_) {
        capstan::NSLog(lcAudio, "no sound server: cannot make a main loop");
        return;
    }
    pa_threaded_mainloop_set_name(loop_.get(), threadName);
    // Connecting before the loop's thread starts needs no lock yet.
    connectLocked();
    // A server refused at once is not tried again, and needs no thread.
    if (!context_ || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_.get()))) {
        capstan::NSLog(lcAudio, "no sound server: %s",
                       context_ ? pa_strerror(pa_context_errno(context_.get())) : "no context");
        return;
    }
    if (pa_threaded_mainloop_start(loop_.get()) < 0) {
        capstan::NSLog(lcAudio, "no sound server: cannot start a main loop");
        pa_context_disconnect(context_.get());
        return;
    }
    LoopLock lock(loop_.get());
    const pa_usec_t deadline = pa_rtclock_now() + 2 * PA_USEC_PER_SEC;
    while (context_) {
        const pa_context_state_t state = pa_context_get_state(context_.get());
        if (state == PA_CONTEXT_READY)
            return;
        if (!PA_CONTEXT_IS_GOOD(state) || pa_rtclock_now() > deadline) {
            capstan::NSLog(lcAudio, "no sound server: %s",
                           pa_strerror(pa_context_errno(context_.get())));
            pa_context_disconnect(context_.get());
            return;
        }
        pa_threaded_mainloop_wait(loop_.get());
    }
}

PulseConnection::~PulseConnection()
{
    if (!loop_)
        return;
    // No callback may run while the context goes; the holders free it, then the loop.
    pa_threaded_mainloop_stop(loop_.get());
    if (retry_)
        pa_threaded_mainloop_get_api(loop_.get())->time_free(retry_);
    if (context_) {
        pa_context_set_state_callback(context_.get(), nullptr, nullptr);
        pa_context_disconnect(context_.get());
    }
}

void PulseConnection::setReconnectedCallback(std::function<void(pa_context *)> callback)
{
    if (!loop_)
        return;
    LoopLock lock(loop_.get());
    again_ = std::move(callback);
}

void PulseConnection::connectLocked()
{
    if (context_) {
        pa_context_set_state_callback(context_.get(), nullptr, nullptr);
        pa_context_disconnect(context_.get());
    }
    context_.reset(pa_context_new(pa_threaded_mainloop_get_api(loop_.get()), "Capstan"));
    if (!context_) {
        capstan::NSLog(lcAudio, "no sound server: cannot make a context");
        return;
    }
    pa_context_set_state_callback(context_.get(), &PulseConnection::stateChanged, this);
    // A refused connection fails at once or through the state callback; either way it is
    // tried again, once the server has answered before.
    if (pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0 &&
        everReady_)
        scheduleRetryLocked();
}

void PulseConnection::scheduleRetryLocked()
{
    if (retry_)
        return;
    pa_mainloop_api *api = pa_threaded_mainloop_get_api(loop_.get());
    struct timeval at {};
    pa_timeval_add(pa_gettimeofday(&at), kRetryInterval);
    retry_ = api->time_new(api, &at, &PulseConnection::retryNow, this);
}

void PulseConnection::retryNow(pa_mainloop_api *api, pa_time_event *event, const struct timeval *,
                               void *self)
{
    // On the loop's thread, which holds the lock for its events.
    auto *connection = static_cast<PulseConnection *>(self);
    api->time_free(event);
    connection->retry_ = nullptr;
    connection->connectLocked();
}

void PulseConnection::stateChanged(pa_context *context, void *self)
{
    auto *connection = static_cast<PulseConnection *>(self);
    const pa_context_state_t state = pa_context_get_state(context);
    if (state == PA_CONTEXT_READY) {
        const bool again = std::exchange(connection->lostSaid_, false);
        connection->everReady_ = true;
        if (again) {
            capstan::NSLog(lcAudio, "%s: the sound server answers again",
                           connection->threadName_.constData());
            if (connection->again_)
                connection->again_(context);
        }
    } else if (state == PA_CONTEXT_FAILED || state == PA_CONTEXT_TERMINATED) {
        if (connection->everReady_ && !connection->lostSaid_) {
            capstan::NSLog(lcAudio, "%s: the sound server went away (%s); trying it again",
                           connection->threadName_.constData(),
                           pa_strerror(pa_context_errno(context)));
            connection->lostSaid_ = true;
        }
        if (connection->everReady_)
            connection->scheduleRetryLocked();
    }
    connection->signal();
}

bool PulseConnection::isReady() const
{
    if (!loop_)
        return false;
    LoopLock lock(loop_.get());
    return context_ && pa_context_get_state(context_.get()) == PA_CONTEXT_READY;
}

bool PulseConnection::wait(const Request &start)
{
    return waitAll({start});
}

bool PulseConnection::waitAll(std::initializer_list<Request> starts)
{
    if (!isReady())
        return false;
    LoopLock lock(loop_.get());
    pa_context *context = context_.get();
    if (!context || pa_context_get_state(context) != PA_CONTEXT_READY)
        return false; // lost between the two looks
    std::vector<OperationHandle> operations;
    bool made = true;
    for (const auto &start : starts) {
        OperationHandle operation(start(context));
        if (!operation) {
            capstan::NSLog(lcAudio, "the sound server refused a request: %s",
                           pa_strerror(pa_context_errno(context)));
            made = false;
            break;
        }
        operations.push_back(std::move(operation));
    }
    // Requests already sent are waited for even when a later one failed: their callbacks
    // write into the caller's frame. A lost server cancels them all; the look at the context
    // only keeps a wait from outliving it.
    for (const OperationHandle &operation : operations)
        while (pa_operation_get_state(operation.get()) == PA_OPERATION_RUNNING &&
               context_.get() == context && pa_context_get_state(context) == PA_CONTEXT_READY)
            pa_threaded_mainloop_wait(loop_.get());
    return made;
}

} // namespace pulse

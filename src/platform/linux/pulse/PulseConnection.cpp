#include "PulseConnection.h"

#include "Log.h"

#include <vector>

namespace pulse {

PulseConnection::PulseConnection(const char *threadName)
{
    loop_ = pa_threaded_mainloop_new();
    if (!loop_)
        return;
    pa_threaded_mainloop_set_name(loop_, threadName);
    context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "Capstan");
    pa_context_set_state_callback(context_, &PulseConnection::stateChanged, this);
    if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0 ||
        pa_threaded_mainloop_start(loop_) < 0) {
        capstan::NSLog(lcAudio, "no sound server: %s", pa_strerror(pa_context_errno(context_)));
        return;
    }
    LoopLock lock(loop_);
    const pa_usec_t deadline = pa_rtclock_now() + 2 * PA_USEC_PER_SEC;
    while (true) {
        const pa_context_state_t state = pa_context_get_state(context_);
        if (state == PA_CONTEXT_READY)
            return;
        if (!PA_CONTEXT_IS_GOOD(state) || pa_rtclock_now() > deadline) {
            capstan::NSLog(lcAudio, "no sound server: %s", pa_strerror(pa_context_errno(context_)));
            pa_context_disconnect(context_);
            return;
        }
        pa_threaded_mainloop_wait(loop_);
    }
}

PulseConnection::~PulseConnection()
{
    if (!loop_)
        return;
    pa_threaded_mainloop_stop(loop_);
    if (context_) {
        pa_context_disconnect(context_);
        pa_context_unref(context_);
    }
    pa_threaded_mainloop_free(loop_);
}

void PulseConnection::stateChanged(pa_context *, void *self)
{
    static_cast<PulseConnection *>(self)->signal();
}

bool PulseConnection::isReady() const
{
    if (!loop_ || !context_)
        return false;
    LoopLock lock(loop_);
    return pa_context_get_state(context_) == PA_CONTEXT_READY;
}

bool PulseConnection::wait(const std::function<pa_operation *()> &start)
{
    return waitAll({start});
}

bool PulseConnection::waitAll(std::initializer_list<std::function<pa_operation *()>> starts)
{
    if (!isReady())
        return false;
    LoopLock lock(loop_);
    std::vector<pa_operation *> operations;
    bool made = true;
    for (const auto &start : starts) {
        pa_operation *operation = start();
        if (!operation) {
            made = false;
            break;
        }
        operations.push_back(operation);
    }
    // Requests already sent are waited for even when a later one failed: their callbacks
    // write into the caller's frame.
    for (pa_operation *operation : operations) {
        while (pa_operation_get_state(operation) == PA_OPERATION_RUNNING &&
               pa_context_get_state(context_) == PA_CONTEXT_READY)
            pa_threaded_mainloop_wait(loop_);
        pa_operation_unref(operation);
    }
    return made;
}

} // namespace pulse

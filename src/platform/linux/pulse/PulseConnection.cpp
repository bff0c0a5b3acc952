#include "PulseConnection.h"

#include "Log.h"

#include <vector>

namespace pulse {

PulseConnection::PulseConnection(const char *threadName)
{
    loop_.reset(pa_threaded_mainloop_new());
    if (!loop_) {
        capstan::NSLog(lcAudio, "no sound server: cannot make a main loop");
        return;
    }
    pa_threaded_mainloop_set_name(loop_.get(), threadName);
    context_.reset(pa_context_new(pa_threaded_mainloop_get_api(loop_.get()), "Capstan"));
    if (!context_) {
        capstan::NSLog(lcAudio, "no sound server: cannot make a context");
        return;
    }
    pa_context *context = context_.get();
    pa_context_set_state_callback(context, &PulseConnection::stateChanged, this);
    if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0 ||
        pa_threaded_mainloop_start(loop_.get()) < 0) {
        capstan::NSLog(lcAudio, "no sound server: %s", pa_strerror(pa_context_errno(context)));
        return;
    }
    LoopLock lock(loop_.get());
    const pa_usec_t deadline = pa_rtclock_now() + 2 * PA_USEC_PER_SEC;
    while (true) {
        const pa_context_state_t state = pa_context_get_state(context);
        if (state == PA_CONTEXT_READY)
            return;
        if (!PA_CONTEXT_IS_GOOD(state) || pa_rtclock_now() > deadline) {
            capstan::NSLog(lcAudio, "no sound server: %s", pa_strerror(pa_context_errno(context)));
            pa_context_disconnect(context);
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
    if (context_) {
        pa_context_set_state_callback(context_.get(), nullptr, nullptr);
        pa_context_disconnect(context_.get());
    }
}

void PulseConnection::stateChanged(pa_context *, void *self)
{
    static_cast<PulseConnection *>(self)->signal();
}

bool PulseConnection::isReady() const
{
    if (!loop_ || !context_)
        return false;
    LoopLock lock(loop_.get());
    return pa_context_get_state(context_.get()) == PA_CONTEXT_READY;
}

bool PulseConnection::wait(const std::function<pa_operation *()> &start)
{
    return waitAll({start});
}

bool PulseConnection::waitAll(std::initializer_list<std::function<pa_operation *()>> starts)
{
    if (!isReady())
        return false;
    LoopLock lock(loop_.get());
    std::vector<OperationHandle> operations;
    bool made = true;
    for (const auto &start : starts) {
        OperationHandle operation(start());
        if (!operation) {
            capstan::NSLog(lcAudio, "the sound server refused a request: %s",
                           pa_strerror(pa_context_errno(context_.get())));
            made = false;
            break;
        }
        operations.push_back(std::move(operation));
    }
    // Requests already sent are waited for even when a later one failed: their callbacks
    // write into the caller's frame.
    for (const OperationHandle &operation : operations)
        while (pa_operation_get_state(operation.get()) == PA_OPERATION_RUNNING &&
               pa_context_get_state(context_.get()) == PA_CONTEXT_READY)
            pa_threaded_mainloop_wait(loop_.get());
    return made;
}

} // namespace pulse

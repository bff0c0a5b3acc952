#pragma once
// Owners of libpulse's reference-counted handles, so no early return leaks one.
#include <memory>
#include <pulse/pulseaudio.h>

namespace pulse {

struct LoopFree {
    void operator()(pa_threaded_mainloop *loop) const { pa_threaded_mainloop_free(loop); }
};
struct ContextUnref {
    void operator()(pa_context *context) const { pa_context_unref(context); }
};
struct StreamUnref {
    void operator()(pa_stream *stream) const { pa_stream_unref(stream); }
};
struct OperationUnref {
    void operator()(pa_operation *operation) const { pa_operation_unref(operation); }
};

using LoopHandle = std::unique_ptr<pa_threaded_mainloop, LoopFree>;
using ContextHandle = std::unique_ptr<pa_context, ContextUnref>;
using StreamHandle = std::unique_ptr<pa_stream, StreamUnref>;
using OperationHandle = std::unique_ptr<pa_operation, OperationUnref>;

} // namespace pulse

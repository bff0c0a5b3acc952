// The capture queues read the session's shared fields while the main thread starts,
// pauses and stops sessions. Run under ThreadSanitizer, any unguarded field shows.
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "RecordingMediaEncoder.h"
#include "TNRecordManager.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

TEST(SessionThreads, CaptureQueuesReadWhileTheMainThreadDrivesSessions)
{
    RecordingMediaEncoder::reset();
    FakePlatform fake;
    fake.windows.windows = {{401, "Editor", "notes", QRectF(1, 1, 301, 201)}};
    FakeSessionHost host;
    host.windowNumber = 401;
    TNRecordManager manager(fake.platform(), host);
    manager.setRecordVideoType(VideoTypeAppWindow);
    manager.setCaptureRect(QRectF(0, 0, 4, 4));
    EncodeManager &encoder = manager.encodeManager();

    std::atomic<bool> done{false};
    std::atomic<int> passed{0};
    std::thread screenQueue([&] {
        while (!done) {
            if (statusPassesFrames(manager.status()) && manager.startDate() >= 0) {
                manager.followSelectedWindow();
                (void)manager.captureRect();
                (void)manager.fileTimes();
                passed.fetch_add(1);
            }
            (void)encoder.countRecordedDuration();
        }
    });
    std::thread audioQueue([&] {
        const QByteArray samples(64, 1);
        while (!done) {
            encoder.encoderPushAudio({samples, 2, 44100});
            (void)encoder.filesize();
        }
    });

    for (int i = 0; i < 200; ++i) {
        manager.startRecording();
        manager.pauseRecording();
        manager.resumeRecording();
        manager.stopRecording();
    }
    done = true;
    screenQueue.join();
    audioQueue.join();
    EXPECT_EQ(manager.status(), RecordStatusIdle);
    EXPECT_EQ(RecordingMediaEncoder::callsNamed("apiEncoderClose").size(), 200u);
}

} // namespace

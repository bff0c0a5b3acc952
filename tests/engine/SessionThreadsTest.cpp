// The real frame path on threads: a screen queue sends pictures through the compositor
// and pushes them, a sound queue pushes buffers, while the main thread starts, pauses,
// resumes and stops recordings and sets click effects. Under ThreadSanitizer any unguarded
// field shows; in every build, a pause that falls between a frame's gate and its timestamp
// shows as a picture time that goes backwards.
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "RecordingMediaEncoder.h"
#include "TNRecordManager.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <thread>

namespace RME = RecordingMediaEncoder;

namespace {

// Picture times pushed in each recording, in the order the library got them.
std::vector<std::vector<qint64>> pictureTimesByRecording()
{
    std::vector<std::vector<qint64>> recordings;
    std::map<EncoderHandle, size_t> current;
    for (const RME::Call &call : RME::calls()) {
        if (call.name == "apiEncoderCreate") {
            current[call.handle] = recordings.size();
            recordings.emplace_back();
        } else if (call.name == "apiEncoderPushVideo") {
            recordings[current.at(call.handle)].push_back(call.args.section(',', -1).toLongLong());
        }
    }
    return recordings;
}

TEST(SessionThreads, FramesAndSoundFlowWhileTheMainThreadDrivesSessions)
{
    RME::reset();
    FakePlatform fake;
    fake.windows.windows = {{401, "Editor", "notes", QRectF(2, 2, 40, 30)}};
    FakeSessionHost host;
    host.windowNumber = 401;
    TNRecordManager manager(fake.platform(), host);
    manager.setScreen(fake.screens.list.first());
    manager.setRecordAudioType(AudioTypeSystem);
    manager.setCaptureRect(QRectF(0, 0, 34, 26));
    const PixelBufferRef picture = PixelBuffer::create(32, 24);
    picture->image().fill(Qt::darkCyan);

    std::atomic<bool> done{false};
    std::thread screenQueue([&] {
        while (!done)
            manager.captureOutput(TNRecordManager::CaptureOutput::Screen, picture);
    });
    std::thread audioQueue([&] {
        const QByteArray samples(64, 1);
        while (!done)
            manager.captureOutput(AudioSampleBuffer{samples, 2, 44100});
    });

    constexpr int kRecordings = 120;
    double t = 1000.0;
    for (int i = 0; i < kRecordings; ++i) {
        manager.setRecordVideoType(i % 3 == 2 ? VideoTypeAppWindow : VideoTypeFullScreen);
        fake.clock.time = t;
        startRecordingNow(manager);
        std::this_thread::yield();
        fake.clock.time = t + 1;
        manager.setIsCursorClick(true);
        manager.pauseRecording();
        fake.clock.time = t + 2;
        manager.resumeRecording();
        std::this_thread::yield();
        fake.clock.time = t + 3;
        manager.stopRecording();
        t += 10;
    }
    done = true;
    screenQueue.join();
    audioQueue.join();

    EXPECT_EQ(manager.status(), RecordStatusIdle);
    EXPECT_EQ(RME::openHandles(), 0);
    EXPECT_TRUE(RME::strayCalls().empty());
    const auto recordings = pictureTimesByRecording();
    ASSERT_EQ(recordings.size(), size_t(kRecordings));
    size_t pictures = 0;
    for (const auto &times : recordings) {
        pictures += times.size();
        for (size_t k = 1; k < times.size(); ++k)
            ASSERT_LE(times[k - 1], times[k]) << "picture " << k << " went back in time";
    }
    EXPECT_GT(pictures, 0u);
    EXPECT_FALSE(RME::callsNamed("apiEncoderPushAudio").empty());
}

} // namespace

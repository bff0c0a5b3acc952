#pragma once
// Fakes of the platform ports, for unit tests of logic. Each is scripted by plain
// public fields and records what it was asked.
#include "Alerts.h"
#include "CaptureInputs.h"
#include "Clock.h"
#include "MediaInspector.h"
#include "Permissions.h"
#include "Pointer.h"
#include "ScreenCatalog.h"
#include "SoundPlayer.h"
#include "StandardFolders.h"
#include "SystemVersion.h"
#include "UserDefaults.h"
#include "WindowServer.h"

#include <QColor>
#include <QHash>
#include <QMap>
#include <QStringList>
#include <atomic>
#include <mutex>

class FakeUserDefaults final : public UserDefaults {
public:
    QVariant objectForKey(const QString &key) const override;
    void setObject(const QVariant &value, const QString &key) override;
    void removeObjectForKey(const QString &key) override;
    bool synchronize() override;

    QStringList keys() const;
    QStringList writtenKeys() const; // every key written, in order, repeats included
    int synchronizeCount() const { return synchronizeCount_; }

private:
    mutable std::mutex mutex_;
    QVariantMap values_;
    QStringList written_;
    std::atomic<int> synchronizeCount_{0};
};

class FakeClock final : public Clock {
public:
    double now() const override { return time.load(); }
    std::atomic<double> time{1000.0};
};

class FakeFolders final : public StandardFolders {
public:
    QString movies, caches;
    FileSystemAttributes attributes;
    mutable QStringList askedPaths;
    QString moviesFolder() const override { return movies; }
    QString cachesFolder() const override { return caches; }
    FileSystemAttributes attributesOfFileSystemForPath(const QString &path) const override
    {
        askedPaths.append(path);
        return attributes;
    }
};

class FakeSystemVersion final : public SystemVersion {
public:
    OperatingSystemVersion version{10, 15, 0};
    OperatingSystemVersion operatingSystemVersion() const override { return version; }
};

class FakePermissions final : public Permissions {
public:
    int videoStatus = AuthorizationStatusAuthorized;
    int audioStatus = AuthorizationStatusAuthorized;
    QList<MediaType> requests;
    int authorizationStatusForMediaType(MediaType type) const override
    {
        return type == MediaType::Video ? videoStatus : audioStatus;
    }
    void requestAccessForMediaType(MediaType type, std::function<void(bool)>) override
    {
        requests.append(type);
    }
};

// Answers from a table of paths; a path not in it cannot be read.
class FakeMediaInspector final : public MediaInspector {
public:
    QHash<QString, MediaFacts> files;
    std::optional<MediaFacts> inspect(const QString &path) override
    {
        if (!files.contains(path))
            return std::nullopt;
        return files.value(path);
    }
};

class FakeAlerts final : public Alerts {
public:
    QStringList messages;
    void showModleMessage(const QString &message, const QString &) override
    {
        messages.append(message);
    }
};

// Records what the session asked; deliver() hands a frame to the sample callback the way
// the capture thread would.
class FakeScreenCaptureInput final : public ScreenCaptureInput {
public:
    qint64 display = 0;
    double minFrameDuration = 0;
    QRectF cropRect;
    QStringList calls; // "start", "stop", "crop"
    bool running = false;
    SampleCallback sampleCallback;
    SessionEventCallback eventCallback;

    void setDisplay(qint64 number) override { display = number; }
    void setMinFrameDuration(double seconds) override { minFrameDuration = seconds; }
    void setCropRect(const QRectF &rect) override
    {
        cropRect = rect;
        calls.append(QStringLiteral("crop"));
    }
    void setSampleCallback(SampleCallback callback) override
    {
        sampleCallback = std::move(callback);
    }
    void setSessionEventCallback(SessionEventCallback callback) override
    {
        eventCallback = std::move(callback);
    }
    void startRunning() override
    {
        running = true;
        calls.append(QStringLiteral("start"));
    }
    void stopRunning() override
    {
        running = false;
        calls.append(QStringLiteral("stop"));
    }
    bool isRunning() const override { return running; }
    void deliver(const PixelBufferRef &frame)
    {
        if (sampleCallback)
            sampleCallback(frame);
    }
};

class FakeCameraCaptureInput final : public CameraCaptureInput {
public:
    QStringList names{QStringLiteral("Fake Camera")};
    QString device;
    QStringList calls;
    bool running = false;
    SampleCallback sampleCallback;
    SessionEventCallback eventCallback;

    QStringList devices() const override { return names; }
    void setDevice(const QString &name) override { device = name; }
    void setSampleCallback(SampleCallback callback) override
    {
        sampleCallback = std::move(callback);
    }
    void setSessionEventCallback(SessionEventCallback callback) override
    {
        eventCallback = std::move(callback);
    }
    void startRunning() override
    {
        running = true;
        calls.append(QStringLiteral("start"));
    }
    void stopRunning() override
    {
        running = false;
        calls.append(QStringLiteral("stop"));
    }
    bool isRunning() const override { return running; }
    void deliver(const PixelBufferRef &frame)
    {
        if (sampleCallback)
            sampleCallback(frame);
    }
};

// Sound capture devices by name; deliver() hands a buffer to the sample callback.
class FakeAudioCaptureInput final : public AudioCaptureInput {
public:
    QStringList names;
    QString defaultName;
    QString device;
    int sampleRate = 0;
    int channels = 0;
    QStringList calls; // "device:NAME", "start", "stop"
    std::atomic<bool> running{false};
    AudioSampleCallback sampleCallback;
    SessionEventCallback eventCallback;

    QStringList devices() const override { return names; }
    QString defaultDevice() const override { return defaultName; }
    bool setDevice(const QString &name) override
    {
        device = name;
        calls.append(QStringLiteral("device:") + name);
        return names.contains(name);
    }
    void setFormat(int rate, int channelCount) override
    {
        sampleRate = rate;
        channels = channelCount;
    }
    void setSampleCallback(AudioSampleCallback callback) override
    {
        sampleCallback = std::move(callback);
    }
    void setSessionEventCallback(SessionEventCallback callback) override
    {
        eventCallback = std::move(callback);
    }
    void startRunning() override
    {
        running = true;
        calls.append(QStringLiteral("start"));
    }
    void stopRunning() override
    {
        running = false;
        calls.append(QStringLiteral("stop"));
    }
    bool isRunning() const override { return running; }
    void deliver(const AudioSampleBuffer &buffer)
    {
        if (sampleCallback)
            sampleCallback(buffer);
    }
};

// A pointer at a scripted place with a small drawn arrow.
class FakeSoundPlayer final : public SoundPlayer {
public:
    QStringList available{QStringLiteral("Capture"), QStringLiteral("1356")};
    QStringList played;
    bool prepareToPlay(const QString &name) override { return available.contains(name); }
    bool play(const QString &name) override
    {
        if (!available.contains(name))
            return false;
        played.append(name);
        return true;
    }
};

class FakePointer final : public Pointer {
public:
    QPointF location;
    CursorImage arrow;
    FakePointer();
    QPointF mouseLocation() const override { return location; }
    CursorImage arrowCursor() const override { return arrow; }
};

class FakeScreens final : public ScreenCatalog {
public:
    QList<ScreenInfo> list;
    QList<ScreenInfo> screens() const override { return list; }
    std::optional<ScreenInfo> mainScreen() const override
    {
        if (list.isEmpty())
            return std::nullopt;
        return list.first();
    }
};

// Windows front-most first. A description is made from the fields of each window.
class FakeWindowServer final : public WindowServer {
public:
    struct Window {
        CGWindowID number = 0;
        QString ownerName;
        QString name;
        QRectF bounds; // window-server space
        bool onScreen = true;
        qint64 pid = 0;
        int layer = 0;
        double alpha = 1.0;
    };
    QList<Window> windows;
    std::atomic<int> describeCalls{0};

    static QVariantMap describe(const Window &window);
    QList<CGWindowID> CGWindowListCreate(uint32_t option, CGWindowID relativeToWindow) override;
    QVariantList CGWindowListCopyWindowInfo(uint32_t option, CGWindowID relativeToWindow) override;
    // Images: each window is a solid block of its colour; the listed ones drawn bottom to top.
    QMap<CGWindowID, QColor> colours;
    QImage CGWindowListCreateImage(const QRectF &rect, uint32_t option,
                                   CGWindowID relativeToWindow) override;
    QImage CGWindowListCreateImageFromArray(const QRectF &rect, const QList<CGWindowID> &windows,
                                            uint32_t imageOption) override;
    QList<QRectF> imageRects; // the rectangles asked for
};

#pragma once
// Adapters for capabilities this build cannot offer on the running system.
// Each explains itself once in the log and otherwise answers "nothing".
#include "CaptureInputs.h"
#include "Pointer.h"
#include "WindowServer.h"

#include <QString>
#include <atomic>

class NullWindowServer final : public WindowServer {
public:
    QList<CGWindowID> CGWindowListCreate(uint32_t, CGWindowID) override { return {}; }
    QVariantList CGWindowListCopyWindowInfo(uint32_t, CGWindowID) override { return {}; }
    QImage CGWindowListCreateImage(const QRectF &, uint32_t, CGWindowID) override { return {}; }
    QImage CGWindowListCreateImageFromArray(const QRectF &, const QList<CGWindowID> &,
                                            uint32_t) override
    {
        return {};
    }
};

// Says once why nothing is captured.
class NullCaptureExplainer {
public:
    explicit NullCaptureExplainer(QString what) : what_(std::move(what)) {}
    void explain();

private:
    QString what_;
    std::atomic<bool> explained_{false};
};

class NullScreenCaptureInput final : public ScreenCaptureInput {
public:
    void setDisplay(qint64) override {}
    void setMinFrameDuration(double) override {}
    void setCropRect(const QRectF &) override {}
    void setSampleCallback(SampleCallback) override {}
    void setSessionEventCallback(SessionEventCallback) override {}
    void startRunning() override { explainer_.explain(); }
    void stopRunning() override {}
    bool isRunning() const override { return false; }

private:
    NullCaptureExplainer explainer_{QStringLiteral("Screen")};
};

class NullCameraCaptureInput final : public CameraCaptureInput {
public:
    QStringList devices() const override { return {}; }
    void setDevice(const QString &) override {}
    void setSampleCallback(SampleCallback) override {}
    void setSessionEventCallback(SessionEventCallback) override {}
    void startRunning() override { explainer_.explain(); }
    void stopRunning() override {}
    bool isRunning() const override { return false; }

private:
    NullCaptureExplainer explainer_{QStringLiteral("Camera")};
};

class NullPointer final : public Pointer {
public:
    QPointF mouseLocation() const override { return {}; }
    CursorImage arrowCursor() const override { return {}; }
};

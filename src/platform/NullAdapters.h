#pragma once
// Adapters for capabilities this build cannot offer yet on the running system.
// Each explains itself once in the log and otherwise answers "nothing".
#include "CaptureInputs.h"
#include "WindowServer.h"

#include <QString>
#include <atomic>

class NullWindowServer final : public WindowServer {
public:
    QList<CGWindowID> CGWindowListCreate(uint32_t, CGWindowID) override { return {}; }
    QVariantList CGWindowListCopyWindowInfo(uint32_t, CGWindowID) override { return {}; }
};

class NullCaptureInput final : public ScreenCaptureInput, public CameraCaptureInput {
public:
    explicit NullCaptureInput(QString what) : what_(std::move(what)) {}
    void setCropRect(const QRectF &) override {}
    void startRunning() override;
    void stopRunning() override {}
    bool isRunning() const override { return false; }

private:
    QString what_;
    std::atomic<bool> explained_{false};
};

#include "LogCapture.h"

namespace {
std::mutex mutex;
QStringList captured;
} // namespace

LogCapture::LogCapture()
{
    std::lock_guard lock(mutex);
    captured.clear();
    previous_ = qInstallMessageHandler(&LogCapture::handler);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(previous_);
}

QStringList LogCapture::lines() const
{
    std::lock_guard lock(mutex);
    return captured;
}

void LogCapture::handler(QtMsgType, const QMessageLogContext &, const QString &message)
{
    std::lock_guard lock(mutex);
    captured.append(message);
}

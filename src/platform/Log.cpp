#include "Log.h"

#include <cstdarg>

Q_LOGGING_CATEGORY(lcApp, "capstan.app", QtInfoMsg)
Q_LOGGING_CATEGORY(lcEngine, "capstan.engine", QtInfoMsg)
Q_LOGGING_CATEGORY(lcAudio, "capstan.audio", QtInfoMsg)
Q_LOGGING_CATEGORY(lcLibrary, "capstan.library", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPlatform, "capstan.platform", QtInfoMsg)
// Debug level is off unless enabled by logging rules: the trace stays silent by default.
Q_LOGGING_CATEGORY(lcTrace, "capstan.trace", QtInfoMsg)

namespace capstan {

void NSLog(LogCategory category, const char *format, ...)
{
    if (!category().isInfoEnabled())
        return;
    va_list args;
    va_start(args, format);
    const QString text = QString::vasprintf(format, args);
    va_end(args);
    qCInfo(category).noquote() << text;
}

} // namespace capstan

void QDLog::showMessage(const QString &message)
{
    qCDebug(lcTrace).noquote() << message;
}

#pragma once
// The program's two log channels.
//   NSLog: always on; one line per call, written through Qt's logging under a
//          subsystem category (QT_LOGGING_RULES can filter it).
//   QDLog: the developer trace channel, silent unless "capstan.trace.debug=true"
//          is set in QT_LOGGING_RULES.
#include <QLoggingCategory>
#include <QString>

Q_DECLARE_LOGGING_CATEGORY(lcApp)
Q_DECLARE_LOGGING_CATEGORY(lcEngine)
Q_DECLARE_LOGGING_CATEGORY(lcAudio)
Q_DECLARE_LOGGING_CATEGORY(lcLibrary)
Q_DECLARE_LOGGING_CATEGORY(lcPlatform)
Q_DECLARE_LOGGING_CATEGORY(lcTrace)

namespace capstan {

using LogCategory = const QLoggingCategory &(*)();

// printf-style formatting; strings go in as UTF-8 (%s with qUtf8Printable).
void NSLog(LogCategory category, const char *format, ...) __attribute__((format(printf, 2, 3)));

} // namespace capstan

class QDLog {
public:
    static void showMessage(const QString &message);
};

// A trace line naming the calling function and line, by the format "%s %d".
#define QDLOG_HERE() QDLog::showMessage(QString::asprintf("%s %d", __func__, __LINE__))

#pragma once
// Collects the program's log lines while it lives (one at a time per process).
#include <QStringList>
#include <QtMessageHandler>
#include <mutex>

class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    QStringList lines() const;
    bool contains(const QString &line) const { return lines().contains(line); }
    int count(const QString &line) const { return int(lines().count(line)); }

private:
    static void handler(QtMsgType, const QMessageLogContext &, const QString &message);
    QtMessageHandler previous_;
};

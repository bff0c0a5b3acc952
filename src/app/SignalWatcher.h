#pragma once
// Turns SIGINT and SIGTERM into a Qt signal on the main thread (self-pipe), so the
// program quits through its event loop instead of dying mid-write.
#include <QObject>

class QSocketNotifier;

class SignalWatcher : public QObject {
    Q_OBJECT
public:
    explicit SignalWatcher(QObject *parent = nullptr);
    ~SignalWatcher() override;

signals:
    void terminationRequested(int signalNumber);

private:
    QSocketNotifier *notifier_ = nullptr;
};

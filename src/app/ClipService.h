#pragma once
// The running program's door on the session bus: `capstan --clip` asks it for a still clip
// instead of starting a second program.
#include <QObject>

class AppDelegate;

class ClipService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.capstan.Capstan")
public:
    static const char *const serviceName;
    static const char *const objectPath;

    // Registers on the session bus; without a bus, or with the name taken, the program runs
    // on and says so in the log.
    explicit ClipService(AppDelegate &delegate);
    // True when a running program took the request.
    static bool askRunningInstanceToClip();

public slots:
    void Clip();

private:
    AppDelegate &delegate_;
};

#include "SignalWatcher.h"

#include <QSocketNotifier>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {
int pipeFds[2] = {-1, -1};

void onSignal(int signalNumber)
{
    const unsigned char byte = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] const ssize_t written = ::write(pipeFds[1], &byte, 1);
}
} // namespace

SignalWatcher::SignalWatcher(QObject *parent) : QObject(parent)
{
    if (::pipe2(pipeFds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    notifier_ = new QSocketNotifier(pipeFds[0], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] {
        unsigned char byte = 0;
        if (::read(pipeFds[0], &byte, 1) == 1)
            emit terminationRequested(byte);
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

SignalWatcher::~SignalWatcher()
{
    signal(SIGINT, SIG_DFL);
    signal(SIGTERM, SIG_DFL);
}

#pragma once
// A recording fake of the encoder library's C interface, for unit tests of the
// facade and the session: every call is noted with its arguments, results are scripted.
#include "MediaEncoder.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace RecordingMediaEncoder {

struct Call {
    std::string name;
    EncoderHandle handle = nullptr;
    QString args;       // the further arguments, comma separated
    QByteArray payload; // audio bytes or the video packet's first row
};

void reset();
std::vector<Call> calls();
// Just the names, in order.
QStringList callNames();
// The calls with this name.
std::vector<Call> callsNamed(const std::string &name);

// A result for every later call of the named operation (default 0, limits 1, isDone 1;
// a result set for apiEncodeIsDone replaces its polls).
void setResult(const std::string &name, int64_t result);
// apiEncodeIsDone answers 0 this many times before it answers 1.
void setPollsBeforeDone(int polls);
int handlesCreated();
// Calls of the named operation wait inside the library until releaseHeld(); heldCount()
// tells how many are waiting.
void hold(const std::string &name);
void releaseHeld();
int heldCount();
// Handles made and not yet closed.
int openHandles();
// Calls that reached the library with a handle that was not open (null, closed, never
// made): the real library refuses them with an error.
std::vector<Call> strayCalls();

} // namespace RecordingMediaEncoder

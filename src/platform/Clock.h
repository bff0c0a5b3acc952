#pragma once
// Port: the wall clock, in seconds since the epoch with microsecond resolution.
// The recording engine times everything by it.
class Clock {
public:
    virtual ~Clock() = default;
    virtual double now() const = 0;
};

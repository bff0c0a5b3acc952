#pragma once
// The steady clock that times the arrival of sound, and the switch of its correction.
// Internal to the library (not in MediaEncoder.h): tests put a clock of their own in, so
// minutes of sound can be pushed in seconds.
namespace mediaencoder {

using ClockFunction = double (*)();

// Seconds on the steady clock, or on the clock put in by setArrivalClock.
double arrivalSeconds();
// Null puts the steady clock back.
void setArrivalClock(ClockFunction clock);
// Whether sound is resampled onto the wall clock (on unless switched off, to show what
// the correction does).
bool clockCorrectionEnabled();
void setClockCorrectionEnabled(bool enabled);

} // namespace mediaencoder

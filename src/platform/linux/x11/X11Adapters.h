#pragma once
// The X11 adapters of the capture ports.
#include "X11Pointer.h"
#include "X11ScreenCaptureInput.h"
#include "X11WindowServer.h"

#include "ControlsLog.h"

Q_LOGGING_CATEGORY(lcControls, "capstan.controls", QtInfoMsg)

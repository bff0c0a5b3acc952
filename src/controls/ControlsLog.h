#pragma once
// The log category of the custom controls ("capstan.controls").
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcControls)

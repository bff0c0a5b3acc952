#pragma once
// The log category of the selection subsystem ("capstan.selection").
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcSelection)

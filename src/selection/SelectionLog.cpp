#include "SelectionLog.h"

Q_LOGGING_CATEGORY(lcSelection, "capstan.selection")

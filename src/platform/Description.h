#pragma once
// The text a log line prints for a value: dictionaries as { key = value; }, lists
// as ( a, b ), the way the program's logs have always shown them.
#include <QVariant>

QString describeValue(const QVariant &value, int indent = 0);

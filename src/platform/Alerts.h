#pragma once
// Port: the one modal alert of the program (information style, blocks until dismissed).
// The title is taken and not shown.
#include <QString>

class Alerts {
public:
    virtual ~Alerts() = default;
    virtual void showModleMessage(const QString &message, const QString &title) = 0;
};

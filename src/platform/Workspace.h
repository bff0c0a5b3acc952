#pragma once
// Port: handing files to the desktop. Opening picks the application that shows the file
// (an image viewer for screenshots, a player for the rest); selecting shows an item in the
// file manager. GUI thread only.
#include <QString>

class Workspace {
public:
    virtual ~Workspace() = default;
    // Whether an application was asked to open the file.
    virtual bool openFile(const QString &path, bool isImage) = 0;
    // Shows path selected in a file manager window of its parent folder.
    virtual void selectFile(const QString &path) = 0;
    // Opens a web address in the desktop's browser; whether one was asked.
    virtual bool openURL(const QString &url) = 0;
};

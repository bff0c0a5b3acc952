#pragma once
// The Workspace port on a freedesktop.org desktop. Files open in the desktop's default
// application for their type, so the image flag is not needed; items are shown through the
// file manager's D-Bus interface (org.freedesktop.FileManager1), and when no file manager
// answers, their folder is opened instead. GUI thread only.
#include "Workspace.h"

class DesktopWorkspace final : public Workspace {
public:
    bool openFile(const QString &path, bool isImage) override;
    // Returns at once; the file manager's answer, or its absence, comes later.
    void selectFile(const QString &path) override;
    bool openURL(const QString &url) override;
};

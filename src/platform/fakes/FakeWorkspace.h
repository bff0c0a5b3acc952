#pragma once
// Fake of the Workspace port: records what was asked to be opened or shown.
#include "Workspace.h"

#include <QList>
#include <QStringList>

class FakeWorkspace final : public Workspace {
public:
    struct Opened {
        QString path;
        bool isImage = false;
    };
    QList<Opened> opened;
    QStringList selected;
    bool openAnswer = true;

    bool openFile(const QString &path, bool isImage) override
    {
        opened.append({path, isImage});
        return openAnswer;
    }
    void selectFile(const QString &path) override { selected.append(path); }
    QStringList urls;
    bool openURL(const QString &url) override
    {
        urls.append(url);
        return openAnswer;
    }
};

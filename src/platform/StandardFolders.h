#pragma once
// Port: the user's standard folders and the free space of a file system.
#include <QString>
#include <QtGlobal>

struct FileSystemAttributes {
    qint64 freeSize = 0;  // bytes
    qint64 totalSize = 0; // bytes
};

class StandardFolders {
public:
    virtual ~StandardFolders() = default;
    virtual QString moviesFolder() const = 0;
    virtual QString cachesFolder() const = 0;
    // Zero sizes when the path cannot be asked.
    virtual FileSystemAttributes attributesOfFileSystemForPath(const QString &path) const = 0;
};

#pragma once
// Keeps access to files the user picked. There is no sandbox on Linux: the bookmark
// data is the file's canonical absolute path, stored in the user defaults under
// "Access:" followed by the decimal FNV-1a 64 hash of the UTF-8 path.
#include <QString>

class UserDefaults;

class QDBookmark {
public:
    explicit QDBookmark(UserDefaults &defaults);

    // Whether a bookmark was made (the file must exist).
    bool saveOpenFileToBookmarkWithFilePath(const QString &filePath);
    // True when the bookmark resolves to a readable file; else the stale flag; false
    // when nothing was saved for the path.
    bool BookmarkStartAccessingSecurityScopedResourceWithFilePath(const QString &filePath);
    // The stale flag of the resolution; false when nothing was saved for the path.
    bool BookmarkStopAccessingSecurityScopedResourceWithFilePath(const QString &filePath);
    // Whether a bookmark existed.
    bool removeFileBookmarkInfoWithFilePath(const QString &filePath);

    static quint64 hash(const QString &filePath);
    static QString keyForPath(const QString &filePath);

private:
    struct Resolution {
        bool resolved = false;
        bool stale = false;
    };
    // False when nothing is stored for the path.
    bool resolve(const QString &filePath, Resolution *resolution) const;
    UserDefaults &defaults_;
};

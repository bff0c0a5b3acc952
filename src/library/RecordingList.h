#pragma once
// The list of finished recordings and screenshots: an XML property list whose root
// is an array of dictionaries, newest first. Records are kept as property-list nodes,
// so keys this program does not know survive a rewrite.
#include "PlistPtr.h"

#include <QString>
#include <QVariantMap>
#include <optional>
#include <variant>

// One entry. Keys are written in this order: "path", "name", "duration", "size",
// "date", then "isVideo" (movies and sound) or "isImage" (screenshots).
struct RecordingRecord {
    QString path;
    QString name;
    std::variant<float, qint64> duration; // seconds: float for movies, integer 0 for images
    std::variant<float, quint64> size;    // bytes: float for movies, unsigned for images
    QString date;                         // "yyyy/MM/dd HH:mm:ss"
    std::optional<qint64> isVideo;
    std::optional<qint64> isImage;

    static RecordingRecord movie(const QString &path, float duration, float size,
                                 const QString &date, bool audioOnly);
    static RecordingRecord screenshot(const QString &path, quint64 size, const QString &date);
};

class RecordingList {
public:
    RecordingList();
    // A missing, empty, unreadable or non-array file gives an empty list.
    static RecordingList read(const QString &plistPath);

    qsizetype count() const;
    // The record's keys and values; reals as double, integers as qulonglong.
    QVariantMap recordAt(qsizetype index) const;
    QString pathAt(qsizetype index) const;
    // "isImage" is the one flag readers look at; absent reads false.
    bool isImageAt(qsizetype index) const;

    void insertAtFront(const RecordingRecord &record);
    // Removes every record whose "path" equals path, walking from the last; returns how many.
    int removeRecordsWithPath(const QString &path);

    // Writes the whole list to a temporary file and renames it over the target.
    bool writeAtomically(const QString &plistPath) const;
    // The store's replace step: delete the file first, then write.
    bool replaceFile(const QString &plistPath) const;

private:
    explicit RecordingList(PlistPtr array);
    PlistPtr array_;
};

// Adds one record at the front of the list in the file: read, insert, delete, write.
// A failed write logs "存储数据失败"; the old list is gone then, as the delete came first.
bool addRecordToList(const QString &plistPath, const RecordingRecord &record);

// Removes a recording: every record of path leaves the list, the list file is replaced
// (deleted, then written), then the media file itself is deleted. Neither failure is
// reported: a file that cannot be deleted stays, while its records are gone all the same.
void removeRecordingFromList(RecordingList &list, const QString &plistPath, const QString &path);

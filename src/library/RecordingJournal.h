#pragma once
// The note a running recording leaves beside the list: where it writes, what it is, when it
// began, and the sound devices that were the desktop's defaults before the program changed
// them. Written at the start, removed by the stop sequence; one left behind at the next start
// means the program ended in the middle of a recording, and its files are entered then.
#include <QString>
#include <QStringList>
#include <optional>

class MediaInspector;

struct RecordingJournal {
    QString path; // the first file; a split continues in NAME_2.EXT, NAME_3.EXT…
    bool audioOnly = false;
    QString date; // "yyyy/MM/dd HH:mm:ss", as the list writes it
    QString defaultInputUID;
    QString defaultOutputUID;

    // Atomically (a whole journal or the old one); whether it was written.
    bool write(const QString &journalPath) const;
    // Nothing when there is no journal or it cannot be read.
    static std::optional<RecordingJournal> read(const QString &journalPath);
};

// The files a recording may have made: path, then its split parts while they exist.
QStringList recordingParts(const QString &path);

struct RecoveredRecordings {
    QStringList entered;    // read back and added to the list, in recording order
    QStringList unreadable; // present but not media: left alone, never deleted
};

// Reads each file of the journal's recording back and adds the readable ones to the list at
// plistPath, newest part first on top, as the stop sequence would have.
RecoveredRecordings recoverRecordings(const RecordingJournal &journal, MediaInspector &media,
                                      const QString &plistPath);

#pragma once
// The window that lists the recordings and screenshots of the list file, newest on top, with
// four buttons: play, edit, show in the folder, delete. Files open in the desktop's
// applications (through Workspace); a file that has gone says so through Alerts and keeps its
// record. The window is made once by its owner and kept; it is not modal. GUI thread only.
//
// Ownership: the window owns its widgets; the Workspace and Alerts ports belong to the owner
// and must outlive the window.
#include "RecordingList.h"

#include <QString>
#include <QWidget>
#include <array>

class Alerts;
class FileTableView;
class QLabel;
class TNButton;
class Workspace;

class FileListWindowController : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWindowWidth = 628;
    static constexpr int kWindowHeight = 450;

    FileListWindowController(Workspace &workspace, Alerts &alerts, QWidget *parent = nullptr);

    // Reads the list file and shows it; the recording folder is made if it is missing.
    // Runs each time the window is brought up.
    void setUPData(const QString &plistPath, const QString &recordingFolder);
    // The titles in the current language; also run when a language table is installed.
    void ChangeLoanguage();

    // All act on the table's selected row.
    void playBtnAction();
    void editBtnAction();
    void openDirBtnAction();
    // Removes the row's records and its file at once, without asking.
    void deletedBtnAction();

    QLabel *titleLabel() const { return titleLabel_; }
    QWidget *tableViewHeader() const { return tableViewHeader_; }
    FileTableView *tableView() const { return tableView_; }
    TNButton *playBtn() const { return playBtn_; }
    TNButton *editBtn() const { return editBtn_; }
    TNButton *openDirBtn() const { return openDirBtn_; }
    TNButton *deletedBtn() const { return deletedBtn_; }
    const RecordingList &tableContents() const { return tableContents_; }
    QString deskPath() const { return deskPath_; }

    static QColor windowColor();
    static QColor contentColor();

protected:
    void changeEvent(QEvent *event) override;

private:
    // Opens the record's file with the application for its kind, or tells that it is gone.
    void openRecord(const QVariantMap &record);
    // The record at the table's selected row; false, after a log line, when there is none.
    bool selectedRecord(const char *operation, QVariantMap *record) const;
    QList<QVariantMap> records() const;
    void setButtonsEnabled(std::initializer_list<TNButton *> buttons, bool enabled);

    Workspace &workspace_;
    Alerts &alerts_;
    QWidget *contentView_;
    QLabel *titleLabel_;
    QWidget *tableViewHeader_;
    // The column titles, left to right (header tags 10, 20, 30, 40).
    std::array<QLabel *, 4> headerLabels_{};
    FileTableView *tableView_;
    TNButton *playBtn_;
    TNButton *editBtn_;
    TNButton *openDirBtn_;
    TNButton *deletedBtn_;
    RecordingList tableContents_;
    QString plistPath_;
    QString deskPath_;
};

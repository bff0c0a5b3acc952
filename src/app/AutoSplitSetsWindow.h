#pragma once
// The automatic split: the encoder starts a new file every so many seconds or megabytes, for
// this recording only or for every one. Made at each opening and run with exec(); after OK,
// choice() holds the choice for the controller to hand to the encoder and store.
#include "TimedRecordingWindows.h"

#include <optional>

class AutoSplitSetsWindow : public TimedRuleWindow {
    Q_OBJECT
public:
    // The settings window's limits for the same values.
    static constexpr qint32 kLargestTime = 999;  // seconds
    static constexpr qint32 kLargestSize = 9999; // MB

    struct Values {
        qint32 splitTime = 0; // the encoder's; shown within the limits
        qint32 splitSize = 0;
        bool splitAlway = false; // "SplitAlway"
        qint64 splitType = 0;    // "SplitType": 0 off, 1 by time, 2 by size
    };
    struct Result {
        bool enabled = false; // check box 100; off, only splitType (0) is to be stored
        bool isAutoSplitOnce = false;
        qint32 splitTime = 0;
        qint32 splitSize = 0;
        qint64 splitType = 0; // 1 by time, 2 by size, 0 when off
        bool splitAlway = false;
    };

    explicit AutoSplitSetsWindow(const Values &values, QWidget *parent = nullptr);

    // Set by OK only.
    const std::optional<Result> &choice() const { return choice_; }

public slots:
    void okBtnAction() override;

private:
    std::optional<Result> choice_;
};

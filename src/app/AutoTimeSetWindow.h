#pragma once
// The fixed stop rule: stop after a number of recorded seconds or at a file size, for this
// recording only or for every one, and what to do once stopped. Made at each opening and run
// with exec(); after OK, choice() holds the choice for the controller to apply and store.
#include "TimedRecordingWindows.h"

#include <optional>

class QComboBox;

class AutoTimeSetWindow : public TimedRuleWindow {
    Q_OBJECT
public:
    // The longest number a field takes: nine digits.
    static constexpr qint64 kLargestValue = 999999999;

    struct Values {
        bool everyTime = false;
        bool isRecordEndSizeType = false;
        double recordEndTimeDuration = 0; // seconds; 0 shows 600
        double recordEndFileSize = 0;     // MB; 0 shows 100
        qint64 finshIndex = 1;            // "AutoStop_FinshIndex"; not 1 or 2 shows 1
    };
    struct Result {
        bool enabled = false; // check box 100; off, the controller disarms the rule
        bool isAutoStopOnce = false;
        double recordEndTimeDuration = 0;
        double recordEndFileSize = 0;
        bool everyTime = false; // false whenever the rule is off
        bool isRecordEndSizeType = false;
        qint64 finshpopIndex = 1; // 1 nothing further, 2 quit
    };

    explicit AutoTimeSetWindow(const Values &values, QWidget *parent = nullptr);

    // Set by OK only.
    const std::optional<Result> &choice() const { return choice_; }

    QLabel *completeLabel = nullptr;
    QComboBox *finshpopBtn = nullptr;

public slots:
    void okBtnAction() override;
    // Digits only: any other character turns the field to 0.
    void controlTextDidChange(QLineEdit *field);
    void ChangeLoanguage() override;

private:
    std::optional<Result> choice_;
};

#pragma once
// What the three windows of timed recording share: their dark look, the naming of their
// controls for the accessibility tree, the reading of their number fields, and the form of the
// two rule windows (automatic stop, automatic split). The windows only show values and hand
// back what the user chose; the controller applies and stores it. GUI thread only.
#include <QDialog>

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace TimedRecording {

inline constexpr int kNoTag = -1;

// The key or name goes in the accessible description and the tag in the "tag" property: how
// end-to-end tests find a control through AT-SPI.
void describe(QWidget *widget, const QString &description, int tag = kNoTag);
// The main window's colours, greyed text for disabled controls.
void applyDarkLook(QWidget *window);
// ASCII digits only; the empty text counts as digits.
bool isAllDigits(const QString &text);
// A field's number: 0 when empty or not all digits, at most `largest` however long the text.
qint64 fieldValue(const QLineEdit *field, qint64 largest);

} // namespace TimedRecording

// The form of both rule windows: check box 100 arms the rule; radios 1 and 2 choose a time or
// a size limit, each with its number field (1000, 2000); radios 200 and 300 choose this
// recording only or every recording. OK (10) hands the choice out, Cancel (20) and the close
// box end the window with nothing.
class TimedRuleWindow : public QDialog {
    Q_OBJECT
public:
    // The texts' keys; each is also the description of the control it titles.
    struct Keys {
        const char *title;
        const char *enable;
        const char *byTime;
        const char *bySize;
        const char *timeUnit;
        const char *sizeUnit;
        const char *once;
        const char *everyTime;
    };

    QCheckBox *enableBox = nullptr;
    QRadioButton *timeRadio = nullptr;
    QRadioButton *sizeRadio = nullptr;
    QLineEdit *timeField = nullptr;
    QLineEdit *sizeField = nullptr;
    QLabel *timeUnit = nullptr;
    QLabel *sizeUnit = nullptr;
    QRadioButton *onceRadio = nullptr;
    QRadioButton *everyTimeRadio = nullptr;
    QPushButton *okButton = nullptr;
    QPushButton *cancelButton = nullptr;

public slots:
    // Radios 1 and 2. While the rule is off a click only clears the sender.
    void setsAction(QRadioButton *sender);
    // Check box 100: every control of the rule follows it.
    void autoStopRecordBtnChange();
    void onlyonceAction();
    void everyTimeAction();
    virtual void okBtnAction() = 0;
    virtual void ChangeLoanguage();

protected:
    TimedRuleWindow(const Keys &keys, QWidget *parent);
    // The state of the controls at opening; the enabling follows from it.
    void loadChoice(bool enabled, bool bySize, bool everyTime);
    // A labelled control below the form's rows that follows check box 100 like the others.
    void addRuleRow(QLabel *label, QWidget *control);
    void changeEvent(QEvent *event) override;

private:
    QLineEdit *fieldOf(const QRadioButton *radio) const;

    Keys keys_;
    QGridLayout *form_ = nullptr;
    QList<QWidget *> ruleControls_; // what check box 100 enables, fields apart
};

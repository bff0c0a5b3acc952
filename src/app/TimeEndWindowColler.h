#pragma once
// The plain time limit of a recording: none, 30 minutes, 60 minutes, or a custom length typed
// as hours, minutes and seconds. Made at each opening and run with exec(); after OK, choice()
// holds the choice. It neither stores nor arms anything: the limit counts only under an armed
// stop rule by time.
#include <QDialog>
#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

class TimeEndWindowColler : public QDialog {
    Q_OBJECT
public:
    struct Result {
        qint64 endTimeType = 0; // 0 none, 1 30 minutes, 2 60 minutes, 3 custom
        double recordEndTimeDuration = 0;
    };

    // An endTimeType outside 0..3 opens as no limit; the fields show the duration only for 3.
    TimeEndWindowColler(qint64 endTimeType, double recordEndTimeDuration, bool audioOnly,
                        QWidget *parent = nullptr);
    ~TimeEndWindowColler() override;

    // Set by OK only.
    const std::optional<Result> &choice() const { return choice_; }
    qint64 endTimeType() const { return endTimeType_; }

    QLabel *titleLabel = nullptr;
    QLabel *messageLabel = nullptr;
    QRadioButton *noTimeBtn = nullptr;
    QRadioButton *time_30Btn = nullptr;
    QRadioButton *time_60Btn = nullptr;
    QRadioButton *customTimeBtn = nullptr;
    QLineEdit *hourTime = nullptr;
    QLineEdit *minTime = nullptr;
    QLineEdit *secTime = nullptr;
    QPushButton *okBtn = nullptr;

public slots:
    // endTimeType := tag / 10 - 1; only the custom choice lets the fields be edited.
    void itemChangeAction(QRadioButton *sender);
    // A field clicked into is taken whole, so the next digits replace it.
    void textBecomeAction(QLineEdit *field);
    // While typing: not all digits empties the field; above 60 gives "59"; empty gives "00".
    void controlTextDidChange(QLineEdit *field);
    // Once typed: the same, without the digit test.
    void controlTextDidEndEditing(QLineEdit *field);
    void okBtnAction();
    void ChangeLoanguage();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QLineEdit *timeField(const char *name);
    QLayout *customRow();
    // The replacement the limits give for a number, or the text unchanged.
    static QString limited(const QString &text);
    void fillFields(double duration);

    bool audioOnly_;
    qint64 endTimeType_ = 0;
    QList<QWidget *> customControls_; // fields and separators
    std::optional<Result> choice_;
};

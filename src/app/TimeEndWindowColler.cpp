#include "TimeEndWindowColler.h"

#include "Localization.h"
#include "TimedRecordingWindows.h"

#include <QEvent>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

using Localization::localizedStringForKey;
using namespace TimedRecording;

namespace {

// The longest duration the fields are filled with: the automatic stop's nine digits.
constexpr double kLongestDuration = 999999999;
// Past any field's limit, however many digits were loaded.
constexpr qint64 kLargestField = 999999;

QString twoDigits(qint64 value)
{
    return QString::asprintf("%02lli", value);
}

QRadioButton *choiceButton(QWidget *parent, const char *name, int tag)
{
    auto *button = new QRadioButton(parent);
    describe(button, QString::fromLatin1(name), tag);
    return button;
}

} // namespace

TimeEndWindowColler::TimeEndWindowColler(qint64 endTimeType, double recordEndTimeDuration,
                                         bool audioOnly, QWidget *parent)
    : QDialog(parent), audioOnly_(audioOnly)
{
    describe(this, QStringLiteral("TimeEndWindowColler"));
    setModal(true);
    applyDarkLook(this);
    titleLabel = new QLabel(this);
    describe(titleLabel, QStringLiteral("TM_MessageLabel_Title"));
    QFont headline = titleLabel->font();
    headline.setBold(true);
    titleLabel->setFont(headline);
    messageLabel = new QLabel(this);
    describe(messageLabel, audioOnly ? QStringLiteral("TM_MessageLabel_Audio")
                                     : QStringLiteral("TM_MessageLabel_Video"));
    messageLabel->setWordWrap(true);
    noTimeBtn = choiceButton(this, "noTimeBtn", 10);
    time_30Btn = choiceButton(this, "time_30Btn", 20);
    time_60Btn = choiceButton(this, "time_60Btn", 30);
    customTimeBtn = choiceButton(this, "customTimeBtn", 40);
    okBtn = new QPushButton(this);
    describe(okBtn, QStringLiteral("okBtn"));
    okBtn->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(titleLabel);
    layout->addWidget(messageLabel);
    for (QRadioButton *button : {noTimeBtn, time_30Btn, time_60Btn})
        layout->addWidget(button);
    layout->addLayout(customRow());
    layout->addWidget(okBtn, 0, Qt::AlignRight);

    for (QRadioButton *button : {noTimeBtn, time_30Btn, time_60Btn, customTimeBtn})
        connect(button, &QRadioButton::clicked, this, [this, button] { itemChangeAction(button); });
    connect(okBtn, &QPushButton::clicked, this, &TimeEndWindowColler::okBtnAction);

    const QList<QRadioButton *> choices{noTimeBtn, time_30Btn, time_60Btn, customTimeBtn};
    const bool known = endTimeType >= 0 && endTimeType < choices.size();
    itemChangeAction(choices[known ? endTimeType : 0]);
    if (endTimeType_ == 3)
        fillFields(recordEndTimeDuration);
    ChangeLoanguage();
}

TimeEndWindowColler::~TimeEndWindowColler()
{
    // The dialog hides as it goes, and the field that loses the focus then says it finished
    // editing: by then only the QDialog part of this window is left to answer.
    for (QLineEdit *field : {hourTime, minTime, secTime}) {
        field->removeEventFilter(this);
        disconnect(field, nullptr, this, nullptr);
    }
}

QLineEdit *TimeEndWindowColler::timeField(const char *name)
{
    auto *field = new QLineEdit(QStringLiteral("00"), this);
    describe(field, QString::fromLatin1(name));
    field->setAlignment(Qt::AlignCenter);
    field->setFixedWidth(48);
    field->installEventFilter(this);
    connect(field, &QLineEdit::textEdited, this, [this, field] { controlTextDidChange(field); });
    connect(field, &QLineEdit::editingFinished, this,
            [this, field] { controlTextDidEndEditing(field); });
    customControls_ << field;
    return field;
}

QLayout *TimeEndWindowColler::customRow()
{
    hourTime = timeField("hourTime");
    minTime = timeField("minTime");
    secTime = timeField("secTime");
    // Minutes and seconds are two digits; the hours may have been filled with more.
    minTime->setMaxLength(2);
    secTime->setMaxLength(2);
    auto *row = new QHBoxLayout;
    row->addWidget(customTimeBtn);
    row->addStretch();
    for (QLineEdit *field : {hourTime, minTime, secTime}) {
        if (field != hourTime) {
            auto *separator = new QLabel(QStringLiteral(":"), this);
            customControls_ << separator;
            row->addWidget(separator);
        }
        row->addWidget(field);
    }
    return row;
}

void TimeEndWindowColler::fillFields(double duration)
{
    const auto seconds =
        qint64(std::isfinite(duration) ? std::clamp(duration, 0.0, kLongestDuration) : 0.0);
    hourTime->setText(twoDigits(seconds / 3600));
    minTime->setText(twoDigits(seconds % 3600 / 60));
    secTime->setText(twoDigits(seconds % 60));
}

void TimeEndWindowColler::itemChangeAction(QRadioButton *sender)
{
    sender->setChecked(true);
    endTimeType_ = sender->property("tag").toInt() / 10 - 1;
    const bool custom = sender == customTimeBtn;
    for (QWidget *control : std::as_const(customControls_))
        control->setEnabled(custom);
    if (custom)
        return;
    for (QLineEdit *field : {hourTime, minTime, secTime})
        field->setText(QStringLiteral("00"));
}

void TimeEndWindowColler::textBecomeAction(QLineEdit *field)
{
    field->setFocus();
    field->selectAll();
}

QString TimeEndWindowColler::limited(const QString &text)
{
    if (text.isEmpty())
        return QStringLiteral("00");
    bool number = false;
    const qint64 value = text.toLongLong(&number);
    // 60 itself stays, in the hours too: the limits have always let it through.
    if (value > 60 || (!number && isAllDigits(text)))
        return QStringLiteral("59");
    if (value < 0)
        return QStringLiteral("00");
    return text;
}

void TimeEndWindowColler::controlTextDidChange(QLineEdit *field)
{
    const QString text = field->text();
    const QString replacement = isAllDigits(text) ? limited(text) : QString();
    if (replacement == text)
        return;
    field->setText(replacement);
    // Taken whole, so the next digit typed replaces it rather than being refused.
    field->selectAll();
}

void TimeEndWindowColler::controlTextDidEndEditing(QLineEdit *field)
{
    const QString replacement = limited(field->text());
    if (replacement != field->text())
        field->setText(replacement);
}

void TimeEndWindowColler::okBtnAction()
{
    double duration = 0;
    if (time_30Btn->isChecked())
        duration = 1800.0;
    else if (time_60Btn->isChecked())
        duration = 3600.0;
    else if (customTimeBtn->isChecked())
        duration =
            double(fieldValue(hourTime, kLargestField) * 3600 +
                   fieldValue(minTime, kLargestField) * 60 + fieldValue(secTime, kLargestField));
    // A custom length of nothing is no limit.
    if (duration == 0)
        itemChangeAction(noTimeBtn);
    choice_ = Result{endTimeType_, duration};
    accept();
}

void TimeEndWindowColler::ChangeLoanguage()
{
    const QString title = localizedStringForKey(QStringLiteral("TM_MessageLabel_Title"));
    setWindowTitle(title);
    titleLabel->setText(title);
    messageLabel->setText(localizedStringForKey(audioOnly_
                                                    ? QStringLiteral("TM_MessageLabel_Audio")
                                                    : QStringLiteral("TM_MessageLabel_Video")));
    noTimeBtn->setText(localizedStringForKey(QStringLiteral("TM_NoTime")));
    time_30Btn->setText(localizedStringForKey(QStringLiteral("TM_30MinTime")));
    time_60Btn->setText(localizedStringForKey(QStringLiteral("TM_60MinTime")));
    customTimeBtn->setText(localizedStringForKey(QStringLiteral("TM_CustonTime")));
    okBtn->setText(localizedStringForKey(QStringLiteral("TM_OK")));
}

bool TimeEndWindowColler::eventFilter(QObject *watched, QEvent *event)
{
    auto *field = qobject_cast<QLineEdit *>(watched);
    if (field && event->type() == QEvent::FocusIn &&
        static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason) {
        // After the press that placed the cursor, which would undo the selection.
        QTimer::singleShot(0, field, [this, field] { textBecomeAction(field); });
    }
    return QDialog::eventFilter(watched, event);
}

void TimeEndWindowColler::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        ChangeLoanguage();
}

#include "TimedRecordingWindows.h"

#include "Localization.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

using Localization::localizedStringForKey;

namespace TimedRecording {

void describe(QWidget *widget, const QString &description, int tag)
{
    widget->setAccessibleDescription(description);
    if (tag != kNoTag)
        widget->setProperty("tag", tag);
}

void applyDarkLook(QWidget *window)
{
    const QColor text(232, 232, 232);
    const QColor greyed(120, 126, 132);
    QPalette palette = window->palette();
    palette.setColor(QPalette::Window, QColor(47, 55, 65));
    palette.setColor(QPalette::Base, QColor(31, 31, 40));
    palette.setColor(QPalette::Button, QColor(56, 66, 78));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, greyed);
    palette.setColor(QPalette::Highlight, QColor(56, 116, 175));
    window->setPalette(palette);
    window->setAutoFillBackground(true);
}

bool isAllDigits(const QString &text)
{
    // Only ASCII: other scripts' digits would read as 0.
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
}

qint64 fieldValue(const QLineEdit *field, qint64 largest)
{
    QString text = field->text();
    if (!isAllDigits(text))
        return 0;
    while (text.startsWith(QLatin1Char('0')))
        text.remove(0, 1);
    // Eighteen digits always fit; anything longer is past any largest value.
    if (text.size() > 18)
        return largest;
    return std::min(text.toLongLong(), largest);
}

} // namespace TimedRecording

using namespace TimedRecording;

namespace {

QLineEdit *numberField(QWidget *parent, int tag)
{
    auto *field = new QLineEdit(parent);
    describe(field, QString::number(tag), tag);
    field->setAlignment(Qt::AlignRight);
    field->setFixedWidth(100);
    return field;
}

QRadioButton *radio(QWidget *parent, const char *key, int tag)
{
    auto *button = new QRadioButton(parent);
    describe(button, QString::fromLatin1(key), tag);
    // The actions decide which radios go off together, not the common parent.
    button->setAutoExclusive(false);
    return button;
}

} // namespace

TimedRuleWindow::TimedRuleWindow(const Keys &keys, QWidget *parent) : QDialog(parent), keys_(keys)
{
    setModal(true);
    applyDarkLook(this);
    enableBox = new QCheckBox(this);
    describe(enableBox, QString::fromLatin1(keys.enable), 100);
    timeRadio = radio(this, keys.byTime, 1);
    sizeRadio = radio(this, keys.bySize, 2);
    timeField = numberField(this, 1000);
    sizeField = numberField(this, 2000);
    timeUnit = new QLabel(this);
    describe(timeUnit, QString::fromLatin1(keys.timeUnit));
    sizeUnit = new QLabel(this);
    describe(sizeUnit, QString::fromLatin1(keys.sizeUnit));
    onceRadio = radio(this, keys.once, 200);
    everyTimeRadio = radio(this, keys.everyTime, 300);
    okButton = new QPushButton(this);
    describe(okButton, QStringLiteral("btnOK"), 10);
    okButton->setDefault(true);
    cancelButton = new QPushButton(this);
    describe(cancelButton, QStringLiteral("btnCancel"), 20);
    ruleControls_ = {timeRadio, sizeRadio, timeUnit, sizeUnit, onceRadio, everyTimeRadio};

    form_ = new QGridLayout;
    form_->addWidget(enableBox, 0, 0, 1, 3);
    form_->addWidget(timeRadio, 1, 0);
    form_->addWidget(timeField, 1, 1);
    form_->addWidget(timeUnit, 1, 2);
    form_->addWidget(sizeRadio, 2, 0);
    form_->addWidget(sizeField, 2, 1);
    form_->addWidget(sizeUnit, 2, 2);
    form_->addWidget(onceRadio, 3, 0);
    form_->addWidget(everyTimeRadio, 3, 1, 1, 2);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancelButton);
    buttons->addWidget(okButton);
    auto *outer = new QVBoxLayout(this);
    outer->setSizeConstraint(QLayout::SetFixedSize);
    outer->addLayout(form_);
    outer->addSpacing(8);
    outer->addLayout(buttons);

    connect(enableBox, &QCheckBox::toggled, this, &TimedRuleWindow::autoStopRecordBtnChange);
    connect(timeRadio, &QRadioButton::clicked, this, [this] { setsAction(timeRadio); });
    connect(sizeRadio, &QRadioButton::clicked, this, [this] { setsAction(sizeRadio); });
    connect(onceRadio, &QRadioButton::clicked, this, &TimedRuleWindow::onlyonceAction);
    connect(everyTimeRadio, &QRadioButton::clicked, this, &TimedRuleWindow::everyTimeAction);
    connect(okButton, &QPushButton::clicked, this, [this] { okBtnAction(); });
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::reject);
}

void TimedRuleWindow::addRuleRow(QLabel *label, QWidget *control)
{
    const int row = form_->rowCount();
    form_->addWidget(label, row, 0);
    form_->addWidget(control, row, 1, 1, 2);
    ruleControls_ << label << control;
    autoStopRecordBtnChange();
}

QLineEdit *TimedRuleWindow::fieldOf(const QRadioButton *radio) const
{
    return radio == timeRadio ? timeField : sizeField;
}

void TimedRuleWindow::loadChoice(bool enabled, bool bySize, bool everyTime)
{
    timeRadio->setChecked(!bySize);
    sizeRadio->setChecked(bySize);
    everyTimeRadio->setChecked(everyTime);
    onceRadio->setChecked(!everyTime);
    enableBox->setChecked(enabled);
    // toggled() doesn't come when the box keeps its state.
    autoStopRecordBtnChange();
}

void TimedRuleWindow::setsAction(QRadioButton *sender)
{
    if (!enableBox->isChecked()) {
        sender->setChecked(false);
        return;
    }
    // A click on the chosen radio would clear it: it stays the choice.
    sender->setChecked(true);
    QRadioButton *other = sender == timeRadio ? sizeRadio : timeRadio;
    other->setChecked(false);
    fieldOf(other)->setEnabled(false);
    fieldOf(sender)->setEnabled(true);
    fieldOf(sender)->setFocus();
}

void TimedRuleWindow::autoStopRecordBtnChange()
{
    const bool on = enableBox->isChecked();
    for (QWidget *control : std::as_const(ruleControls_))
        control->setEnabled(on);
    timeField->setEnabled(on && timeRadio->isChecked());
    sizeField->setEnabled(on && sizeRadio->isChecked());
}

void TimedRuleWindow::onlyonceAction()
{
    onceRadio->setChecked(true);
    everyTimeRadio->setChecked(false);
}

void TimedRuleWindow::everyTimeAction()
{
    everyTimeRadio->setChecked(true);
    onceRadio->setChecked(false);
}

void TimedRuleWindow::ChangeLoanguage()
{
    const auto text = [](const char *key) {
        return localizedStringForKey(QString::fromLatin1(key));
    };
    setWindowTitle(text(keys_.title));
    enableBox->setText(text(keys_.enable));
    timeRadio->setText(text(keys_.byTime));
    sizeRadio->setText(text(keys_.bySize));
    timeUnit->setText(text(keys_.timeUnit));
    sizeUnit->setText(text(keys_.sizeUnit));
    // A field has no text of its own to be named by: its unit names it.
    timeField->setAccessibleName(timeUnit->text());
    sizeField->setAccessibleName(sizeUnit->text());
    onceRadio->setText(text(keys_.once));
    everyTimeRadio->setText(text(keys_.everyTime));
    okButton->setText(localizedStringForKey(QStringLiteral("btnOK")));
    cancelButton->setText(localizedStringForKey(QStringLiteral("btnCancel")));
}

void TimedRuleWindow::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        ChangeLoanguage();
}

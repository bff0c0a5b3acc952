#include "AutoSplitSetsWindow.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <algorithm>

using namespace TimedRecording;

namespace {

// The window has no title of its own: the check box's text names it.
const TimedRuleWindow::Keys kKeys{"lblEnabledAutoSplit",     "lblEnabledAutoSplit",
                                  "lblSplitByTime",          "lblSplitBySize",
                                  "Auto_lblSecond",          "Auto_lblMB",
                                  "Auto_lblStopSettingOnce", "Auto_lblStopSettingEveryTime"};

// Digits only, as many as the largest value has: typing or pasting can't leave the range.
void limit(QLineEdit *field, qint32 largest, qint32 value)
{
    const int digits = int(QString::number(largest).size());
    field->setMaxLength(digits);
    field->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[0-9]{0,%1}").arg(digits)), field));
    field->setText(QString::number(std::clamp(value, 0, largest)));
}

} // namespace

AutoSplitSetsWindow::AutoSplitSetsWindow(const Values &values, QWidget *parent)
    : TimedRuleWindow(kKeys, parent)
{
    describe(this, QStringLiteral("AutoSplitSetsWindow"));
    limit(timeField, kLargestTime, values.splitTime);
    limit(sizeField, kLargestSize, values.splitSize);
    // Only a split kept for every recording opens ticked; one for this recording only opens
    // unticked, by time, whatever it was.
    const bool armed = values.splitAlway && values.splitType != 0;
    const bool bySize = values.splitAlway && values.splitType == 2;
    loadChoice(armed, bySize, values.splitAlway);
    ChangeLoanguage();
}

void AutoSplitSetsWindow::okBtnAction()
{
    Result result;
    result.enabled = enableBox->isChecked();
    result.isAutoSplitOnce = onceRadio->isChecked();
    result.splitTime = qint32(fieldValue(timeField, kLargestTime));
    result.splitSize = qint32(fieldValue(sizeField, kLargestSize));
    if (result.enabled)
        result.splitType = timeRadio->isChecked() ? 1 : sizeRadio->isChecked() ? 2 : 0;
    result.splitAlway = everyTimeRadio->isChecked();
    choice_ = result;
    accept();
}

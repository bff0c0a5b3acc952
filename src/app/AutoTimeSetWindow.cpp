#include "AutoTimeSetWindow.h"

#include "Localization.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QRadioButton>
#include <QStandardItemModel>
#include <cmath>

using Localization::localizedStringForKey;
using namespace TimedRecording;

namespace {

const TimedRuleWindow::Keys kKeys{
    "Title", "lblEnabledAutoStop", "lblFileSizeSetTime",     "lblFileSizeSetSizeNum", "lblSecond",
    "lblMB", "lblStopSettingOnce", "lblStopSettingEveryTime"};

// A stored limit as the field shows it: the fallback when unset, never more than nine digits.
QString limitText(double value, qint64 fallback)
{
    if (!(value > 0))
        return QString::number(fallback);
    return QString::number(
        qint64(std::min(std::floor(value), double(AutoTimeSetWindow::kLargestValue))));
}

} // namespace

AutoTimeSetWindow::AutoTimeSetWindow(const Values &values, QWidget *parent)
    : TimedRuleWindow(kKeys, parent)
{
    describe(this, QStringLiteral("AutoTimeSetWindow"));
    completeLabel = new QLabel(this);
    describe(completeLabel, QStringLiteral("lbComplete1"));
    finshpopBtn = new QComboBox(this);
    describe(finshpopBtn, QStringLiteral("finshpopBtn"));
    finshpopBtn->addItems({QString(), QString(), QString()});
    finshpopBtn->setItemData(1, QStringLiteral("chCtrl1"), Qt::AccessibleDescriptionRole);
    finshpopBtn->setItemData(2, QStringLiteral("chCtrl4"), Qt::AccessibleDescriptionRole);
    // The empty first item only stands for no choice: it can't be picked.
    if (auto *model = qobject_cast<QStandardItemModel *>(finshpopBtn->model()))
        model->item(0)->setEnabled(false);
    if (auto *list = qobject_cast<QListView *>(finshpopBtn->view()))
        list->setRowHidden(0, true);
    addRuleRow(completeLabel, finshpopBtn);

    for (QLineEdit *field : {timeField, sizeField}) {
        field->setMaxLength(9);
        connect(field, &QLineEdit::textChanged, this,
                [this, field] { controlTextDidChange(field); });
    }
    timeField->setText(limitText(values.recordEndTimeDuration, 600));
    sizeField->setText(limitText(values.recordEndFileSize, 100));
    const bool knownIndex = values.finshIndex == 1 || values.finshIndex == 2;
    finshpopBtn->setCurrentIndex(knownIndex ? int(values.finshIndex) : 1);
    // An armed rule that isn't for every recording opens unticked, as it always has.
    loadChoice(values.everyTime, values.isRecordEndSizeType, values.everyTime);
    ChangeLoanguage();
}

void AutoTimeSetWindow::controlTextDidChange(QLineEdit *field)
{
    if (!isAllDigits(field->text()))
        field->setText(QStringLiteral("0"));
}

void AutoTimeSetWindow::okBtnAction()
{
    Result result;
    result.enabled = enableBox->isChecked();
    result.isAutoStopOnce = onceRadio->isChecked();
    result.recordEndTimeDuration = double(fieldValue(timeField, kLargestValue));
    result.recordEndFileSize = double(fieldValue(sizeField, kLargestValue));
    result.everyTime = result.enabled && everyTimeRadio->isChecked();
    result.isRecordEndSizeType = sizeRadio->isChecked();
    result.finshpopIndex = finshpopBtn->currentIndex();
    choice_ = result;
    accept();
}

void AutoTimeSetWindow::ChangeLoanguage()
{
    TimedRuleWindow::ChangeLoanguage();
    completeLabel->setText(localizedStringForKey(QStringLiteral("lbComplete1")));
    finshpopBtn->setAccessibleName(completeLabel->text());
    finshpopBtn->setItemText(1, localizedStringForKey(QStringLiteral("chCtrl1")));
    finshpopBtn->setItemText(2, localizedStringForKey(QStringLiteral("chCtrl4")));
}

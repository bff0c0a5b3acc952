// The three windows of timed recording on their own: what they show from the values they are
// opened with, how their controls keep each other and their fields in order, and what OK hands
// back to the controller.
#include "AutoSplitSetsWindow.h"
#include "AutoTimeSetWindow.h"
#include "Localization.h"
#include "TimeEndWindowColler.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class TimedWindowTest : public testing::Test {
protected:
    void SetUp() override { Localization::installLanguage(QStringLiteral("en")); }

    // Typed over the whole text, as after a click into the field.
    static void retype(QLineEdit *field, const QString &text)
    {
        field->selectAll();
        QTest::keyClicks(field, text);
    }

    // Every button and label named by a table key shows that key's text.
    static void expectTextsOfTheirKeys(const QWidget &window)
    {
        int checked = 0;
        for (const QWidget *child : window.findChildren<QWidget *>()) {
            const QString key = child->accessibleDescription();
            const QString text = Localization::localizedStringForKey(key);
            if (key.isEmpty() || text == key)
                continue;
            SCOPED_TRACE(key.toStdString());
            if (const auto *button = qobject_cast<const QAbstractButton *>(child)) {
                EXPECT_EQ(button->text(), text);
            } else if (const auto *label = qobject_cast<const QLabel *>(child)) {
                EXPECT_EQ(label->text(), text);
            }
            ++checked;
        }
        EXPECT_GE(checked, 9);
    }
};

using AutoTimeSetWindowTest = TimedWindowTest;
using TimeEndWindowCollerTest = TimedWindowTest;
using AutoSplitSetsWindowTest = TimedWindowTest;

TEST_F(AutoTimeSetWindowTest, OpensOnTheStoredRuleOrItsDefaults)
{
    AutoTimeSetWindow kept({true, true, 1200, 50, 2});
    EXPECT_TRUE(kept.enableBox->isChecked());
    EXPECT_TRUE(kept.everyTimeRadio->isChecked());
    EXPECT_FALSE(kept.onceRadio->isChecked());
    EXPECT_TRUE(kept.sizeRadio->isChecked());
    EXPECT_FALSE(kept.timeRadio->isChecked());
    EXPECT_EQ(kept.timeField->text(), "1200");
    EXPECT_EQ(kept.sizeField->text(), "50");
    EXPECT_TRUE(kept.sizeField->isEnabled());
    EXPECT_FALSE(kept.timeField->isEnabled()) << "only the chosen limit's field is edited";
    EXPECT_EQ(kept.finshpopBtn->currentIndex(), 2);
    expectTextsOfTheirKeys(kept);

    // Nothing stored: a rule for this recording by time, 600 s or 100 MB, unticked and greyed.
    AutoTimeSetWindow fresh({false, false, 0, 0, 0});
    EXPECT_FALSE(fresh.enableBox->isChecked());
    EXPECT_TRUE(fresh.onceRadio->isChecked());
    EXPECT_TRUE(fresh.timeRadio->isChecked());
    EXPECT_EQ(fresh.timeField->text(), "600");
    EXPECT_EQ(fresh.sizeField->text(), "100");
    EXPECT_EQ(fresh.finshpopBtn->currentIndex(), 1);
    const QList<QWidget *> ruleControls{fresh.timeRadio,      fresh.sizeRadio,    fresh.onceRadio,
                                        fresh.everyTimeRadio, fresh.timeField,    fresh.sizeField,
                                        fresh.finshpopBtn,    fresh.completeLabel};
    for (QWidget *control : ruleControls)
        EXPECT_FALSE(control->isEnabled()) << control->accessibleDescription().toStdString();

    // Values no field can show come in bounded.
    AutoTimeSetWindow odd({true, false, 1e20, -5, 7});
    EXPECT_EQ(odd.timeField->text(), QString::number(AutoTimeSetWindow::kLargestValue));
    EXPECT_EQ(odd.sizeField->text(), "100");
    EXPECT_EQ(odd.finshpopBtn->currentIndex(), 1);
}

TEST_F(AutoTimeSetWindowTest, TheRadiosFollowTheCheckBoxAndEachOther)
{
    AutoTimeSetWindow window({false, false, 0, 0, 1});
    // A click while the rule is off (the radio already toggled by it) only clears it again.
    window.sizeRadio->setChecked(true);
    window.setsAction(window.sizeRadio);
    EXPECT_FALSE(window.sizeRadio->isChecked());
    EXPECT_TRUE(window.timeRadio->isChecked());

    window.enableBox->click();
    EXPECT_TRUE(window.timeField->isEnabled());
    EXPECT_FALSE(window.sizeField->isEnabled());
    window.sizeRadio->click();
    EXPECT_TRUE(window.sizeRadio->isChecked());
    EXPECT_FALSE(window.timeRadio->isChecked());
    EXPECT_TRUE(window.sizeField->isEnabled());
    EXPECT_FALSE(window.timeField->isEnabled());
    window.sizeRadio->click();
    EXPECT_TRUE(window.sizeRadio->isChecked()) << "a second click keeps the choice";

    window.everyTimeRadio->click();
    EXPECT_FALSE(window.onceRadio->isChecked());
    window.onceRadio->click();
    EXPECT_FALSE(window.everyTimeRadio->isChecked());
    EXPECT_TRUE(window.onceRadio->isChecked());

    window.enableBox->click();
    EXPECT_FALSE(window.sizeField->isEnabled());
    EXPECT_FALSE(window.completeLabel->isEnabled());
}

TEST_F(AutoTimeSetWindowTest, TheFieldsTakeNineDigitsAtMost)
{
    AutoTimeSetWindow window({true, false, 0, 0, 1});
    retype(window.timeField, QStringLiteral("12x"));
    EXPECT_EQ(window.timeField->text(), "0");
    retype(window.timeField, QStringLiteral("45"));
    EXPECT_EQ(window.timeField->text(), "45");

    // A long paste is cut to nine digits.
    const QString pasted = QStringLiteral("123456789012345");
    window.sizeField->selectAll();
    window.sizeField->insert(pasted);
    EXPECT_EQ(window.sizeField->text(), pasted.left(9));

    window.okButton->click();
    ASSERT_TRUE(window.choice().has_value());
    EXPECT_EQ(window.choice()->recordEndTimeDuration, 45.0);
    EXPECT_EQ(window.choice()->recordEndFileSize, pasted.left(9).toDouble());

    AutoTimeSetWindow emptied({true, false, 0, 0, 1});
    emptied.timeField->clear();
    emptied.okButton->click();
    ASSERT_TRUE(emptied.choice().has_value());
    EXPECT_EQ(emptied.choice()->recordEndTimeDuration, 0.0);
}

TEST_F(AutoTimeSetWindowTest, OkHandsOutTheRuleAndCancelNothing)
{
    // Every recording, stopped at a size, then quit.
    AutoTimeSetWindow bySize({false, false, 0, 0, 1});
    bySize.enableBox->click();
    bySize.sizeRadio->click();
    retype(bySize.sizeField, QStringLiteral("250"));
    bySize.everyTimeRadio->click();
    bySize.finshpopBtn->setCurrentIndex(2);
    bySize.okButton->click();
    EXPECT_EQ(bySize.result(), QDialog::Accepted);
    ASSERT_TRUE(bySize.choice().has_value());
    const AutoTimeSetWindow::Result size = *bySize.choice();
    EXPECT_TRUE(size.enabled);
    EXPECT_TRUE(size.isRecordEndSizeType);
    EXPECT_EQ(size.recordEndFileSize, 250.0);
    EXPECT_TRUE(size.everyTime);
    EXPECT_FALSE(size.isAutoStopOnce);
    EXPECT_EQ(size.finshpopIndex, 2);

    // This recording only, by time: the loaded limits as they stand.
    AutoTimeSetWindow once({true, true, 900, 70, 2});
    once.timeRadio->click();
    once.onceRadio->click();
    once.finshpopBtn->setCurrentIndex(1);
    once.okButton->click();
    ASSERT_TRUE(once.choice().has_value());
    EXPECT_TRUE(once.choice()->isAutoStopOnce);
    EXPECT_FALSE(once.choice()->everyTime);
    EXPECT_FALSE(once.choice()->isRecordEndSizeType);
    EXPECT_EQ(once.choice()->recordEndTimeDuration, 900.0);
    EXPECT_EQ(once.choice()->recordEndFileSize, 70.0);
    EXPECT_EQ(once.choice()->finshpopIndex, 1);

    // Unticked: the rule is off, and no longer for every recording.
    AutoTimeSetWindow off({true, false, 0, 0, 1});
    off.enableBox->click();
    off.okButton->click();
    ASSERT_TRUE(off.choice().has_value());
    EXPECT_FALSE(off.choice()->enabled);
    EXPECT_FALSE(off.choice()->everyTime);

    AutoTimeSetWindow cancelled({true, false, 0, 0, 1});
    cancelled.cancelButton->click();
    EXPECT_EQ(cancelled.result(), QDialog::Rejected);
    EXPECT_FALSE(cancelled.choice().has_value());
    AutoTimeSetWindow closed({true, false, 0, 0, 1});
    closed.show();
    closed.close();
    EXPECT_FALSE(closed.choice().has_value());
}

TEST_F(TimeEndWindowCollerTest, OpensOnTheStoredChoice)
{
    const double duration = 2 * 3600 + 7 * 60 + 5;
    TimeEndWindowColler custom(3, duration, true);
    EXPECT_TRUE(custom.customTimeBtn->isChecked());
    EXPECT_EQ(custom.hourTime->text(), "02");
    EXPECT_EQ(custom.minTime->text(), "07");
    EXPECT_EQ(custom.secTime->text(), "05");
    EXPECT_TRUE(custom.minTime->isEnabled());
    EXPECT_EQ(custom.messageLabel->text(),
              Localization::localizedStringForKey(QStringLiteral("TM_MessageLabel_Audio")));

    // The duration shows only for the custom choice.
    TimeEndWindowColler halfHour(1, duration, false);
    EXPECT_TRUE(halfHour.time_30Btn->isChecked());
    EXPECT_EQ(halfHour.hourTime->text(), "00");
    EXPECT_EQ(halfHour.secTime->text(), "00");
    EXPECT_FALSE(halfHour.secTime->isEnabled());
    EXPECT_EQ(halfHour.messageLabel->text(),
              Localization::localizedStringForKey(QStringLiteral("TM_MessageLabel_Video")));

    TimeEndWindowColler unknown(9, duration, false);
    EXPECT_TRUE(unknown.noTimeBtn->isChecked());
    EXPECT_EQ(unknown.endTimeType(), 0);
}

TEST_F(TimeEndWindowCollerTest, TypingKeepsEachFieldWithinItsLimits)
{
    TimeEndWindowColler window(3, 0, false);
    retype(window.minTime, QStringLiteral("75"));
    EXPECT_EQ(window.minTime->text(), "59");
    retype(window.minTime, QStringLiteral("60"));
    EXPECT_EQ(window.minTime->text(), "60") << "60 has always been let through";
    retype(window.hourTime, QStringLiteral("60"));
    EXPECT_EQ(window.hourTime->text(), "60");
    retype(window.hourTime, QStringLiteral("61"));
    EXPECT_EQ(window.hourTime->text(), "59");

    retype(window.secTime, QStringLiteral("abc"));
    EXPECT_EQ(window.secTime->text(), "");
    QTest::keyClick(window.secTime, Qt::Key_Return);
    EXPECT_EQ(window.secTime->text(), "00");
    window.secTime->end(false);
    QTest::keyClick(window.secTime, Qt::Key_Backspace);
    QTest::keyClick(window.secTime, Qt::Key_Backspace);
    EXPECT_EQ(window.secTime->text(), "00") << "emptied while typing";

    // A paste too long for any number is past the limit too.
    window.hourTime->selectAll();
    window.hourTime->insert(QString(30, QLatin1Char('9')));
    EXPECT_EQ(window.hourTime->text(), "59");
}

TEST_F(TimeEndWindowCollerTest, AClickIntoAFieldTakesItWhole)
{
    TimeEndWindowColler window(3, 0, false);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    QTest::mouseClick(window.minTime, Qt::LeftButton, {}, window.minTime->rect().center());
    // QTRY_COMPARE would only return: gtest is to see the failure.
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.minTime->selectedText() == "00"; }, 1000));
    QTest::keyClicks(window.minTime, QStringLiteral("4"));
    EXPECT_EQ(window.minTime->text(), "4");
}

TEST_F(TimeEndWindowCollerTest, OkGivesTheChosenLength)
{
    TimeEndWindowColler hour(0, 0, false);
    hour.time_60Btn->click();
    EXPECT_EQ(hour.endTimeType(), 2);
    hour.okBtn->click();
    ASSERT_TRUE(hour.choice().has_value());
    EXPECT_EQ(hour.choice()->endTimeType, 2);
    EXPECT_EQ(hour.choice()->recordEndTimeDuration, 3600.0);

    TimeEndWindowColler custom(0, 0, false);
    custom.customTimeBtn->click();
    EXPECT_EQ(custom.endTimeType(), 3);
    retype(custom.hourTime, QStringLiteral("1"));
    retype(custom.minTime, QStringLiteral("2"));
    retype(custom.secTime, QStringLiteral("5"));
    custom.okBtn->click();
    ASSERT_TRUE(custom.choice().has_value());
    EXPECT_EQ(custom.choice()->endTimeType, 3);
    EXPECT_EQ(custom.choice()->recordEndTimeDuration, 1 * 3600 + 2 * 60 + 5);

    // Leaving the custom choice resets its fields.
    TimeEndWindowColler changed(3, 4000, false);
    changed.time_30Btn->click();
    EXPECT_EQ(changed.hourTime->text(), "00");
    EXPECT_FALSE(changed.hourTime->isEnabled());
    changed.okBtn->click();
    ASSERT_TRUE(changed.choice().has_value());
    EXPECT_EQ(changed.choice()->endTimeType, 1);
    EXPECT_EQ(changed.choice()->recordEndTimeDuration, 1800.0);
}

TEST_F(TimeEndWindowCollerTest, ACustomLengthOfNothingIsNoLimit)
{
    TimeEndWindowColler window(3, 0, false);
    ASSERT_TRUE(window.customTimeBtn->isChecked());
    window.okBtn->click();
    ASSERT_TRUE(window.choice().has_value());
    EXPECT_EQ(window.choice()->endTimeType, 0);
    EXPECT_EQ(window.choice()->recordEndTimeDuration, 0.0);
    EXPECT_TRUE(window.noTimeBtn->isChecked());
    EXPECT_FALSE(window.hourTime->isEnabled());
}

TEST_F(AutoSplitSetsWindowTest, OpensFromTheStoredSplit)
{
    AutoSplitSetsWindow bySize({30, 200, true, 2});
    EXPECT_TRUE(bySize.enableBox->isChecked());
    EXPECT_TRUE(bySize.sizeRadio->isChecked());
    EXPECT_FALSE(bySize.timeRadio->isChecked());
    EXPECT_TRUE(bySize.everyTimeRadio->isChecked());
    EXPECT_FALSE(bySize.onceRadio->isChecked());
    EXPECT_EQ(bySize.timeField->text(), "30");
    EXPECT_EQ(bySize.sizeField->text(), "200");
    expectTextsOfTheirKeys(bySize);

    AutoSplitSetsWindow keptOff({30, 200, true, 0});
    EXPECT_FALSE(keptOff.enableBox->isChecked());
    EXPECT_TRUE(keptOff.timeRadio->isChecked());
    EXPECT_TRUE(keptOff.everyTimeRadio->isChecked());
    EXPECT_FALSE(keptOff.sizeField->isEnabled());

    // A split for one recording only opens unticked and by time, whatever it was.
    AutoSplitSetsWindow once({30, 200, false, 2});
    EXPECT_FALSE(once.enableBox->isChecked());
    EXPECT_TRUE(once.timeRadio->isChecked());
    EXPECT_FALSE(once.sizeRadio->isChecked());
    EXPECT_TRUE(once.onceRadio->isChecked());

    AutoSplitSetsWindow outside({5000, -3, true, 1});
    EXPECT_EQ(outside.timeField->text(), QString::number(AutoSplitSetsWindow::kLargestTime));
    EXPECT_EQ(outside.sizeField->text(), "0");
}

TEST_F(AutoSplitSetsWindowTest, TheFieldsStayWithinTheirLimits)
{
    AutoSplitSetsWindow window({0, 0, true, 1});
    window.timeField->clear();
    window.timeField->insert(QStringLiteral("123456"));
    EXPECT_EQ(window.timeField->text(), "123");
    retype(window.timeField, QStringLiteral("-4a"));
    EXPECT_EQ(window.timeField->text(), "4");

    window.sizeRadio->click();
    window.sizeField->clear();
    window.sizeField->insert(QString(15, QLatin1Char('9')));
    window.okButton->click();
    ASSERT_TRUE(window.choice().has_value());
    EXPECT_EQ(window.choice()->splitTime, 4);
    EXPECT_EQ(window.choice()->splitSize, AutoSplitSetsWindow::kLargestSize);
}

TEST_F(AutoSplitSetsWindowTest, OkHandsOutTheSplit)
{
    AutoSplitSetsWindow bySize({60, 700, false, 0});
    bySize.enableBox->click();
    bySize.sizeRadio->click();
    retype(bySize.sizeField, QStringLiteral("1500"));
    bySize.okButton->click();
    ASSERT_TRUE(bySize.choice().has_value());
    const AutoSplitSetsWindow::Result size = *bySize.choice();
    EXPECT_TRUE(size.enabled);
    EXPECT_EQ(size.splitType, 2);
    EXPECT_EQ(size.splitSize, 1500);
    EXPECT_EQ(size.splitTime, 60);
    EXPECT_TRUE(size.isAutoSplitOnce);
    EXPECT_FALSE(size.splitAlway);

    AutoSplitSetsWindow byTime({60, 700, true, 2});
    byTime.timeRadio->click();
    byTime.okButton->click();
    ASSERT_TRUE(byTime.choice().has_value());
    EXPECT_EQ(byTime.choice()->splitType, 1);
    EXPECT_TRUE(byTime.choice()->splitAlway);
    EXPECT_FALSE(byTime.choice()->isAutoSplitOnce);

    // Unticked, no split, whichever radio stays chosen.
    AutoSplitSetsWindow off({60, 700, true, 2});
    off.enableBox->click();
    off.okButton->click();
    ASSERT_TRUE(off.choice().has_value());
    EXPECT_FALSE(off.choice()->enabled);
    EXPECT_EQ(off.choice()->splitType, 0);

    AutoSplitSetsWindow cancelled({60, 700, true, 2});
    cancelled.cancelButton->click();
    EXPECT_FALSE(cancelled.choice().has_value());
}

} // namespace

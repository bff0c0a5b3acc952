#pragma once
// One row of the list of recordings: name, duration, size and date of a record, over a
// background that shows whether the row is selected. The row decides what a press means
// (a second press within 0.2 s is a double-click) and tells its table through callbacks;
// selecting rows is the table's business. GUI thread only.
#include <QColor>
#include <QPixmap>
#include <QVariantMap>
#include <QWidget>
#include <functional>

class QLabel;

class VideoCell : public QWidget {
    Q_OBJECT
public:
    // Seconds on the wall clock; injectable so tests can time presses.
    using NowFunction = std::function<double()>;
    using CellBlock = std::function<void(VideoCell *cell)>;
    using SelectionBlock = std::function<void(VideoCell *cell, bool selected)>;

    static constexpr double kDoubleClickInterval = 0.2;
    // Column widths, left to right: name, duration, size, date.
    static constexpr int kNameWidth = 218;
    static constexpr int kDurationWidth = 116;
    static constexpr int kSizeWidth = 90;
    static constexpr int kDateWidth = 148;
    static constexpr int kLabelHeight = 18;

    explicit VideoCell(QWidget *parent = nullptr);

    // Fills the labels; the duration is hidden for a screenshot.
    void setFileData(const QVariantMap &fileData);
    QVariantMap fileData() const { return fileData_; }

    qint64 index() const { return index_; }
    void setIndex(qint64 index) { index_ = index; }

    bool selected() const { return selected_; }
    // Stores the flag, tells SelectedBlock, redraws.
    void setSelected(bool selected);
    bool enabele() const { return enabele_; }
    void setEnabele(bool enabele) { enabele_ = enabele; }

    double clickTime() const { return clickTime_; }
    void setNowFunction(NowFunction now);

    QColor nBackGroundColor() const { return nBackGroundColor_; }
    void setNBackGroundColor(const QColor &color);
    QColor sBackGroundColor() const { return sBackGroundColor_; }
    void setSBackGroundColor(const QColor &color);
    QPixmap nBackGroundImage() const { return nBackGroundImage_; }
    void setNBackGroundImage(const QPixmap &image);
    QPixmap sBackGroundImage() const { return sBackGroundImage_; }
    void setSBackGroundImage(const QPixmap &image);

    void setMouseDoubleClickDownBlock(CellBlock block)
    {
        mouseDoubleClickDownBlock_ = std::move(block);
    }
    void setMouseDownBlock(CellBlock block) { mouseDownBlock_ = std::move(block); }
    void setSelectedBlock(SelectionBlock block) { selectedBlock_ = std::move(block); }
    // Kept for the owner; the row itself never runs them.
    void setSelecteddefaultFormatoutputBlock(CellBlock block)
    {
        selecteddefaultFormatoutputBlock_ = std::move(block);
    }
    void setSelectedTransitionEffectBlock(CellBlock block)
    {
        selectedTransitionEffectBlock_ = std::move(block);
    }

    QLabel *nameLabel() const { return nameLabel_; }
    QLabel *durationLabel() const { return durationLabel_; }
    QLabel *sizeLabel() const { return sizeLabel_; }
    QLabel *dateLabel() const { return dateLabel_; }

    // A press of the left button: a double-click when the last press was less than 0.2 s
    // ago, whatever the state of the row; otherwise a press, unless the row is disabled or
    // already selected.
    void mouseDown();

    static QColor labelColor();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layoutLabels();

    QLabel *nameLabel_;
    QLabel *durationLabel_;
    QLabel *sizeLabel_;
    QLabel *dateLabel_;
    QVariantMap fileData_;
    qint64 index_ = 0;
    bool selected_ = false;
    bool enabele_ = true;
    double clickTime_ = 0;
    NowFunction now_;
    QColor nBackGroundColor_;
    QColor sBackGroundColor_;
    QPixmap nBackGroundImage_;
    QPixmap sBackGroundImage_;
    CellBlock mouseDoubleClickDownBlock_;
    CellBlock mouseDownBlock_;
    SelectionBlock selectedBlock_;
    CellBlock selecteddefaultFormatoutputBlock_;
    CellBlock selectedTransitionEffectBlock_;
};

// The wall clock in seconds (gettimeofday's resolution), the rows' default clock.
double wallClockNow();
